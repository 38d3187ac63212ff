#include "host/progress.h"

#include <algorithm>
#include <ostream>
#include <string>

namespace velora {

Progress::~Progress()
{
    if (drawn_) out_ << "\r\033[K" << std::flush;
}

void Progress::show(std::string_view what, size_t done, size_t total)
{
    if (!wanted_) return;
    const auto now = Clock::now();
    if (now < next_) return;
    next_ = now + std::chrono::milliseconds(100);
    std::string line = "\r\033[K";
    line += what;
    if (total == 0) {
        line += ' ' + std::to_string(done);
    } else {
        constexpr size_t kWidth = 30;
        const size_t filled = std::min(done, total) * kWidth / total;
        line += " [" + std::string(filled, '#') + std::string(kWidth - filled, '.') + "] " + std::to_string(done) +
                " of " + std::to_string(total);
    }
    out_ << line << std::flush;
    drawn_ = true;
}

}  // namespace velora
