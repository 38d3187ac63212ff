#include "pricing/units.h"

#include "gateway/view_reading.h"
#include "pricing/amount_display.h"
#include "pricing/price_row.h"
#include "session/error_messengers.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

std::string currency_or_home(SessionState& state, std::string_view currency)
{
    return trimmed(currency).empty() ? accounting(state).Company().HomeCurrency : std::string(currency);
}

bool is_unit_of_item(SessionState& state, std::string_view item, std::string_view unit)
{
    OpenedView items(state, "IC0310");
    OpenedView units(state, "IC0750");
    OpenedView taxes(state, "IC0330");
    compose(items, 7, {{0, &units}, {1, &taxes}});
    compose(units, 1, {{0, &items}});
    compose(taxes, 3, {{0, &items}});
    units.browse("ITEMNO = " + filter_text(trimmed(item)) + " AND UNIT = " + std::string(trimmed(unit)));
    return units.fetch();
}

}  // namespace

std::string Return_BaseUnit(SessionState& state, std::string_view item, std::string_view priceList,
                            std::string_view currency)
{
    if (trimmed(priceList).empty() || trimmed(item).empty()) return {};
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Return_BaseUnit", [&] {
        const std::string in_currency = currency_or_home(state, currency);
        if (const auto row = find_price_row(state, item, priceList, in_currency)) return row->base_unit();
        const auto fallback = fallback_price_list(state, priceList);
        if (!fallback) return std::string();
        put_line_price_list(state, *fallback);  // before the call, unlike with a price
        return Return_BaseUnit(state, item, *fallback, in_currency);
    });
}

double Return_BaseConvFactor(SessionState& state, std::string_view item, std::string_view priceList,
                             std::string_view currency, bool keepLine)
{
    double result = 0;
    if (trimmed(priceList).empty() || trimmed(item).empty()) return 1;
    with_failure_path(state, ErrorACCPAC, "modGeneral.Return_BaseConvFactor", [&] {
        const std::string in_currency = currency_or_home(state, currency);
        if (const auto row = find_price_row(state, item, priceList, in_currency)) {
            result = to_number(Value(row->base_conversion()));
        } else if (const auto fallback = fallback_price_list(state, priceList)) {
            if (!keepLine) put_line_price_list(state, *fallback);
            result = Return_BaseConvFactor(state, item, *fallback, in_currency, false);
        }
        if (result == 0) result = 1;
    });
    return result;
}

std::string Return_VLBaseUnit(SessionState& state, int32_t itemID)
{
    return with_failure_path(state, ErrorADO, "modGeneral.Return_VLBaseUnit", [&] {
        const auto id = std::to_string(itemID);
        return state.cache.remember("Return_VLBaseUnit", {id}, [&] {
            const auto rows = stream_query(
                state, {Command::statement("SELECT [ItemID],[itStockUnit] FROM [Items] WHERE ([ItemID]=" + id + ");"),
                        Command::statement("SELECT ItemID,itStockUnit FROM Items WHERE (ItemID=" + id + ")")});
            std::string unit = move_to_first(*rows) ? trimmed_text(rows->value("itStockUnit")) : std::string();
            rows->Close();
            return unit;
        });
    });
}

bool Check_ItemUofM(SessionState& state, std::string_view item, std::string_view unit, bool quiet)
{
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Check_ItemUofM", [&] {
        const bool found = is_unit_of_item(state, item, unit);
        if (!found && !quiet) {
            tell(state, {"Invalid Entry",
                         "The Unit of Measure that was entered is not a valid\r\n"
                         "Sage Accpac Unit of Measure. Please re-enter the Unit of\r\n"
                         "Measure or use the finder.",
                         Icon::Exclamation});
        }
        return found;
    });
}

float Return_APFactor(SessionState& state, std::string_view item, std::string_view unit)
{
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Return_APFactor", [&] {
        OpenedView view(state, "IC0750");
        // The item stands in this view without its separators, unlike in all others.
        view.browse("ITEMNO = " + filter_text(Remove_Separators(state, item)));
        while (view.fetch()) {
            if (view.text("UNIT") == trimmed(unit)) return to_single(Value(view.text("FACTOR")));
        }
        return 0.0F;
    });
}

std::string Return_ItemWeightUnit(SessionState& state)
{
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Return_ItemWeightUnit", [&] {
        OpenedView view(state, "IC0380");
        return view.read() ? view.text("WEIGHTUNIT") : std::string();
    });
}

}  // namespace velora
