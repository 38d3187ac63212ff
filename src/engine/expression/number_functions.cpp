#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "engine/expression/functions.h"

namespace velora::engine {

namespace {

using enum ValueClass;

template <ValueClass to>
Cell as(Call& call)
{
    return cell::converted(call.cell(0), to);
}

/// Written with or without a mask of digits: 12, -3, 0.5, 1e6; null for anything else.
template <ValueClass to>
Cell read(Call& call)
{
    return cell::converted(call.cell(0), to);
}

template <double (*function)(double)>
Cell real(Call& call)
{
    return cell::number(function(call.number(0)));
}

ValueClass wider(const Cell& left, const Cell& right)
{
    const auto wide = std::max({left.value_class, right.value_class, Integer});
    const bool real = left.get_if<double>() != nullptr || right.get_if<double>() != nullptr;
    return wide == Decimal && real ? Double : wide;
}

Cell greater(Call& call, bool wanted)
{
    const auto order = cell::compared(call.cell(0), call.cell(1));
    if (!order) return {};
    const auto result = wider(call.cell(0), call.cell(1));
    return cell::converted(call.cell((*order > 0) == wanted ? 0 : 1), result);
}

Cell absolute(Call& call)
{
    const Cell& value = call.cell(0);
    if (const auto* decimal = value.get_if<engine::Decimal>()) {
        return cell::decimal(decimal->units() < 0 ? decimal->negated() : *decimal);
    }
    if (const auto* number = value.get_if<double>()) return cell::number(std::abs(*number), value.value_class);
    const int64_t whole = call.integer(0);
    const auto positive = whole < 0 ? static_cast<int64_t>(0 - static_cast<uint64_t>(whole)) : whole;
    return cell::integer(positive, std::max(value.value_class, Integer));
}

/// Halves go up, towards positive infinity. A float gives an Integer, everything else a Long.
Cell rounded(Call& call)
{
    const bool single = call.cell(0).value_class == Float;
    const double value = cell::to_double(call.cell(0));
    const double floor = std::floor(value);
    const double result = value - floor >= 0.5 ? floor + 1 : floor;
    return cell::converted(cell::number(result), single ? Integer : Long);
}

double nearest_even(double value)
{
    return std::nearbyint(value);
}

double sign(double value)
{
    return value > 0 ? 1 : value < 0 ? -1 : value;
}

double to_degrees(double value)
{
    return value * (180 / M_PI);
}

double to_radians(double value)
{
    return value * (M_PI / 180);
}

Cell floor_remainder(Call& call, bool quotient)
{
    const int64_t left = call.integer(0);
    const int64_t right = call.integer(1);
    if (right == 0 || (right == -1 && left == std::numeric_limits<int64_t>::min())) return {};
    int64_t divided = left / right;
    if (left % right != 0 && (left < 0) != (right < 0)) --divided;
    return cell::integer(quotient ? divided : left - divided * right, wider(call.cell(0), call.cell(1)));
}

std::optional<Rounding> rounding_of(int64_t mode)
{
    if (mode < 0 || mode > 7) return std::nullopt;
    return static_cast<Rounding>(mode);
}

int places_of(int64_t scale)
{
    return scale < 0 || scale > Decimal::kMostPlaces ? -1 : static_cast<int>(scale);
}

Cell with_scale(Call& call, int64_t mode)
{
    const auto rounding = rounding_of(mode);
    return rounding ? cell::decimal(call.decimal(0).with_scale(places_of(call.integer(1)), *rounding)) : Cell{};
}

Cell with_exact_scale(Call& call)
{
    const auto changed = call.decimal(0).with_scale(places_of(call.integer(1)), Rounding::HalfUp);
    return changed && compare(*changed, call.decimal(0)) == 0 ? cell::decimal(changed) : Cell{};
}

Cell divided(Call& call, int64_t scale, int64_t mode)
{
    const auto rounding = rounding_of(mode);
    if (!rounding) return {};
    return cell::decimal(divide(call.decimal(0), call.decimal(1), places_of(scale), *rounding));
}

Cell power(Call& call)
{
    constexpr int64_t kMost = 999;
    const int64_t exponent = call.integer(1);
    if (exponent < 0 || exponent > kMost) return {};
    std::optional<engine::Decimal> result = engine::Decimal::from(int64_t{1});
    for (int64_t at = 0; at < exponent && result; ++at) result = multiply(*result, call.decimal(0));
    return cell::decimal(result);
}

/// The digits of a whole number to a base.
Cell to_base(int64_t value, int64_t base)
{
    if (base < 2 || base > 36) return {};
    std::array<char, 72> text{};
    return cell::text(
        {text.data(), std::to_chars(text.data(), text.data() + text.size(), value, static_cast<int>(base)).ptr});
}

/// The bits of a whole number as digits to a base, as many as its class has.
Cell bits_to_base(Call& call, int base, bool wide)
{
    auto bits = static_cast<uint64_t>(call.integer(0));
    if (!wide) bits &= 0xFFFFFFFFU;
    std::array<char, 72> text{};
    return cell::text({text.data(), std::to_chars(text.data(), text.data() + text.size(), bits, base).ptr});
}

Cell from_base(Call& call, ValueClass result)
{
    std::string_view text = call.text(0);
    if (text.starts_with('+')) text.remove_prefix(1);
    const int64_t base = call.integer(1);
    int64_t value = 0;
    if (base < 2 || base > 36) return {};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, static_cast<int>(base));
    const bool whole = error == std::errc{} && end == text.data() + text.size() && !text.empty();
    const Cell made = cell::integer(value, result);
    return whole && *made.get_if<int64_t>() == value ? made : Cell{};
}

Cell order_of(Call& call)
{
    const auto order = cell::compared(call.cell(0), call.cell(1));
    return order ? cell::integer(*order) : Cell{};
}

/// A whole number over a power of ten.
Cell over_places(Call& call)
{
    const int places = places_of(call.integer(1));
    return places < 0 ? Cell{} : cell::decimal(engine::Decimal{cell::to_integer(call.cell(0)), places});
}

/// Rounds to places as a sheet does: halves away from zero, on the decimal digits.
Cell rounded_to(Call& call)
{
    const auto changed = call.decimal(0).with_scale(places_of(call.integer(1)), Rounding::HalfUp);
    return changed ? cell::number(changed->to_double()) : Cell{};
}

// clang-format off
constexpr auto kFunctions = std::to_array<Function>({
    {".", "intValue",    "n", Integer, as<Integer>},
    {".", "longValue",   "n", Long,    as<Long>},
    {".", "shortValue",  "n", Short,   as<Short>},
    {".", "byteValue",   "n", Byte,    as<Byte>},
    {".", "floatValue",  "n", Float,   as<Float>},
    {".", "doubleValue", "n", Double,  as<Double>},
    {".", "isNaN",       "f", Boolean, [](Call& c) { return cell::boolean(std::isnan(c.number(0))); }},
    {".", "isInfinite",  "f", Boolean, [](Call& c) { return cell::boolean(std::isinf(c.number(0))); }},
    {".", "add",         "mm", Decimal, [](Call& c) { return cell::decimal(add(c.decimal(0), c.decimal(1))); }},
    {".", "plus",        "mm", Decimal, [](Call& c) { return cell::decimal(add(c.decimal(0), c.decimal(1))); }},
    {".", "subtract",    "mm", Decimal, [](Call& c) { return cell::decimal(subtract(c.decimal(0), c.decimal(1))); }},
    {".", "multiply",    "mm", Decimal, [](Call& c) { return cell::decimal(multiply(c.decimal(0), c.decimal(1))); }},
    {".", "divide",      "mm", Decimal, [](Call& c) { return cell::decimal(divide(c.decimal(0), c.decimal(1))); }},
    {".", "divide",      "mmi", Decimal, [](Call& c) { return divided(c, c.decimal(0).scale(), c.integer(2)); }},
    {".", "divide",      "mmii", Decimal, [](Call& c) { return divided(c, c.integer(2), c.integer(3)); }},
    {".", "remainder",   "mm", Decimal, [](Call& c) { return cell::decimal(remainder(c.decimal(0), c.decimal(1))); }},
    {".", "mod",         "mm", Decimal, [](Call& c) { return cell::decimal(remainder(c.decimal(0), c.decimal(1))); }},
    {".", "pow",         "mi", Decimal, power},
    {".", "negate",      "m",  Decimal, [](Call& c) { return cell::decimal(c.decimal(0).negated()); }},
    {".", "abs",         "n",  Object,  absolute},
    {".", "min",         "nn", Object,  [](Call& c) { return greater(c, false); }},
    {".", "max",         "nn", Object,  [](Call& c) { return greater(c, true); }},
    {".", "signum",      "n",  Integer, [](Call& c) { return cell::converted(cell::number(sign(cell::to_double(c.cell(0)))), Integer); }},
    {".", "scale",       "m",  Integer, [](Call& c) { return cell::integer(c.decimal(0).scale()); }},
    {".", "setScale",    "mi",  Decimal, with_exact_scale},
    {".", "setScale",    "mii", Decimal, [](Call& c) { return with_scale(c, c.integer(2)); }},
    {".", "stripTrailingZeros", "m", Decimal, [](Call& c) { return cell::decimal(c.decimal(0).without_trailing_zeros()); }},
    {".", "toPlainString", "m", Text, [](Call& c) { return cell::text(c.decimal(0).text()); }},

    {"Math", "abs",   "n",  Object,  absolute},
    {"Math", "max",   "nn", Object,  [](Call& c) { return greater(c, true); }},
    {"Math", "min",   "nn", Object,  [](Call& c) { return greater(c, false); }},
    {"Math", "round", "n",  Object,  rounded},
    {"Math", "floor", "f",  Double,  real<std::floor>},
    {"Math", "ceil",  "f",  Double,  real<std::ceil>},
    {"Math", "rint",  "f",  Double,  real<nearest_even>},
    {"Math", "sqrt",  "f",  Double,  real<std::sqrt>},
    {"Math", "cbrt",  "f",  Double,  real<std::cbrt>},
    {"Math", "exp",   "f",  Double,  real<std::exp>},
    {"Math", "log",   "f",  Double,  real<std::log>},
    {"Math", "log10", "f",  Double,  real<std::log10>},
    {"Math", "sin",   "f",  Double,  real<std::sin>},
    {"Math", "cos",   "f",  Double,  real<std::cos>},
    {"Math", "tan",   "f",  Double,  real<std::tan>},
    {"Math", "asin",  "f",  Double,  real<std::asin>},
    {"Math", "acos",  "f",  Double,  real<std::acos>},
    {"Math", "atan",  "f",  Double,  real<std::atan>},
    {"Math", "signum",    "f", Double, real<sign>},
    {"Math", "toDegrees", "f", Double, real<to_degrees>},
    {"Math", "toRadians", "f", Double, real<to_radians>},
    {"Math", "pow",   "ff", Double, [](Call& c) { return cell::number(std::pow(c.number(0), c.number(1))); }},
    {"Math", "atan2", "ff", Double, [](Call& c) { return cell::number(std::atan2(c.number(0), c.number(1))); }},
    {"Math", "hypot", "ff", Double, [](Call& c) { return cell::number(std::hypot(c.number(0), c.number(1))); }},
    {"Math", "floorDiv", "ii", Object, [](Call& c) { return floor_remainder(c, true); }},
    {"Math", "floorMod", "ii", Object, [](Call& c) { return floor_remainder(c, false); }},

    {"Integer",    "valueOf",     "n", Integer, as<Integer>},
    {"Integer",    "valueOf",     "t", Integer, read<Integer>},
    {"Integer",    "parseInt",    "t", Integer, read<Integer>},
    {"Integer",    "toString",    "n", Text,    as<Text>},
    {"Long",       "valueOf",     "n", Long,    as<Long>},
    {"Long",       "valueOf",     "t", Long,    read<Long>},
    {"Long",       "parseLong",   "t", Long,    read<Long>},
    {"Long",       "toString",    "n", Text,    as<Text>},
    {"Short",      "valueOf",     "n", Short,   as<Short>},
    {"Short",      "valueOf",     "t", Short,   read<Short>},
    {"Byte",       "valueOf",     "n", Byte,    as<Byte>},
    {"Float",      "valueOf",     "n", Float,   as<Float>},
    {"Float",      "valueOf",     "t", Float,   read<Float>},
    {"Float",      "parseFloat",  "t", Float,   read<Float>},
    {"Double",     "valueOf",     "n", Double,  as<Double>},
    {"Double",     "valueOf",     "t", Double,  read<Double>},
    {"Double",     "parseDouble", "t", Double,  read<Double>},
    {"Double",     "toString",    "n", Text,    as<Text>},
    {"Integer",    "parseInt",    "ti", Integer, [](Call& c) { return from_base(c, Integer); }},
    {"Integer",    "valueOf",     "ti", Integer, [](Call& c) { return from_base(c, Integer); }},
    {"Long",       "parseLong",   "ti", Long,    [](Call& c) { return from_base(c, Long); }},
    {"Integer",    "toString",    "ii", Text,    [](Call& c) { return to_base(c.integer(0), c.integer(1)); }},
    {"Long",       "toString",    "ii", Text,    [](Call& c) { return to_base(c.integer(0), c.integer(1)); }},
    {"Integer",    "toHexString",    "i", Text, [](Call& c) { return bits_to_base(c, 16, false); }},
    {"Integer",    "toOctalString",  "i", Text, [](Call& c) { return bits_to_base(c, 8, false); }},
    {"Integer",    "toBinaryString", "i", Text, [](Call& c) { return bits_to_base(c, 2, false); }},
    {"Long",       "toHexString",    "i", Text, [](Call& c) { return bits_to_base(c, 16, true); }},
    {"Long",       "toOctalString",  "i", Text, [](Call& c) { return bits_to_base(c, 8, true); }},
    {"Long",       "toBinaryString", "i", Text, [](Call& c) { return bits_to_base(c, 2, true); }},
    {"Integer",    "compare",     "nn", Integer, order_of},
    {"Long",       "compare",     "nn", Integer, order_of},
    {"Double",     "compare",     "nn", Integer, order_of},
    {"Double",     "isInfinite",  "f", Boolean, [](Call& c) { return cell::boolean(std::isinf(c.number(0))); }},
    {"Double",     "isNaN",       "f", Boolean, [](Call& c) { return cell::boolean(std::isnan(c.number(0))); }},
    {"BigDecimal", "valueOf",     "n", Decimal, as<Decimal>},
    {"BigDecimal", "valueOf",     "ni", Decimal, over_places},
    {"BigInteger", "valueOf",     "n", Long,    as<Long>},

    {"new", "Integer",    "n", Integer, as<Integer>},
    {"new", "Integer",    "t", Integer, read<Integer>},
    {"new", "Long",       "n", Long,    as<Long>},
    {"new", "Long",       "t", Long,    read<Long>},
    {"new", "Short",      "n", Short,   as<Short>},
    {"new", "Short",      "t", Short,   read<Short>},
    {"new", "Byte",       "n", Byte,    as<Byte>},
    {"new", "Float",      "n", Float,   as<Float>},
    {"new", "Float",      "t", Float,   read<Float>},
    {"new", "Double",     "n", Double,  as<Double>},
    {"new", "Double",     "t", Double,  read<Double>},
    {"new", "BigDecimal", "n", Decimal, as<Decimal>},
    {"new", "BigDecimal", "t", Decimal, read<Decimal>},
    {"new", "BigInteger", "t", Long,    read<Long>},

    {"", "ABS",   "n",  Object, absolute},
    {"", "ROUND", "mi", Double, rounded_to},
    {"", "MAX",   "nn", Object, [](Call& c) { return greater(c, true); }},
    {"", "MIN",   "nn", Object, [](Call& c) { return greater(c, false); }},
    {"", "INTEGER_VALUE", "a", Integer, as<Integer>},
    {"", "LONG_VALUE",    "a", Long,    as<Long>},
    {"", "DOUBLE_VALUE",  "a", Double,  as<Double>},
});
// clang-format on

}  // namespace

std::span<const Function> number_functions()
{
    return kFunctions;
}

}  // namespace velora::engine
