#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "gateway/view_reading.h"

namespace velora {

/// The row of an item on a price list in a currency. The names of the fields that depend on the inventory module's
/// version are settled here, once.
class PriceRow {
public:
    PriceRow(const OpenedView& view, bool dated_names);

    [[nodiscard]] double number(std::string_view name) const { return row_.number(name); }
    /// `PRCNTLVL`, `AMOUNTLVL` or `PRICEQTY` of level 1 to 5.
    [[nodiscard]] double level(std::string_view name, int level) const;

    [[nodiscard]] double base_price() const { return row_.number(names_->base_price); }
    [[nodiscard]] const Value& sale_start() const { return row_.field(names_->sale_start); }
    [[nodiscard]] const Value& sale_end() const { return row_.field(names_->sale_end); }
    [[nodiscard]] double sale_price() const { return row_.number(names_->sale_price); }
    [[nodiscard]] std::string base_unit() const { return row_.text(names_->base_unit); }
    [[nodiscard]] std::string base_conversion() const { return row_.text(names_->base_conversion); }

    struct Names {
        std::string_view base_price, sale_start, sale_end, sale_price, base_unit, base_conversion;
    };

private:
    const Names* names_;
    ViewRow row_;
};

/// Whether the price fields bear the names of the later versions of the inventory module. Exact text decides.
bool has_dated_price_fields(std::string_view inventory_version);

/// The filter of the price view; its values go in bare and untrimmed, the item between double quotes.
std::string price_filter(std::string_view item, std::string_view priceList, std::string_view currency);

/// None when the price list has no row for the item in the currency. @throws Fault of the session
std::shared_ptr<const PriceRow> find_price_row(SessionState& state, std::string_view item, std::string_view priceList,
                                               std::string_view currency);

/// The default price list of the company where lookups may fall back on it from `priceList`; none where not. It may be
/// blank: a company that falls back and names no list.
std::optional<std::string> fallback_price_list(SessionState& state, std::string_view priceList);

/// Writes the price list of the current detail line, which lives in memory only. A report that holds no detail lines
/// has none to write to.
void put_line_price_list(SessionState& state, std::string_view priceList);

}  // namespace velora
