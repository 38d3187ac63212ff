#include "pricing/base_price.h"

#include <algorithm>
#include <vector>

#include "gateway/accounting_lookups.h"
#include "pricing/amount_display.h"
#include "pricing/contract_price.h"
#include "pricing/price_row.h"
#include "session/error_messengers.h"
#include "session/query.h"
#include "session/value_helpers.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr int kLevels = 5;

/// How a price row makes a level's price out of the base price or the markup cost.
class LevelPrices {
public:
    explicit LevelPrices(const PriceRow& row)
        : row_(row),
          discounts_(row.number("PRICETYPE") == 1),
          by_customer_(row.number("PRICEBASE") == 1),
          percentages_(row.number("PRICEFMT") == 1)
    {
    }

    [[nodiscard]] bool chosen_by_customer() const { return by_customer_; }

    [[nodiscard]] double at(int level) const
    {
        if (discounts_ && percentages_) return row_.base_price() * ((100 - row_.level("PRCNTLVL", level)) / 100);
        if (discounts_) return row_.base_price() - row_.level("AMOUNTLVL", level);
        const double cost = row_.number("MARKUPCOST");
        if (percentages_) return cost + cost * (row_.level("PRCNTLVL", level) / 100);
        return cost + row_.level("AMOUNTLVL", level);
    }

private:
    const PriceRow& row_;
    bool discounts_;
    bool by_customer_;
    bool percentages_;
};

/// The base level of a markup list is the base price too, not the cost: that is meant.
void price_by_customer(const PriceRow& row, const LevelPrices& levels, int16_t customer_type, float& result)
{
    if (customer_type == 0) result = to_single(row.base_price());
    if (customer_type >= 1 && customer_type <= kLevels) result = to_single(levels.at(customer_type));
}

/// Every break is tested by itself, so that the last one in order that fits wins.
void price_by_quantity(const PriceRow& row, const LevelPrices& levels, float quantity, float& result)
{
    result = to_single(row.base_price());
    for (int level = 1; level <= kLevels; ++level) {
        const double start = row.level("PRICEQTY", level);
        if (start > 0 && quantity >= start) result = to_single(levels.at(level));
    }
}

/// A sale counts on the day of the run, whatever the date of the quote.
void apply_sale(SessionState& state, const PriceRow& row, float& result)
{
    const auto start = date_in(row.sale_start());
    const auto end = date_in(row.sale_end());
    if (!start || !end) return;
    const DateTime day = today(state);
    if (*start <= day && *end >= day && row.sale_price() < result) result = to_single(row.sale_price());
}

void price_from_list(SessionState& state, const PriceRow& row, int16_t customer_type, float quantity, float& result)
{
    const LevelPrices levels(row);
    if (levels.chosen_by_customer()) {
        price_by_customer(row, levels, customer_type, result);
    } else {
        price_by_quantity(row, levels, quantity, result);
    }
    apply_sale(state, row, result);
}

/// The customer's own overrides; true when one of them decides.
bool price_from_customer(SessionState& state, std::string_view item, std::string& price_list, std::string& currency,
                         float& result)
{
    const std::string commodity = Return_ItemCommCode(state, item);
    if (!trimmed(state.gQuote.quCIGCustomer).empty() && !commodity.empty()) {
        const Value cell = Return_CIGPrice(state, state.gQuote.quCIGCustomer, commodity);
        result = cell.is_null() ? 0 : to_single(cell);
        return true;  // even when the matrix holds a zero
    }
    result = Return_ContractPrice(state, item, price_list, currency);
    return result != 0;
}

/// One call for a price: what was asked for, and the price lists that calls behind one another have looked up.
struct PriceCall {
    std::string_view item;
    int16_t customer_type;
    float quantity;
    float conv_factor;
    std::vector<std::string> looked_up = {};

    /// False for a list that an earlier call has looked up: a blank default list leads back to the quote's.
    bool is_new(const std::string& price_list)
    {
        const bool known = std::ranges::find(looked_up, price_list) != looked_up.end();
        if (!known) looked_up.push_back(price_list);
        return !known;
    }
};

float price_of(SessionState& state, PriceCall& call, std::string& price_list, std::string& currency);

void find_price(SessionState& state, PriceCall& call, std::string& price_list, std::string& currency, float& result)
{
    if (trimmed(call.item).empty()) return;
    if (trimmed(currency).empty()) currency = accounting(state).Company().HomeCurrency;
    if (trimmed(price_list).empty()) {
        price_list = state.gQuote.quPriceList;
        put_line_price_list(state, price_list);
    }
    if (price_from_customer(state, call.item, price_list, currency, result)) return;
    if (!call.is_new(price_list)) return;
    if (const auto row = find_price_row(state, call.item, price_list, currency)) {
        const float quantity = to_single(double{call.quantity} * call.conv_factor);
        return price_from_list(state, *row, call.customer_type, quantity, result);
    }
    if (auto fallback = fallback_price_list(state, price_list)) {
        const std::string line_price_list = *fallback;
        result = price_of(state, call, *fallback, currency);
        put_line_price_list(state, line_price_list);
    }
}

/// The procedure itself, which a fallback calls again.
float price_of(SessionState& state, PriceCall& call, std::string& price_list, std::string& currency)
{
    float result = 0;
    with_failure_path(state, ErrorACCPAC, "modGeneral.Return_BasePrice", [&] {
        find_price(state, call, price_list, currency, result);
        result = to_single(rounded(result, currency_decimals(state, currency)));
    });
    return result;
}

}  // namespace

float Return_BasePrice(SessionState& state, std::string_view item, std::string& priceList, std::string& currency,
                       int16_t customerType, float quantity, float convFactor)
{
    PriceCall call{item, customerType, quantity, convFactor};
    return price_of(state, call, priceList, currency);
}

float Return_VLBasePrice(SessionState& state, int32_t itemID, std::string_view currency, std::string_view priceList)
{
    const std::string in_currency(trimmed(currency));
    const std::string on_list(trimmed(priceList));
    if (on_list.empty() || in_currency.empty()) return 0;
    return with_failure_path(state, ErrorADO, "modGeneral.Return_VLBasePrice", [&] {
        const auto id = std::to_string(itemID);
        return state.cache.remember("Return_VLBasePrice", {id, in_currency, on_list}, [&] {
            const auto quoted_currency = doubled_quotes(in_currency);
            const auto quoted_list = doubled_quotes(on_list);
            const auto rows = stream_query(
                state, {Command::statement("SELECT [PriceID],[ipBasePrice] FROM [IPricing] WHERE ([ItemID]=" + id +
                                           ") AND ([ipCurrency]='" + quoted_currency + "') AND ([ipPriceList]='" +
                                           quoted_list + "');"),
                        Command::statement("SELECT PriceID,ipBasePrice FROM IPricing WHERE (ItemID=" + id +
                                           ") AND (ipCurrency='" + quoted_currency + "') AND (ipPriceList='" +
                                           quoted_list + "')")});
            const float price = move_to_first(*rows) ? to_single(rows->value("ipBasePrice")) : 0;
            rows->Close();
            return price;
        });
    });
}

}  // namespace velora
