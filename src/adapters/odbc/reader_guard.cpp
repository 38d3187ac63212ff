#include "adapters/odbc/reader_guard.h"

#include <algorithm>
#include <future>

#include "adapters/odbc_text/single_query.h"

namespace velora::odbc {

void ReaderGuard::execute(Statement& statement, const std::string& text)
{
    using Steady = std::chrono::steady_clock;
    constexpr auto kStep = std::chrono::milliseconds(10);
    if (const auto refusal = refusal_of(text); !refusal.empty()) {
        throw DriverError("42000", "The query was not run: " + std::string(refusal) + ".");
    }
    const auto begun = Steady::now();
    auto run = std::async(std::launch::async, [&] { statement.execute_directly(text); });
    std::string reason;
    while (run.wait_for(kStep) != std::future_status::ready) {
        if (!reason.empty()) continue;
        const bool is_late = limits_.time.count() > 0 && Steady::now() - begun > left_;
        const bool is_cancelled = limits_.cancelled && limits_.cancelled();
        if (!is_late && !is_cancelled) continue;
        reason = is_late ? "The query took longer than it may and was ended." : "The query was cancelled.";
        statement.cancel();
    }
    left_ = std::max(left_ - (Steady::now() - begun), Steady::duration::zero());
    try {
        run.get();
    } catch (const DriverError&) {
        if (reason.empty()) throw;
    }
    if (!reason.empty()) throw DriverError("HY008", reason);
}

}  // namespace velora::odbc
