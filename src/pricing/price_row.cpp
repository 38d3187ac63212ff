#include "pricing/price_row.h"

#include <array>

#include "session/company.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr PriceRow::Names kPlainNames{"BASEPRICE", "SALESTART", "SALEEND", "SALEPRICE", "BASEUNIT", "BASECONV"};
constexpr PriceRow::Names kDatedNames{"DBASEPRICE", "DSALESTART", "DSALEEND", "DSALEPRICE", "DBASEUNIT", "DBASECONV"};

// clang-format off
constexpr auto kCommonFields = std::to_array<std::string_view>({
    "PRICETYPE", "PRICEBASE", "PRICEFMT", "MARKUPCOST",
    "PRCNTLVL1", "PRCNTLVL2", "PRCNTLVL3", "PRCNTLVL4", "PRCNTLVL5",
    "AMOUNTLVL1", "AMOUNTLVL2", "AMOUNTLVL3", "AMOUNTLVL4", "AMOUNTLVL5",
    "PRICEQTY1", "PRICEQTY2", "PRICEQTY3", "PRICEQTY4", "PRICEQTY5",
});
// clang-format on

std::vector<std::string_view> fields_of(const PriceRow::Names& names)
{
    std::vector<std::string_view> fields(kCommonFields.begin(), kCommonFields.end());
    fields.insert(fields.end(), {names.base_price, names.sale_start, names.sale_end, names.sale_price, names.base_unit,
                                 names.base_conversion});
    return fields;
}

}  // namespace

PriceRow::PriceRow(const OpenedView& view, bool dated_names)
    : names_(dated_names ? &kDatedNames : &kPlainNames), row_(view, fields_of(*names_))
{
}

double PriceRow::level(std::string_view name, int level) const
{
    return row_.number(std::string(name) + std::to_string(level));
}

bool has_dated_price_fields(std::string_view inventory_version)
{
    return inventory_version == "54A" || inventory_version == "55A" || inventory_version == "56A" ||
           inventory_version == "60A";
}

std::string price_filter(std::string_view item, std::string_view priceList, std::string_view currency)
{
    return std::string("CURRENCY = ")
        .append(currency)
        .append(" AND ITEMNO = ")
        .append(filter_text(item))
        .append(" AND PRICELIST = ")
        .append(priceList);
}

std::shared_ptr<const PriceRow> find_price_row(SessionState& state, std::string_view item, std::string_view priceList,
                                               std::string_view currency)
{
    return state.cache.remember("IC0480", {item, priceList, currency}, [&]() -> std::shared_ptr<const PriceRow> {
        OpenedView view(state, "IC0480");
        view.browse(price_filter(item, priceList, currency));
        return view.fetch() ? std::make_shared<const PriceRow>(view, has_dated_price_fields(state.gVerIC)) : nullptr;
    });
}

std::optional<std::string> fallback_price_list(SessionState& state, std::string_view priceList)
{
    if (numeric_value(company_default(state, "mdUsePLDef")) != 1) return std::nullopt;
    std::string price_list = to_text(company_default(state, "mdDefaultPL"));
    if (trimmed(price_list) == trimmed(priceList)) return std::nullopt;
    return price_list;
}

void put_line_price_list(SessionState& state, std::string_view priceList)
{
    if (state.gQuoteDetails) state.gQuoteDetails->put("dePriceList", priceList);
}

}  // namespace velora
