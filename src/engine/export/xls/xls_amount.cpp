#include "engine/export/xls/xls_amount.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "engine/export/xls/xls_pattern.h"
#include "values/characters.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr size_t kMostDigits = 15;  // what a spreadsheet's numbers hold
constexpr size_t kGroup = 3;
constexpr size_t kMostUnmarked = 3;  // figures that may stand without any mark: more of them would have been grouped
constexpr size_t kLongestWord = 4;   // of a currency's code or a unit
constexpr std::string_view kMinus = "\u2212";
constexpr std::string_view kGroupMarks[] = {".", ",", "'", "\u2019", " ", "\u00A0", "\u202F", "\u2009"};

/// The mark at the front of the text; empty for none.
std::string_view leading_mark(std::string_view text)
{
    const auto found = std::ranges::find_if(kGroupMarks, [&](std::string_view mark) { return text.starts_with(mark); });
    return found != std::end(kGroupMarks) ? *found : std::string_view();
}

/// The figures of an amount, parted by its marks.
struct Figures {
    std::vector<std::string_view> parts, marks;

    /// "1 234 567": what a mark parts are groups of three.
    [[nodiscard]] bool in_groups(size_t count) const
    {
        if (parts[0].empty() || parts[0].size() > kGroup || parts[0][0] == '0') return false;
        for (size_t i = 1; i < count; ++i) {
            if (parts[i].size() != kGroup || marks[i - 1] != marks[0]) return false;
        }
        return true;
    }
};

std::optional<Figures> figures_of(std::string_view body)
{
    Figures figures;
    for (size_t at = 0; at < body.size();) {
        const size_t begin = at;
        while (at < body.size() && is_digit(body[at])) ++at;
        figures.parts.push_back(body.substr(begin, at - begin));
        if (at == body.size()) break;
        const std::string_view mark = leading_mark(body.substr(at));
        if (mark.empty()) return std::nullopt;
        figures.marks.push_back(mark);
        at += mark.size();
    }
    return figures;
}

bool is_point_or_comma(std::string_view mark)
{
    return mark == "." || mark == ",";
}

/// Takes the figures in: which mark is which.
bool read_figures(std::string_view body, WrittenAmount& amount)
{
    const auto figures = figures_of(body);
    if (!figures) return false;
    const auto& [parts, marks] = *figures;
    for (const std::string_view part : parts) amount.digits += part;
    if (amount.digits.size() > kMostDigits) return false;
    const std::string_view whole = parts[0];
    const bool leading_zero = whole.size() > 1 && whole[0] == '0';
    if (leading_zero) return false;
    if (marks.empty()) return whole.size() <= kMostUnmarked;
    const bool all_groups = figures->in_groups(parts.size());
    const bool last_is_decimal =
        is_point_or_comma(marks.back()) &&
        (marks.size() == 1 || (marks.back() != marks[0] && figures->in_groups(parts.size() - 1)));
    if (!all_groups && !last_is_decimal) return false;
    amount.open = all_groups && last_is_decimal;
    amount.grouped = all_groups || marks.size() > 1;
    if (!all_groups) amount.decimals = parts.back().size();
    if (last_is_decimal) amount.decimal_mark = marks.back()[0];
    return true;
}

/// What may stand beside the figures: currency signs, and one short word where the figures have a mark.
bool is_beside(std::string_view text, bool marked)
{
    size_t letters = 0, points = 0, percents = 0;
    for (size_t at = 0; at < text.size();) {
        const auto [character, size] = utf8_at(text, at);
        at += size;
        if (character == '%') {
            ++percents;
        } else if (character == '.') {
            ++points;  // of an abbreviation; "1." counts lines, ".5" has no figure in front
        } else if (u_isalpha(static_cast<UChar32>(character)) != 0) {
            ++letters;
        } else if (character != ' ' && character != 0xA0 && character != 0x202F &&
                   u_charType(static_cast<UChar32>(character)) != U_CURRENCY_SYMBOL) {
            return false;
        }
    }
    return percents <= 1 && points <= letters && letters <= kLongestWord && (letters == 0 || marked);
}

/// Takes the sign away: one minus before or behind the figures, or parentheses around all.
bool take_sign(std::string& prefix, std::string& suffix)
{
    const auto take = [](std::string& from, std::string_view sign) {
        const size_t at = from.find(sign);
        if (at == std::string::npos) return false;
        from.erase(at, sign.size());
        return true;
    };
    if (prefix.starts_with('(') && suffix.ends_with(')')) return take(prefix, "(") && take(suffix, ")");
    return take(prefix, "-") || take(prefix, kMinus) || take(suffix, "-") || take(suffix, kMinus);
}

bool is_percent(const WrittenAmount& amount)
{
    return amount.prefix.find('%') != std::string::npos || amount.suffix.find('%') != std::string::npos;
}

}  // namespace

std::optional<WrittenAmount> written_amount(std::string_view text)
{
    constexpr std::string_view kDigits = "0123456789";
    const size_t first = text.find_first_of(kDigits), last = text.find_last_of(kDigits);
    if (first == std::string_view::npos) return std::nullopt;
    WrittenAmount amount;
    if (!read_figures(text.substr(first, last + 1 - first), amount)) return std::nullopt;
    amount.prefix = text.substr(0, first);
    amount.suffix = text.substr(last + 1);
    const std::string prefix = amount.prefix, suffix = amount.suffix;
    amount.negative = take_sign(amount.prefix, amount.suffix);
    if (amount.negative) {
        amount.negative_prefix = prefix;
        amount.negative_suffix = suffix;
    }
    const bool marked = amount.grouped || amount.decimals > 0;
    if (!is_beside(amount.prefix, marked) || !is_beside(amount.suffix, marked)) return std::nullopt;
    return amount;
}

WrittenAmount WrittenAmount::settled(char mark) const
{
    WrittenAmount result = *this;
    result.open = false;
    if (open && mark == decimal_mark) {
        result.grouped = false;
        result.decimals = kGroup;
    }
    return result;
}

double WrittenAmount::value() const
{
    // Read as one number, so that it is the one nearest to what is written.
    const size_t shift = decimals + (is_percent(*this) ? 2 : 0);
    const std::string number = digits + "e-" + std::to_string(shift);
    double result = 0;
    std::from_chars(number.data(), number.data() + number.size(), result);
    return negative ? -result : result;
}

std::string WrittenAmount::format() const
{
    std::string figures = grouped ? "#,##0" : "0";
    if (decimals > 0) figures += "." + std::string(decimals, '0');
    std::string code = xls_literal(prefix) + figures + xls_literal(suffix);
    if (negative) code += ";" + xls_literal(negative_prefix) + figures + xls_literal(negative_suffix);
    return code;
}

}  // namespace velora::engine
