#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "platform/database.h"

struct sqlite3;

namespace velora::sqlite {

/// Stands over the statements of a connection that somebody else wrote: only reading of rows is let through, texts and
/// memory are bounded, and the work of all statements together ends at its limits.
class QueryGuard {
public:
    /// One stretch of the database's work; the time between two of them does not count.
    class Work {
    public:
        explicit Work(QueryGuard* guard);  ///< null for a connection without a guard
        Work(const Work&) = delete;
        Work& operator=(const Work&) = delete;
        ~Work();

    private:
        QueryGuard* guard_;
    };

    explicit QueryGuard(QueryLimits limits) : limits_(std::move(limits)), left_(limits_.time) {}

    QueryGuard(const QueryGuard&) = delete;
    QueryGuard& operator=(const QueryGuard&) = delete;
    ~QueryGuard();

    /// Puts itself before the connection, which it has to outlive.
    void watch(sqlite3* database);
    /// Why the guard stepped in, as a user reads it; empty when it did not.
    [[nodiscard]] const std::string& reason() const { return reason_; }

private:
    using Steady = std::chrono::steady_clock;

    static int allow(void* guard, int action, const char* first, const char* second, const char*, const char*);
    static int go_on(void* guard);

    QueryLimits limits_;
    Steady::duration left_;
    Steady::time_point begun_;
    std::string reason_;
    int64_t memory_before_ = -1;  ///< the limit that was there; none as long as nothing is watched
};

}  // namespace velora::sqlite
