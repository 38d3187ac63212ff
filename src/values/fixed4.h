#pragma once

#include <compare>
#include <cstdint>

namespace velora {

/// A money amount: 64-bit fixed point with four decimal places.
class Fixed4 {
public:
    constexpr Fixed4() = default;

    /// Rounds to four places, half to even. @throws Fault 6 outside the range
    static Fixed4 from(double value);
    static constexpr Fixed4 from_units(int64_t ten_thousandths)
    {
        Fixed4 result;
        result.units_ = ten_thousandths;
        return result;
    }

    [[nodiscard]] constexpr int64_t units() const { return units_; }
    [[nodiscard]] double to_double() const { return static_cast<double>(units_) / 10000.0; }

    auto operator<=>(const Fixed4&) const = default;

private:
    int64_t units_ = 0;
};

/// @throws Fault 6 when the sum leaves the range
Fixed4 operator+(Fixed4 left, Fixed4 right);

}  // namespace velora
