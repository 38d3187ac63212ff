#include "engine/expression/utf16.h"

#include <algorithm>

#include "engine/expression/cell.h"

namespace velora::engine {

namespace {

constexpr int64_t kUnixDay = 25569;  // 1 January 1970
constexpr int64_t kSecondsOfDay = 86400;

bool is_lead(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

size_t units_of(char lead)
{
    return static_cast<unsigned char>(lead) >= 0xF0 ? 2 : 1;
}

char32_t character_at(std::string_view utf8, size_t at)
{
    const auto lead = static_cast<unsigned char>(utf8[at]);
    if (lead < 0x80) return lead;
    const size_t more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    auto character = static_cast<char32_t>(lead & (0x3F >> more));
    for (size_t next = 1; next <= more; ++next) {
        if (at + next >= utf8.size() || is_lead(utf8[at + next])) return 0xFFFD;
        character = (character << 6) | (static_cast<unsigned char>(utf8[at + next]) & 0x3F);
    }
    return character;
}

}  // namespace

bool is_ascii(std::string_view utf8)
{
    return std::ranges::all_of(utf8, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

size_t utf16_length(std::string_view utf8)
{
    size_t units = 0;
    for (const char c : utf8) units += is_lead(c) ? units_of(c) : 0;
    return units;
}

std::optional<size_t> utf8_offset(std::string_view utf8, int64_t utf16_position)
{
    if (utf16_position < 0) return std::nullopt;
    const auto wanted = static_cast<size_t>(utf16_position);
    size_t units = 0;
    for (size_t at = 0; at < utf8.size(); ++at) {
        if (!is_lead(utf8[at])) continue;
        if (units + units_of(utf8[at]) > wanted) return at;
        units += units_of(utf8[at]);
    }
    if (units == wanted) return utf8.size();
    return std::nullopt;
}

std::optional<char16_t> utf16_unit(std::string_view utf8, int64_t utf16_position)
{
    const auto at = utf8_offset(utf8, utf16_position);
    if (!at || *at == utf8.size()) return std::nullopt;
    const char32_t character = character_at(utf8, *at);
    if (character < 0x10000) return static_cast<char16_t>(character);
    const bool high = static_cast<size_t>(utf16_position) == utf16_length(utf8.substr(0, *at));
    const char32_t rest = character - 0x10000;
    return static_cast<char16_t>(high ? 0xD800 + (rest >> 10) : 0xDC00 + (rest & 0x3FF));
}

void append_utf16(char16_t unit, std::string& out)
{
    const bool surrogate = unit >= 0xD800 && unit < 0xE000;
    const unsigned c = surrogate ? 0xFFFDU : unit;
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
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
