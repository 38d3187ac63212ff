#include "pricing/amount_display.h"

#include <cmath>
#include <cstdio>
#include <limits>

#include "gateway/view_reading.h"
#include "session/error_messengers.h"
#include "values/text.h"

namespace velora {

namespace {

int mask_decimals(int16_t decimals)
{
    return decimals >= 0 && decimals <= 5 ? decimals : 5;
}

std::string three_digits(int64_t group)
{
    std::string text = std::to_string(group);
    return text.insert(0, 3 - text.size(), '0');
}

/// The whole part in groups of three, as far as millions.
std::string grouped(std::string_view digits, std::string_view separator)
{
    const double whole = leading_number(digits);
    if (whole > std::numeric_limits<int32_t>::max()) throw fault::overflow("Display_AccpacCurrency");
    const auto value = static_cast<int64_t>(whole);
    const int64_t millions = value / 1'000'000;
    const int64_t thousands = value / 1'000 % 1'000;
    const int64_t units = value % 1'000;
    std::string text;
    if (millions > 0) {
        text.append(std::to_string(millions)).append(separator);
        return text.append(three_digits(thousands)).append(separator).append(three_digits(units));
    }
    if (thousands > 0) return text.append(std::to_string(thousands)).append(separator).append(three_digits(units));
    return std::to_string(units);
}

/// The digits behind the decimal mark, the fraction rounded by itself.
std::string fraction_digits(std::string_view fraction, int16_t decimals)
{
    const std::string text = fraction.empty() ? "0.000" : std::string("0.").append(fraction);
    return format_number(leading_number(text), mask_decimals(decimals)).substr(2);
}

std::string with_sign(std::string amount, int16_t negative_display)
{
    switch (negative_display) {
        case 1:
            return amount + "-";
        case 2:
            return "-" + amount;
        case 3:
            return "(" + amount + ")";
        default:
            return amount;
    }
}

std::string with_symbol(std::string amount, std::string_view symbol, int16_t position)
{
    switch (position) {
        case 1:
            return std::string(symbol).append(" ").append(amount);
        case 2:
            return std::string(symbol).append(amount);
        case 3:
            return amount.append(" ").append(symbol);
        case 4:
            return amount.append(symbol);
        default:
            return amount;
    }
}

std::string shown_amount(double value, const CurrencyInfo& currency, bool show_symbol)
{
    const std::string digits = plain_text(std::abs(value));
    const auto point = digits.find('.');
    const std::string_view whole = std::string_view(digits).substr(0, point);
    const std::string_view fraction =
        point == std::string::npos ? std::string_view() : std::string_view(digits).substr(point + 1);
    std::string amount = grouped(whole, trimmed(currency.ThousandSeparator));
    if (currency.Decimals != 0) {
        amount.append(trimmed(currency.DecimalSeparator)).append(fraction_digits(fraction, currency.Decimals));
    }
    if (value < 0) amount = with_sign(std::move(amount), currency.NegativeDisplay);
    if (show_symbol) amount = with_symbol(std::move(amount), trimmed(currency.Symbol), currency.SymbolPosition);
    return std::string(trimmed(amount));
}

struct Separator {
    char character;
    std::string_view option;
};

// clang-format off
/// The field names are spelled as the accounting system spells them.
constexpr auto kSeparators = std::to_array<Separator>({
    {'-', "HYHEN"}, {'/', "FWDSLASH"}, {'\\', "BCKSLASH"}, {'*', "ASTERISK"},
    {'.', "PERIOD"}, {'(', "LFTPARENS"}, {')', "RGTPARENS"}, {'#', "POUNDSGN"},
});
// clang-format on

constexpr auto kSeparatorOptions = [] {
    std::array<std::string_view, kSeparators.size()> names;
    for (size_t at = 0; at < names.size(); ++at) names[at] = kSeparators[at].option;
    return names;
}();

std::shared_ptr<const ViewRow> inventory_options(SessionState& state)
{
    return state.cache.remember("IC0380", {}, [&]() -> std::shared_ptr<const ViewRow> {
        OpenedView view(state, "IC0380");
        view.init();
        return view.fetch() ? std::make_shared<const ViewRow>(view, kSeparatorOptions) : nullptr;
    });
}

bool is_kept(char character, const ViewRow& options)
{
    for (const auto& [separator, option] : kSeparators) {
        if (character == separator) return !to_bool(options.field(option));
    }
    return true;
}

}  // namespace

std::string Format_Decimals(const SessionState& state, double value, int16_t decimals)
{
    const auto* region = state.ports.region;
    return format_number(value, mask_decimals(decimals), region != nullptr ? region->marks() : NumberMarks{});
}

double rounded(double value, int16_t decimals)
{
    return round_as_text(value, mask_decimals(decimals));
}

int16_t currency_decimals(SessionState& state, std::string_view currency)
{
    return accounting(state).GetCurrency(currency).Decimals;
}

std::string Display_AccpacCurrency(SessionState& state, double value, std::string& currency, bool showSymbol)
{
    return with_failure_path(state, ErrorMessenger, "modGeneral.Display_AccpacCurrency", [&] {
        if (trimmed(currency).empty()) currency = accounting(state).Company().HomeCurrency;
        return shown_amount(value, accounting(state).GetCurrency(currency), showSymbol);
    });
}

std::string Return_FormatItem(SessionState& state, std::string_view item)
{
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Return_FormatItem", [&] {
        const auto number = trimmed(item);
        return state.cache.remember("Return_FormatItem", {number}, [&] {
            OpenedView view(state, "IC0310");
            view.browse("ITEMNO = " + filter_text(number));
            return view.fetch() ? view.text("FMTITEMNO") : std::string();
        });
    });
}

std::string Remove_Separators(SessionState& state, std::string_view item)
{
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Remove_Separators", [&] {
        std::string kept;
        const auto options = inventory_options(state);
        if (!options) return kept;
        for (const char character : item) {
            if (is_kept(character, *options)) kept.push_back(character);
        }
        return std::string(trimmed(kept));
    });
}

}  // namespace velora
