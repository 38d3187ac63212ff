#include "engine/export/xls/xls_pattern.h"

#include <algorithm>
#include <cmath>

#include "values/characters.h"

namespace velora::engine {
namespace {

constexpr std::string_view kCurrencySign = "\xC2\xA4";
constexpr std::string_view kPerMille = "\xE2\x80\xB0";

/// One half of a number pattern, the halves being positive and negative numbers.
struct NumberPart {
    std::string prefix, digits, suffix;
};

/// What the shown text has in front of its digits or behind them where the pattern has the currency sign.
std::string currency_in(std::string_view shown)
{
    constexpr std::string_view kNumber = "0123456789.,-() ";
    std::string sign;
    for (const char c : shown) {
        if (kNumber.find(c) == std::string_view::npos) sign += c;
    }
    return sign;
}

/// Takes the pattern up to ";" apart, quotes resolved. None for what no workbook can show.
std::optional<NumberPart> take_part(std::string_view& pattern, std::string_view shown)
{
    NumberPart part;
    bool in_quotes = false;
    while (!pattern.empty()) {
        const char c = pattern.front();
        std::string& literal = part.digits.empty() ? part.prefix : part.suffix;
        if (!in_quotes && pattern.starts_with(kPerMille)) return std::nullopt;
        if (!in_quotes && pattern.starts_with(kCurrencySign)) {
            literal += currency_in(shown);
            pattern.remove_prefix(kCurrencySign.size());
            continue;
        }
        pattern.remove_prefix(1);
        if (c == '\'') {
            const bool doubled = !pattern.empty() && pattern.front() == '\'';
            if (doubled) {
                literal += c;
                pattern.remove_prefix(1);
            } else {
                in_quotes = !in_quotes;
            }
        } else if (!in_quotes && c == ';') {
            break;
        } else if (!in_quotes && part.suffix.empty() && std::string_view("#0,.").find(c) != std::string_view::npos) {
            part.digits += c;
        } else if (!in_quotes && c == 'E' && !part.digits.empty()) {
            return std::nullopt;
        } else {
            literal += c;
        }
    }
    return part;
}

/// Digits for whole numbers and groups of three, the form that workbooks read.
std::string whole_digits(std::string_view pattern)
{
    const size_t zeros = static_cast<size_t>(std::count(pattern.begin(), pattern.end(), '0'));
    const size_t comma = pattern.rfind(',');
    if (comma == std::string_view::npos) return zeros == 0 ? "#" : std::string(zeros, '0');
    if (pattern.size() - comma != 4) return {};
    std::string digits(zeros, '0');
    if (digits.size() < 4) digits.insert(0, 4 - digits.size(), '#');
    for (size_t at = digits.size(); at > 3;) digits.insert(at -= 3, ",");
    return digits;
}

size_t decimals_needed(double value, size_t least, size_t most, bool percent)
{
    double rest = std::abs(percent ? value * 100 : value);
    rest -= std::floor(rest);
    const double scale = std::pow(10.0, static_cast<double>(most));
    auto digits = static_cast<uint64_t>(std::llround(rest * scale));
    size_t needed = most;
    while (needed > least && digits % 10 == 0) {
        digits /= 10;
        --needed;
    }
    return needed;
}

std::optional<std::string> number_code(const NumberPart& part, double value)
{
    const size_t point = part.digits.find('.');
    const std::string whole = whole_digits(std::string_view(part.digits).substr(0, point));
    if (whole.empty()) return std::nullopt;
    if (point == std::string::npos) return whole;
    const std::string_view fraction = std::string_view(part.digits).substr(point + 1);
    const auto least = static_cast<size_t>(std::count(fraction.begin(), fraction.end(), '0'));
    if (fraction.size() > 15) return std::nullopt;
    const bool percent = part.prefix.find('%') != std::string::npos || part.suffix.find('%') != std::string::npos;
    const size_t decimals = decimals_needed(value, least, fraction.size(), percent);
    return decimals == 0 ? whole : whole + "." + std::string(decimals, '0');
}

/// The letter run at the front of a date pattern.
std::string_view take_run(std::string_view& pattern)
{
    const size_t end = pattern.find_first_not_of(pattern.front());
    const std::string_view run = pattern.substr(0, end);
    pattern.remove_prefix(run.size());
    return run;
}

std::string take_xls_literal(std::string_view& pattern)
{
    pattern.remove_prefix(1);
    const size_t end = std::min(pattern.find('\''), pattern.size());
    std::string literal(pattern.substr(0, end));
    if (literal.empty()) literal = "'";
    pattern.remove_prefix(std::min(end + 1, pattern.size()));
    return xls_literal(literal);
}

std::optional<std::string> date_field(std::string_view run)
{
    const size_t length = run.size();
    switch (run.front()) {
        case 'y':
            return length == 2 ? "yy" : "yyyy";
        case 'M':
            return std::string(std::min<size_t>(length, 4), 'm');
        case 'd':
            return std::string(std::min<size_t>(length, 2), 'd');
        case 'E':
            return length > 3 ? "dddd" : "ddd";
        case 'H':
        case 'h':
        case 'K':
        case 'k':
            return std::string(std::min<size_t>(length, 2), 'h');
        case 'm':
            return std::string(std::min<size_t>(length, 2), 'm');
        case 's':
            return std::string(std::min<size_t>(length, 2), 's');
        case 'a':
            return "AM/PM";
        default:
            return std::nullopt;
    }
}

}  // namespace

std::string xls_literal(std::string_view literal)
{
    std::string out;
    bool open = false;
    const auto set_open = [&](bool wanted) {
        if (open != wanted) out += '"';
        open = wanted;
    };
    for (const char c : literal) {
        // These stand for themselves in a format code, "%" with its meaning.
        const bool bare = std::string_view(" -+()%\"").find(c) != std::string_view::npos;
        set_open(!bare);
        if (c == '"') out += '\\';
        out += c;
    }
    set_open(false);
    return out;
}

std::optional<std::string> xls_number_format(std::string_view pattern, double value, std::string_view shown)
{
    const auto positive = take_part(pattern, shown);
    if (!positive || positive->digits.empty()) return std::nullopt;
    const auto digits = number_code(*positive, value);
    if (!digits) return std::nullopt;
    std::string code = xls_literal(positive->prefix) + *digits + xls_literal(positive->suffix);
    if (!pattern.empty()) {
        const auto negative = take_part(pattern, shown);
        if (!negative) return std::nullopt;
        code += ";" + xls_literal(negative->prefix) + *digits + xls_literal(negative->suffix);
    }
    return code.size() <= 255 ? std::optional(code) : std::nullopt;
}

std::optional<std::string> xls_date_format(std::string_view pattern)
{
    std::string code;
    while (!pattern.empty()) {
        const char c = pattern.front();
        if (c == '\'') {
            code += take_xls_literal(pattern);
        } else if (is_letter(c)) {
            const auto field = date_field(take_run(pattern));
            if (!field) return std::nullopt;
            code += *field;
        } else {
            // Escaped, so that a slash stays a slash in every region.
            if (c == '/' || c == '.' || c == '-' || c == ',') code += '\\';
            code += c;
            pattern.remove_prefix(1);
        }
    }
    return code.empty() || code.size() > 255 ? std::nullopt : std::optional(code);
}

}  // namespace velora::engine
