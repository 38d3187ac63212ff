#pragma once

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <string_view>

namespace velora {

/// One line on a terminal that says how far long work has come. It appears only when the work takes a while and is
/// wiped at the end.
class Progress {
public:
    Progress(std::ostream& out, bool wanted) : out_(out), wanted_(wanted) {}
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// @param total  0 when it is not known; the count is shown then in place of the bar
    void show(std::string_view what, size_t done, size_t total);

private:
    using Clock = std::chrono::steady_clock;

    std::ostream& out_;
    bool wanted_;
    bool drawn_ = false;
    Clock::time_point next_ = Clock::now() + std::chrono::milliseconds(400);
};

}  // namespace velora
