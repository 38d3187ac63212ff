#include "pricing/contract_price.h"

#include <array>

#include "gateway/view_reading.h"
#include "pricing/amount_display.h"
#include "pricing/price_row.h"
#include "session/error_messengers.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr int16_t kCostPlusPercent = 4;
constexpr int16_t kCostPlusAmount = 5;
constexpr int16_t kFixedPrice = 6;
constexpr int16_t kMarkupCost = 1;  // the one cost method whose cost stands on the price list

// clang-format off
constexpr auto kContractFields = std::to_array<std::string_view>({
    "STARTDATE", "EXPIRE", "PRICETYPE", "CALCPRICE", "FIXPRICE", "COSTMETHOD", "PLUSPER", "PLUSAMT",
});
/// The costs of cost methods 2 to 7.
constexpr auto kLocationCosts = std::to_array<std::string_view>({
    "STDCOST", "RECENTCOST", "AVGCOST", "LASTCOST", "COST1", "COST2",
});
constexpr auto kManufacturers = std::to_array<std::string_view>({
    "MANF1", "MANF2", "MANF3", "MANF4", "MANF5", "MANF6", "MANF7", "MANF8",
});
// clang-format on

/// The date of the quote counts. A blank start counts whatever the end holds: the end is not asked, and that is meant.
bool counts(const ViewRow& contract, const DateTime& quote_date)
{
    const Value& start = contract.field("STARTDATE");
    if (to_text(start).empty()) return true;
    const auto from = date_in(start);
    const auto to = date_in(contract.field("EXPIRE"));
    return from && to && *from <= quote_date && *to >= quote_date;
}

std::shared_ptr<const ViewRow> find_contract(SessionState& state, std::string_view item, std::string_view price_list)
{
    const std::string filter = "CUSTNO = " + filter_text(trimmed(state.gQuote.AccpacID)) +
                               " AND ITEMNO = " + filter_text(trimmed(item)) +
                               " AND PRICELIST = " + filter_text(trimmed(price_list));
    return state.cache.remember("IC0274", {filter}, [&]() -> std::shared_ptr<const ViewRow> {
        OpenedView view(state, "IC0274");
        view.browse(filter);
        return view.fetch() ? std::make_shared<const ViewRow>(view, kContractFields) : nullptr;
    });
}

/// The location of the current detail line, that of the quote where the line has none.
std::string cost_location(SessionState& state)
{
    std::string location = to_text(opened(state.gQuoteDetails, "gQuoteDetails").value("deLocation"));
    return trimmed(location).empty() ? state.gQuote.quLocation : location;
}

float cost_plus_price(SessionState& state, const ViewRow& contract, int16_t price_type, std::string_view item,
                      std::string_view price_list, std::string_view currency)
{
    const auto method = to_int16(contract.field("COSTMETHOD"));
    const auto percent = to_single(contract.number("PLUSPER"));
    const auto amount = to_single(contract.number("PLUSAMT"));
    if (method == kMarkupCost) {
        return Return_MarkupCostPrice(state, item, price_list, currency, percent, amount, price_type);
    }
    return Return_ContractCostPrice(state, item, cost_location(state), percent, amount, price_type, method, currency);
}

float contract_price(SessionState& state, const ViewRow& contract, std::string_view item, std::string_view price_list,
                     std::string_view currency)
{
    const auto price_type = to_int16(contract.field("PRICETYPE"));
    if (price_type >= 1 && price_type <= 3) return to_single(contract.number("CALCPRICE"));
    if (price_type == kFixedPrice) return to_single(contract.number("FIXPRICE"));
    if (price_type == kCostPlusPercent || price_type == kCostPlusAmount) {
        return cost_plus_price(state, contract, price_type, item, price_list, currency);
    }
    return 0;
}

float round_to_currency(SessionState& state, float price, std::string_view currency)
{
    return to_single(rounded(price, currency_decimals(state, currency)));
}

/// The column of the matrix whose head is the commodity; blank when none is.
std::string_view matrix_column(OpenedView& matrix, std::string_view commodity)
{
    matrix.browse("CTYPE = 1");
    while (matrix.fetch()) {
        for (const auto column : kManufacturers) {
            if (matrix.text(column) == trimmed(commodity)) return column;
        }
    }
    return {};
}

}  // namespace

float Return_ContractPrice(SessionState& state, std::string_view item, std::string_view priceList,
                           std::string_view currency)
{
    if (state.gQuote.CustFrom != 0 || trimmed(state.gQuote.AccpacID).empty()) return 0;
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Return_ContractPrice", [&] {
        const auto contract = find_contract(state, item, priceList);
        if (!contract || !counts(*contract, state.gQuote.quDateEnter)) return 0.0F;
        return contract_price(state, *contract, item, priceList, currency);
    });
}

float Return_MarkupCostPrice(SessionState& state, std::string_view item, std::string_view priceList,
                             std::string_view currency, float percent, float amount, int16_t priceType)
{
    float result = 0;
    if (trimmed(item).empty()) return result;
    with_failure_path(state, ErrorACCPAC, "modGeneral.Return_MarkupCostPrice", [&] {
        OpenedView view(state, "IC0480");
        view.browse(price_filter(item, priceList, currency));
        if (view.fetch()) {
            const double cost = view.number("MARKUPCOST");
            const float share = percent / 100.0F;
            result = to_single(priceType == kCostPlusPercent ? cost + cost * share : cost + amount);
            // The plain name in every version of the inventory module: that is meant.
            if (result == 0) result = to_single(view.number("BASEPRICE"));
        }
        result = round_to_currency(state, result, currency);
    });
    return result;
}

float Return_ContractCostPrice(SessionState& state, std::string_view item, std::string_view location, float percent,
                               float amount, int16_t priceType, int16_t costMethod, std::string_view currency)
{
    constexpr int16_t kFirstMethod = 2;
    float result = 0;
    if (trimmed(item).empty()) return result;
    with_failure_path(state, ErrorACCPAC, "modGeneral.Return_ContractCostPrice", [&] {
        OpenedView view(state, "IC0290");
        view.browse("ITEMNO = " + filter_text(trimmed(item)) + " AND LOCATION = " + std::string(trimmed(location)));
        const auto method = static_cast<size_t>(costMethod - kFirstMethod);
        if (view.fetch() && costMethod >= kFirstMethod && method < kLocationCosts.size()) {
            const double cost = view.number(kLocationCosts[method]);
            const double plus = priceType == kCostPlusPercent ? cost * (double{percent} / 100) : double{amount};
            result = to_single(cost + plus);
        }
        result = round_to_currency(state, result, currency);
    });
    return result;
}

Value Return_CIGPrice(SessionState& state, std::string_view customerCode, std::string_view commodity)
{
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Return_CIGPrice", [&] {
        OpenedView view(state, "MW0200");
        const auto column = matrix_column(view, commodity);
        view.cancel();
        view.browse("CCODE = " + filter_text(customerCode));
        return view.fetch() ? view.field(column) : Value();  // without a column this is a fault of the session
    });
}

}  // namespace velora
