#include "pricing/taxes.h"

#include <array>

#include "gateway/view_reading.h"
#include "session/error_messengers.h"
#include "values/text.h"

namespace velora {

namespace {

// clang-format off
constexpr auto kRateFields = std::to_array<std::string_view>({
    "ITEMRATE1", "ITEMRATE2", "ITEMRATE3", "ITEMRATE4", "ITEMRATE5",
    "ITEMRATE6", "ITEMRATE7", "ITEMRATE8", "ITEMRATE9", "ITEMRATE10",
});
// clang-format on

std::string numbered(std::string_view name, size_t slot)
{
    return std::string(name) + std::to_string(slot + 1);
}

void read_slot(const OpenedView& group, size_t n, vlTaxInformation& slot, int16_t& count)
{
    const std::string authority = group.text(numbered("AUTHORITY", n));
    slot.Authority = authority;
    if (authority.empty()) {
        slot.CascadeTax = false;
        return;
    }
    slot.CascadeTax = to_bool(Value(group.text(numbered("TAXABLE", n))));
    count = static_cast<int16_t>(n + 1);
}

void take_classes(OpenedView& classes, const TaxSlots& slots, Recordset& line)
{
    while (classes.fetch()) {
        const std::string authority = classes.text("AUTHORITY");
        for (size_t n = 0; n < kTaxSlots; ++n) {
            if (authority != trimmed(slots[n].Authority)) continue;
            line.put(numbered("deTaxClass", n), classes.text("SALESTAXCL"));
        }
    }
}

/// A class that the item lacks becomes "1" and leaves the inclusion flag empty; one that it has sets it to "0".
void complete_classes(Recordset& line, int16_t count)
{
    for (size_t n = 0; n < kTaxSlots && static_cast<int16_t>(n) < count; ++n) {
        const auto column = line.column(numbered("deTaxClass", n));
        if (trimmed_text(line.value(column)).empty()) {
            line.put(column, "1");
        } else {
            line.put(numbered("deTaxIncl", n), "0");
        }
    }
}

std::shared_ptr<const ViewRow> find_rates(SessionState& state, std::string_view authority, std::string_view buyer_class)
{
    const std::string filter =
        std::string("AUTHORITY = ").append(authority).append(" AND TTYPE = 1 AND BUYERCLASS = ").append(buyer_class);
    return state.cache.remember("TX0004", {filter}, [&]() -> std::shared_ptr<const ViewRow> {
        OpenedView view(state, "TX0004");
        view.browse(filter);
        return view.fetch() ? std::make_shared<const ViewRow>(view, kRateFields) : nullptr;
    });
}

}  // namespace

void Get_TaxAuthorities(SessionState& state, std::string_view group, TaxSlots& slots, int16_t& count)
{
    with_failure_path(state, ErrorACCPAC, "modGeneral.Get_TaxAuthorities", [&] {
        count = 0;
        OpenedView view(state, "TX0003");
        view.browse(std::string("GROUPID = ").append(trimmed(group)));
        if (view.fetch()) {
            for (size_t n = 0; n < kTaxSlots; ++n) read_slot(view, n, slots[n], count);
        }
    });
}

void Get_APItemTaxes(SessionState& state)
{
    with_failure_path(state, ErrorACCPAC, "modGeneral.Get_APItemTaxes", [&] {
        auto& line = opened(state.gQuoteDetails, "gQuoteDetails");
        OpenedView classes(state, "IC0330");
        OpenedView items(state, "IC0310");
        compose(items, 8, {{1, &classes}});
        compose(classes, 3, {{0, &items}});
        classes.browse("ITEMNO = " + filter_text(trimmed_text(line.value("APItem"))));
        for (const std::string_view column : {"deTaxClass", "deTaxIncl"}) {
            for (size_t n = 0; n < kTaxSlots; ++n) line.put(numbered(column, n), "");
        }
        take_classes(classes, state.gTaxAuthorities, line);
        complete_classes(line, state.gTaxAuthorityCount);
    });
}

float Return_TaxRate(SessionState& state, std::string_view authority, std::string_view buyerClass,
                     std::string_view itemClass)
{
    const auto by = trimmed(authority);
    if (by.empty()) return 0;
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Return_TaxRate", [&] {
        const auto rates = find_rates(state, by, trimmed(buyerClass));
        const double item_class = leading_number(trimmed(itemClass));
        for (size_t n = 0; rates && n < kRateFields.size(); ++n) {
            if (item_class == static_cast<double>(n + 1)) return to_single(rates->field(kRateFields[n]));
        }
        return 0.0F;
    });
}

}  // namespace velora
