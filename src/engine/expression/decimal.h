#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "values/value.h"

namespace velora::engine {

/// How a decimal is rounded; the numbers are those that definitions may write for the modes.
enum class Rounding : uint8_t { Up, Down, Ceiling, Floor, HalfUp, HalfDown, HalfEven, Unnecessary };

/// An exact decimal: a 128-bit integer over a power of ten. The scale is kept as it arises (1.50 + 1 is 2.50) and
/// every operation that would leave the range gives none.
class Decimal {
public:
    __extension__ using Units = __int128;
    static constexpr int kMostPlaces = 30;

    constexpr Decimal() = default;
    constexpr Decimal(Units units, int scale) : units_(units), scale_(scale) {}

    /// Reads a sign, digits, a point, an exponent. None for anything else.
    static std::optional<Decimal> from_text(std::string_view text);
    /// The shortest text that reads back as the double, taken as a decimal. None for what is no number.
    static std::optional<Decimal> from(double value);
    static constexpr Decimal from(int64_t value) { return {value, 0}; }
    static constexpr Decimal from(Fixed4 value) { return {value.units(), 4}; }
    /// The number of a cell; text is read. None for null and for what is no number.
    static std::optional<Decimal> from(const Value& value);

    [[nodiscard]] constexpr Units units() const { return units_; }
    [[nodiscard]] constexpr int scale() const { return scale_; }
    [[nodiscard]] bool is_zero() const { return units_ == 0; }

    [[nodiscard]] double to_double() const;
    [[nodiscard]] std::optional<int64_t> to_integer() const;  ///< without the places behind the point
    [[nodiscard]] std::string text() const;                   ///< with all places of the scale, no exponent
    /// `Fixed4` where its four places hold the number, else a double.
    [[nodiscard]] Value to_value() const;

    [[nodiscard]] std::optional<Decimal> with_scale(int scale, Rounding rounding) const;
    [[nodiscard]] Decimal without_trailing_zeros() const;
    [[nodiscard]] Decimal negated() const { return {-units_, scale_}; }

private:
    Units units_ = 0;
    int scale_ = 0;
};

std::optional<Decimal> add(const Decimal& left, const Decimal& right);
std::optional<Decimal> subtract(const Decimal& left, const Decimal& right);
std::optional<Decimal> multiply(const Decimal& left, const Decimal& right);
/// To `scale` places; none for a zero divisor.
std::optional<Decimal> divide(const Decimal& left, const Decimal& right, int scale, Rounding rounding);
/// Exact where the quotient ends within ten more places than the operands have, else rounded half up there.
std::optional<Decimal> divide(const Decimal& left, const Decimal& right);
std::optional<Decimal> remainder(const Decimal& left, const Decimal& right);
std::strong_ordering compare(const Decimal& left, const Decimal& right);

}  // namespace velora::engine
