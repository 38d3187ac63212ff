#pragma once

#include <string_view>
#include <vector>

namespace velora::engine {

/// A time axis whose marks stand where minutes, days, months or years begin. Times are milliseconds since 1970.
class TimeScale {
public:
    /// @param marks  about how many marks there is room for
    TimeScale(double least, double most, int marks);

    [[nodiscard]] double least() const { return least_; }
    [[nodiscard]] double most() const { return most_; }
    [[nodiscard]] const std::vector<double>& marks() const { return marks_; }
    /// How a mark is written, as in "d MMM".
    [[nodiscard]] std::string_view pattern() const { return pattern_; }

private:
    double least_, most_;
    std::vector<double> marks_;
    std::string_view pattern_;
};

}  // namespace velora::engine
