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
    units.browse("ITEMNO = " + quoted(trimmed(item)) + " AND UNIT = " + std::string(trimmed(unit)));
    const bool found = units.fetch();
    units.close();
    return found;
}

}  // namespace

std::string Return_BaseUnit(SessionState& state, std::string_view item, std::string_view priceList,
                            std::string_view currency)
{
    std::string result;
    if (trimmed(priceList).empty() || trimmed(item).empty()) return result;
    with_failure_path(state, ErrorACCPAC, "modGeneral.Return_BaseUnit", [&] {
        const std::string in_currency = currency_or_home(state, currency);
        if (const auto row = find_price_row(state, item, priceList, in_currency)) {
            result = row->base_unit();
        } else if (const auto fallback = fallback_price_list(state, priceList)) {
            put_line_price_list(state, *fallback);
            result = Return_BaseUnit(state, item, *fallback, in_currency);
        }
    });
    return result;
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
    std::string result;
    with_failure_path(state, ErrorADO, "modGeneral.Return_VLBaseUnit", [&] {
        const auto id = std::to_string(itemID);
        result = state.cache.remember("Return_VLBaseUnit", {id}, [&] {
            const auto rows = open_query(
                state,
                {Command::statement("SELECT [ItemID],[itStockUnit] FROM [Items] WHERE ([ItemID]=" + id + ");"),
                 Command::statement("SELECT ItemID,itStockUnit FROM Items WHERE (ItemID=" + id + ")")},
                Cursor::Forward);
            std::string unit = move_to_first(*rows) ? trimmed_text(rows->value("itStockUnit")) : std::string();
            rows->Close();
            return unit;
        });
    });
    return result;
}

bool Check_ItemUofM(SessionState& state, std::string_view item, std::string_view unit, bool quiet)
{
    bool found = false;
    with_failure_path(state, ErrorACCPAC, "modGeneral.Check_ItemUofM", [&] {
        found = is_unit_of_item(state, item, unit);
        if (found || quiet) return;
        tell(state, {"Invalid Entry",
                     "The Unit of Measure that was entered is not a valid\r\n"
                     "Sage Accpac Unit of Measure. Please re-enter the Unit of\r\n"
                     "Measure or use the finder.",
                     Icon::Exclamation});
    });
    return found;
}

float Return_APFactor(SessionState& state, std::string_view item, std::string_view unit)
{
    float result = 0;
    with_failure_path(state, ErrorACCPAC, "modGeneral.Return_APFactor", [&] {
        OpenedView view(state, "IC0750");
        // The item stands in this view without its separators, unlike in all others.
        view.browse("ITEMNO = " + quoted(Remove_Separators(state, item)));
        while (view.fetch()) {
            if (view.text("UNIT") != trimmed(unit)) continue;
            result = static_cast<float>(to_number(Value(view.text("FACTOR"))));
            break;
        }
        view.close();
    });
    return result;
}

std::string Return_ItemWeightUnit(SessionState& state)
{
    std::string result;
    with_failure_path(state, ErrorACCPAC, "modGeneral.Return_ItemWeightUnit", [&] {
        OpenedView view(state, "IC0380");
        if (view.read()) result = view.text("WEIGHTUNIT");
        view.close();
    });
    return result;
}

}  // namespace velora
