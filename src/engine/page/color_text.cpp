#include "engine/page/color_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "values/number_text.h"
#include "values/text.h"

namespace velora::engine {
namespace {

struct Named {
    std::string_view name;
    Color color;
};

// clang-format off
constexpr std::array kNamed = {
    Named{"black",     {0, 0, 0}},       Named{"white",   {255, 255, 255}}, Named{"red",    {255, 0, 0}},
    Named{"green",     {0, 255, 0}},     Named{"blue",    {0, 0, 255}},     Named{"yellow", {255, 255, 0}},
    Named{"gray",      {128, 128, 128}}, Named{"grey",    {128, 128, 128}}, Named{"cyan",   {0, 255, 255}},
    Named{"magenta",   {255, 0, 255}},   Named{"orange",  {255, 200, 0}},   Named{"pink",   {255, 175, 175}},
    Named{"lightgray", {192, 192, 192}}, Named{"darkgray", {64, 64, 64}},
};
// clang-format on

Color color_of(uint32_t rgb, uint32_t alpha = 255)
{
    return {static_cast<uint8_t>(rgb >> 16), static_cast<uint8_t>(rgb >> 8), static_cast<uint8_t>(rgb),
            static_cast<uint8_t>(alpha)};
}

std::optional<Color> from_hex(std::string_view digits)
{
    uint32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    if (digits.size() == 3) {
        return color_of((number >> 8) * 0x110000 + ((number >> 4) & 15) * 0x1100 + (number & 15) * 0x11);
    }
    if (digits.size() == 6) return color_of(number);
    if (digits.size() == 8) return color_of(number, number >> 24);
    return std::nullopt;
}

std::optional<Color> from_function(std::string_view list)
{
    std::array<double, 4> parts{0, 0, 0, 1};
    size_t count = 0;
    for (size_t at = 0; at <= list.size(); ++count) {
        const size_t end = std::min(list.find(',', at), list.size());
        const auto number = read_number(list.substr(at, end - at));
        if (!number || count == parts.size()) return std::nullopt;
        parts.at(count) = *number;
        at = end + 1;
    }
    if (count < 3) return std::nullopt;
    const auto byte = [](double value) { return static_cast<uint8_t>(std::lround(std::clamp(value, 0.0, 255.0))); };
    return Color{byte(parts[0]), byte(parts[1]), byte(parts[2]), byte(parts[3] * 255)};
}

}  // namespace

std::optional<Color> color_from_text(std::string_view text)
{
    const std::string lower = lower_ascii(trimmed(text));
    if (lower.starts_with('#')) return from_hex(std::string_view(lower).substr(1));
    for (const std::string_view function : {"rgba(", "rgb("}) {
        if (lower.starts_with(function) && lower.ends_with(')')) {
            return from_function(std::string_view(lower).substr(function.size(), lower.size() - function.size() - 1));
        }
    }
    for (const Named& known : kNamed) {
        if (known.name == lower) return known.color;
    }
    const auto number = read_number(lower);
    if (number && std::abs(*number) < 4294967296.0) {
        return color_of(static_cast<uint32_t>(static_cast<int64_t>(*number)));
    }
    return std::nullopt;
}

std::string color_text(Color color)
{
    if (color.alpha != 255) {
        return "rgba(" + std::to_string(color.red) + ", " + std::to_string(color.green) + ", " +
               std::to_string(color.blue) + ", " + plain_text(color.alpha / 255.0) + ")";
    }
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text = "#";
    for (const uint8_t part : {color.red, color.green, color.blue}) {
        text += kDigits[part >> 4];
        text += kDigits[part & 15];
    }
    return text;
}

}  // namespace velora::engine
