#pragma once

#include <string>
#include <vector>

namespace velora::engine {

/// A value axis with round marks; zero is always on it.
class ValueScale {
public:
    /// @param marks  about how many marks there is room for
    /// @param whole  marks stand at whole numbers only, for counts
    ValueScale(double least, double most, int marks, bool whole = false);

    [[nodiscard]] double least() const { return least_; }
    [[nodiscard]] double most() const { return most_; }
    /// Where a value stands: 0 at the axis' start, 1 at its end.
    [[nodiscard]] double share(double value) const { return (value - least_) / (most_ - least_); }
    [[nodiscard]] std::vector<double> marks() const;
    [[nodiscard]] std::string text(double mark) const;

private:
    double least_, most_, step_;
    int decimals_;
};

/// A number for people: grouped, with as many decimals as it needs, at most two.
std::string chart_number(double value);

}  // namespace velora::engine
