#include "engine/expression/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "values/characters.h"

namespace velora::engine {

namespace {

using Units = Decimal::Units;
__extension__ using UnsignedUnits = unsigned __int128;

/// The greatest magnitude; the range is the same on both sides, so that every number can be negated.
constexpr Units kTop = ((Units{1} << 126) - 1) + (Units{1} << 126);

/// 10^power for 0 to 38.
Units power_of_ten(int power)
{
    static const auto table = [] {
        std::array<Units, 39> powers{};
        powers[0] = 1;
        for (size_t at = 1; at < powers.size(); ++at) powers[at] = powers[at - 1] * 10;
        return powers;
    }();
    return table.at(static_cast<size_t>(power));
}

std::optional<Units> times(Units left, Units right)
{
    Units product = 0;
    if (__builtin_mul_overflow(left, right, &product) || product < -kTop) return std::nullopt;
    return product;
}

std::optional<Units> shifted(Units units, int places)
{
    if (units == 0) return 0;
    if (places > 38) return std::nullopt;
    return times(units, power_of_ten(places));
}

/// Whether the quotient's magnitude is to grow by one, given what is left over.
bool rounds_away(Units quotient, Units rest, Units divisor, bool negative, Rounding rounding)
{
    if (rest == 0) return false;
    const Units magnitude = rest < 0 ? -rest : rest;
    const Units size = divisor < 0 ? -divisor : divisor;
    const Units other = size - magnitude;
    const auto half = magnitude <=> other;
    switch (rounding) {
        case Rounding::Up:
            return true;
        case Rounding::Down:
        case Rounding::Unnecessary:
            return false;
        case Rounding::Ceiling:
            return !negative;
        case Rounding::Floor:
            return negative;
        case Rounding::HalfUp:
            return half >= 0;
        case Rounding::HalfDown:
            return half > 0;
        case Rounding::HalfEven:
            return half > 0 || (half == 0 && quotient % 2 != 0);
    }
    return false;
}

Units rounded_quotient(Units dividend, Units divisor, Rounding rounding)
{
    const Units quotient = dividend / divisor;
    const Units rest = dividend % divisor;
    const bool negative = (dividend < 0) != (divisor < 0);
    if (!rounds_away(quotient, rest, divisor, negative, rounding)) return quotient;
    return negative ? quotient - 1 : quotient + 1;
}

struct Aligned {
    Units left;
    Units right;
    int scale;
};

std::optional<Aligned> aligned(const Decimal& left, const Decimal& right)
{
    const int scale = std::max(left.scale(), right.scale());
    const auto left_units = shifted(left.units(), scale - left.scale());
    const auto right_units = shifted(right.units(), scale - right.scale());
    if (!left_units || !right_units) return std::nullopt;
    return Aligned{*left_units, *right_units, scale};
}

/// Applies a written exponent to units and scale.
std::optional<Decimal> with_exponent(Units units, int scale, std::string_view exponent)
{
    if (!exponent.empty() && exponent.front() == '+') exponent.remove_prefix(1);
    int power = 0;
    const auto [end, error] = std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
    if (error != std::errc{} || end != exponent.data() + exponent.size() || std::abs(power) > 1000) return std::nullopt;
    scale -= power;
    if (scale >= 0) return scale <= Decimal::kMostPlaces ? std::optional(Decimal{units, scale}) : std::nullopt;
    const auto grown = shifted(units, -scale);
    if (!grown) return std::nullopt;
    return Decimal{*grown, 0};
}

}  // namespace

std::optional<Decimal> Decimal::from_text(std::string_view text)
{
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    Units units = 0;
    int scale = 0;
    bool digits = false;
    bool point = false;
    size_t at = 0;
    for (; at < text.size() && (is_digit(text[at]) || (text[at] == '.' && !point)); ++at) {
        if (text[at] == '.') {
            point = true;
            continue;
        }
        if (units > (kTop - 9) / 10 || scale >= kMostPlaces) return std::nullopt;
        units = units * 10 + (text[at] - '0');
        scale += point ? 1 : 0;
        digits = true;
    }
    if (!digits) return std::nullopt;
    if (negative) units = -units;
    if (at == text.size()) return Decimal{units, scale};
    if (text[at] != 'e' && text[at] != 'E') return std::nullopt;
    return with_exponent(units, scale, text.substr(at + 1));
}

std::optional<Decimal> Decimal::from(double value)
{
    if (!std::isfinite(value)) return std::nullopt;
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return from_text({text.data(), static_cast<size_t>(end - text.data())});
}

std::optional<Decimal> Decimal::from(const Value& value)
{
    if (const auto* integer = value.get_if<int64_t>()) return from(*integer);
    if (const auto* fixed = value.get_if<Fixed4>()) return from(*fixed);
    if (const auto* number = value.get_if<double>()) return from(*number);
    if (const auto* single = value.get_if<float>()) return from(static_cast<double>(*single));
    if (const auto* text = value.get_if<std::string>()) return from_text(*text);
    return std::nullopt;
}

double Decimal::to_double() const
{
    constexpr Units kExact = Units{1} << 53;
    if (scale_ <= 22 && units_ < kExact && units_ > -kExact) {
        return static_cast<double>(units_) / static_cast<double>(power_of_ten(scale_));
    }
    const std::string written = text();
    double value = 0;
    std::from_chars(written.data(), written.data() + written.size(), value);
    return value;
}

std::optional<int64_t> Decimal::to_integer() const
{
    const Units whole = units_ / power_of_ten(scale_);
    if (whole > std::numeric_limits<int64_t>::max() || whole < std::numeric_limits<int64_t>::min()) return std::nullopt;
    return static_cast<int64_t>(whole);
}

std::string Decimal::text() const
{
    // most numbers fit in 64 bits, where a division costs a tenth
    std::string digits;
    auto rest = static_cast<UnsignedUnits>(units_ < 0 ? -units_ : units_);
    for (int place = 0; rest != 0 || place <= scale_; ++place) {
        if (place == scale_ && scale_ > 0) digits.push_back('.');
        const bool small = rest <= std::numeric_limits<uint64_t>::max();
        const auto narrow = static_cast<uint64_t>(rest);
        digits.push_back(static_cast<char>('0' + static_cast<int>(small ? narrow % 10 : rest % 10)));
        rest = small ? UnsignedUnits{narrow / 10} : rest / 10;
    }
    if (units_ < 0) digits.push_back('-');
    std::ranges::reverse(digits);
    return digits;
}

Value Decimal::to_value() const
{
    if (const auto four = with_scale(4, Rounding::Down); four && compare(*four, *this) == 0) {
        const Units units = four->units();
        if (units <= std::numeric_limits<int64_t>::max() && units >= std::numeric_limits<int64_t>::min()) {
            return Fixed4::from_units(static_cast<int64_t>(units));
        }
    }
    return to_double();
}

std::optional<Decimal> Decimal::with_scale(int scale, Rounding rounding) const
{
    if (scale < 0 || scale > kMostPlaces) return std::nullopt;
    if (scale >= scale_) {
        const auto grown = shifted(units_, scale - scale_);
        if (!grown) return std::nullopt;
        return Decimal{*grown, scale};
    }
    return Decimal{rounded_quotient(units_, power_of_ten(scale_ - scale), rounding), scale};
}

Decimal Decimal::without_trailing_zeros() const
{
    Decimal result = *this;
    while (result.scale_ > 0 && result.units_ % 10 == 0) {
        result.units_ /= 10;
        --result.scale_;
    }
    return result;
}

std::optional<Decimal> add(const Decimal& left, const Decimal& right)
{
    const auto both = aligned(left, right);
    Units sum = 0;
    if (!both || __builtin_add_overflow(both->left, both->right, &sum) || sum < -kTop) return std::nullopt;
    return Decimal{sum, both->scale};
}

std::optional<Decimal> subtract(const Decimal& left, const Decimal& right)
{
    return add(left, right.negated());
}

std::optional<Decimal> multiply(const Decimal& left, const Decimal& right)
{
    const auto product = times(left.units(), right.units());
    if (!product) return std::nullopt;
    const Decimal result{*product, left.scale() + right.scale()};
    if (result.scale() <= Decimal::kMostPlaces) return result;
    return result.with_scale(Decimal::kMostPlaces, Rounding::HalfUp);
}

std::optional<Decimal> divide(const Decimal& left, const Decimal& right, int scale, Rounding rounding)
{
    if (right.is_zero() || scale < 0 || scale > Decimal::kMostPlaces) return std::nullopt;
    const int shift = scale + right.scale() - left.scale();
    const auto dividend = shifted(left.units(), std::max(shift, 0));
    const auto divisor = shifted(right.units(), std::max(-shift, 0));
    if (!dividend || !divisor) return std::nullopt;
    return Decimal{rounded_quotient(*dividend, *divisor, rounding), scale};
}

std::optional<Decimal> divide(const Decimal& left, const Decimal& right)
{
    const int preferred = std::max(left.scale() - right.scale(), 0);
    const int most = std::min(std::max(left.scale(), right.scale()) + 10, Decimal::kMostPlaces);
    const auto quotient = divide(left, right, most, Rounding::HalfUp);
    if (!quotient) return std::nullopt;
    const auto shortest = quotient->without_trailing_zeros();
    return shortest.scale() >= preferred ? shortest : shortest.with_scale(preferred, Rounding::HalfUp);
}

std::optional<Decimal> remainder(const Decimal& left, const Decimal& right)
{
    const auto both = aligned(left, right);
    if (!both || both->right == 0) return std::nullopt;
    return Decimal{both->left % both->right, both->scale};
}

std::strong_ordering compare(const Decimal& left, const Decimal& right)
{
    if (const auto both = aligned(left, right)) return both->left <=> both->right;
    const double difference = left.to_double() - right.to_double();
    return difference < 0   ? std::strong_ordering::less
           : difference > 0 ? std::strong_ordering::greater
                            : std::strong_ordering::equal;
}

}  // namespace velora::engine
