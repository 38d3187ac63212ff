#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velora::engine {

/// A value axis with round marks.
class ValueScale {
public:
    /// @param marks  about how many marks there is room for
    /// @param whole  marks stand at whole numbers only, for counts
    /// @param zero  zero is on the axis in any case
    ValueScale(double least, double most, int marks, bool whole = false, bool zero = true);
    /// Sets an end of the axis to where it was asked for. Ends that would leave nothing between them stay.
    void limit(std::optional<double> least, std::optional<double> most);

    [[nodiscard]] double least() const { return least_; }
    [[nodiscard]] double most() const { return most_; }
    /// Where a value stands: 0 at the axis' start, 1 at its end.
    [[nodiscard]] double share(double value) const { return (value - least_) / (most_ - least_); }
    [[nodiscard]] std::vector<double> marks() const;
    [[nodiscard]] std::string text(double mark) const;

private:
    double least_, most_, step_;
    int marks_, decimals_;
    bool whole_;
};

/// A number for people: grouped, with as many decimals as it needs, at most two.
std::string chart_number(double value);

}  // namespace velora::engine
