#include "adapters/terminal/date_pattern.h"

#include <fmt/format.h>

namespace velora::terminal {

namespace {

constexpr std::string_view kFields = "yMd";

}  // namespace

DatePattern::DatePattern(std::string pattern) : pattern_(std::move(pattern)) {}

std::string DatePattern::write(const DateTime& date) const
{
    const auto parts = date.parts();
    std::string text;
    bool is_literal = false;
    for (size_t at = 0; at < pattern_.size(); ++at) {
        const char c = pattern_[at];
        if (c == '\'') {
            is_literal = !is_literal;
            continue;
        }
        if (is_literal || kFields.find(c) == std::string_view::npos) {
            text += c;
            continue;
        }
        const size_t end = std::min(pattern_.find_first_not_of(c, at), pattern_.size());
        const size_t width = c == 'y' ? 4 : end - at;
        const int value = c == 'y' ? parts.year : c == 'M' ? parts.month : parts.day;
        text += fmt::format("{:0{}}", value, width);
        at = end - 1;
    }
    return text;
}

}  // namespace velora::terminal
