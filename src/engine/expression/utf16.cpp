#include "engine/expression/utf16.h"

#include <algorithm>

#include "engine/expression/cell.h"
#include "values/utf8.h"

namespace velora::engine {

namespace {

constexpr int64_t kUnixDay = 25569;  // 1 January 1970
constexpr int64_t kSecondsOfDay = 86400;

}  // namespace

bool is_ascii(std::string_view utf8)
{
    return std::ranges::all_of(utf8, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::optional<size_t> utf8_offset(std::string_view utf8, int64_t utf16_position)
{
    if (utf16_position < 0) return std::nullopt;
    auto left = static_cast<size_t>(utf16_position);
    for (const auto [character, size, at] : Utf8Characters(utf8)) {
        const size_t units = character > 0xFFFF ? 2 : 1;
        if (units > left) return at;
        left -= units;
    }
    return left == 0 ? std::optional(utf8.size()) : std::nullopt;
}

std::optional<char16_t> utf16_unit(std::string_view utf8, int64_t utf16_position)
{
    const auto at = utf8_offset(utf8, utf16_position);
    if (!at || *at == utf8.size()) return std::nullopt;
    std::u16string units;
    each_utf16_unit(utf8_at(utf8, *at).character, [&](char16_t unit) { units += unit; });
    const bool is_first = static_cast<size_t>(utf16_position) == utf16_size(utf8.substr(0, *at));
    return is_first ? units.front() : units.back();
}

int64_t milliseconds(const Cell& date)
{
    const auto* held = date.get_if<DateTime>();
    if (held == nullptr) return 0;
    return ((held->serial_day() - kUnixDay) * kSecondsOfDay + held->second_of_day()) * 1000;
}

DateTime from_milliseconds(int64_t milliseconds)
{
    constexpr int64_t kLimit = 200'000'000'000'000;  // within the years 1 to 9999
    const int64_t seconds = std::clamp(milliseconds, -kLimit / 4, kLimit) / 1000 - (milliseconds % 1000 < 0 ? 1 : 0);
    int64_t day = seconds / kSecondsOfDay;
    int64_t second = seconds % kSecondsOfDay;
    if (second < 0) {
        second += kSecondsOfDay;
        --day;
    }
    return {static_cast<int32_t>(day + kUnixDay), static_cast<int32_t>(second)};
}

int weekday(const DateTime& date)
{
    return ((date.serial_day() + 6) % 7 + 7) % 7;  // day 1 is a Sunday
}

}  // namespace velora::engine
