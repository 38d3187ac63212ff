#include "reports/detail_rows.h"

#include <array>

#include "gateway/accounting_lookups.h"
#include "pricing/amount_display.h"
#include "pricing/base_price.h"
#include "pricing/units.h"
#include "reports/line_kinds.h"
#include "session/company.h"
#include "session/settings.h"
#include "values/number_text.h"
#include "values/text.h"

namespace velora {

Outcome original_base_price(DetailRow& r)
{
    std::string price_list = r.row.text<"dePriceList">();
    if (!r.is_accounting_item()) {
        return r.money(Return_VLBasePrice(r.state, to_int32(r.row.at<"ItemID">()), r.currency, price_list));
    }
    const float quantity = to_single(r.row.at<"deQuantity">());
    const float factor = to_single(r.row.at<"deConvFactor">());
    return r.money(
        Return_BasePrice(r.state, r.row.text<"APItem">(), price_list, r.currency, r.customer_type, quantity, factor));
}

/// The blank before the sign, which the discount's percent lacks, belongs to the report's look.
Outcome margin(DetailRow& r)
{
    const Checked price = r.row.number<"deQuotedPrice">();
    if (price.fault() == 0 && !(price.value() > 0)) return int32_t{0};
    const Checked share = (price - r.row.number<"deCost">()) / price * 100;
    return Outcome::of(share, [&](double percent) { return Format_Decimals(r.state, percent, 2) + " %"; });
}

namespace {

using Row = DetailRow;

Outcome nothing(Row&)
{
    return Outcome::unwritten();
}

/// A field's value by the kind of the row; a kind that is not named leaves it null.
template <Outcome (*Item)(Row&), Outcome (*Comment)(Row&) = nothing, Outcome (*Charge)(Row&) = nothing>
Outcome by_kind(Row& r)
{
    switch (r.kind) {
        case LineKind::Item:
            return Item(r);
        case LineKind::Comment:
            return Comment(r);
        default:
            return Charge(r);
    }
}

template <Outcome (*Item)(Row&)>
constexpr auto of_item = by_kind<Item>;

template <Outcome (*Charge)(Row&)>
constexpr auto of_charge = by_kind<nothing, nothing, Charge>;

/// A column of the item line, trimmed.
template <ColumnName Name>
constexpr auto item_text = by_kind<trimmed_column<Name, Row>>;

template <std::string MiscChargeRecord::*Member>
Outcome charge_text(Row& r)
{
    return trimmed(r.charge->*Member);
}

Outcome row_type(Row& r)
{
    constexpr auto kNames = std::to_array<std::string_view>({"Item", "Comment", "Charge"});
    return kNames.at(static_cast<size_t>(r.kind));
}

Outcome item_type(Row& r)
{
    return shows_accounting_item(r.row.at<"deIType">()) ? "Sage Accpac" : "Velora";
}

Outcome line_number(Row& r)
{
    r.last_line = to_int16(r.row.at<"Line">());
    return r.last_line;
}

Outcome charge_line(Row& r)
{
    return r.last_line;
}

/// The customer's own item number where the company shows it and the line has one, else the item's.
Outcome item_number(Row& r)
{
    const bool shows_own = equals_number(company_default(r.state, "mdShowCustItem"), 0);
    if (!shows_own) {
        std::string customers = trimmed_text(r.row.at<"deCustItem">());
        if (!customers.empty()) return customers;
    }
    if (shows_accounting_item(r.row.at<"deIType">())) return Return_FormatItem(r.state, r.row.text<"APItem">());
    return trimmed_cell(r.row.at<"APItem">());
}

Outcome back_order(Row& r)
{
    const Checked open = r.row.number<"deQuantity">() - r.row.number<"deQtyTransfer">();
    return Outcome::of(open, [](double quantity) { return quantity > 0 ? plain_text(quantity) : std::string("0"); });
}

Outcome unit_price(Row& r)
{
    Checked factor = r.row.number<"deConvFactor">();
    if (r.is_accounting_item()) factor = factor / r.BaseConv;
    return r.money(r.row.number<"deQuotedPrice">() * factor);
}

Outcome pricing_unit(Row& r)
{
    return trimmed(r.pricing_unit);
}

Outcome quoted_price(Row& r)
{
    return r.money(r.row.number<"deQuotedPrice">());
}

Outcome amount(Row& r)
{
    return r.money(r.gross());
}

Outcome charge_amount(Row& r)
{
    return r.money(r.charge->Amount);
}

Outcome discount(Row& r)
{
    return r.money(r.row.number<"deDiscount">() * -1);
}

Outcome discounted_amount(Row& r)
{
    return r.money(r.gross() - r.row.number<"deDiscount">());
}

Outcome discount_percent(Row& r)
{
    return r.percent(r.row.number<"deDiscount">() / r.gross());
}

Outcome cost(Row& r)
{
    return r.money(r.row.number<"deCost">());
}

Outcome profit(Row& r)
{
    return r.money(r.row.number<"deQuotedPrice">() - r.row.number<"deCost">());
}

Outcome price_list_name(Row& r)
{
    return Return_PriceListDesc(r.state, r.row.text<"dePriceList">());
}

Outcome location_name(Row& r)
{
    return Return_LocationName(r.state, r.row.text<"deLocation">());
}

Outcome category_name(Row& r)
{
    return Return_CategoryDesc(r.state, r.row.text<"deCategory">());
}

// clang-format off
constexpr auto kDetailColumns = std::to_array<Column<DetailRow>>({
    // name                         type         size  value by the kind of the row: item, comment, charge
    {"Detail Type",                ado::VarChar,  20, row_type},
    {"Detail Item Type",           ado::VarChar,  20, of_item<item_type>},
    {"Detail Line",                ado::Integer,   0, by_kind<line_number, line_number, charge_line>},  // line_number keeps the number
    {"Detail Item Number",         ado::VarChar,  30, by_kind<item_number, nothing, charge_text<&MiscChargeRecord::ChargeCode>>},
    {"Detail Desc",                ado::VarChar, 250, by_kind<trimmed_column<"deDesc", Row>, trimmed_column<"deComment", Row>, charge_text<&MiscChargeRecord::ChDesc>>},
    {"Detail Quantity",            ado::VarChar,  20, item_text<"deQuantity">},
    {"Detail Available",           ado::VarChar,  20, item_text<"deQtyTransfer">},  // holds what was transferred, as definitions expect
    {"Detail Back Order",          ado::VarChar,  20, of_item<back_order>},
    {"Detail Quote UofM",          ado::VarChar,  15, item_text<"deUofM">},
    {"Detail Unit Price",          ado::VarChar,  30, of_item<unit_price>},
    {"Detail Pricing UofM",        ado::VarChar,  15, of_item<pricing_unit>},
    {"Detail Original Base Price", ado::VarChar,  30, of_item<original_base_price>},  // may write the line's price list
    {"Detail Quote Base Price",    ado::VarChar,  30, of_item<quoted_price>},
    {"Detail Amount",              ado::VarChar,  30, by_kind<amount, nothing, charge_amount>},
    {"Detail Discount",            ado::VarChar,  30, of_item<discount>},
    {"Detail Discounted Amt",      ado::VarChar,  30, of_item<discounted_amount>},
    {"Detail Discount Percent",    ado::VarChar,  30, of_item<discount_percent>},
    {"Detail Item Cost",           ado::VarChar,  30, of_item<cost>},
    {"Detail Profit",              ado::VarChar,  30, of_item<profit>},
    {"Detail Margin",              ado::VarChar,  20, of_item<margin>},
    {"Detail Shipping Date",       ado::Date,      0, of_item<unless_null<"deShipDate", Row>>},
    {"Detail Price List",          ado::VarChar,  20, item_text<"dePriceList">},
    {"Detail Price List Desc",     ado::VarChar,  60, of_item<price_list_name>},
    {"Detail Location",            ado::VarChar,  20, item_text<"deLocation">},
    {"Detail Location Desc",       ado::VarChar,  60, of_item<location_name>},
    {"Detail Category",            ado::VarChar,  20, item_text<"deCategory">},
    {"Detail Category Desc",       ado::VarChar,  60, of_item<category_name>},
    {"Detail GL Account",          ado::VarChar,  20, of_charge<charge_text<&MiscChargeRecord::MiscAccount>>},
    {"Detail GL Acct Description", ado::VarChar,  60, of_charge<charge_text<&MiscChargeRecord::MiscAccountDesc>>},
    {"Detail Weight",              ado::Single,    0, of_item<as_stored<"deWeight", Row>>},
    {"Detail Lead Time",           ado::VarChar,  60, item_text<"deLeadTime">},
    {"Detail Item Comm/Ins",       ado::VarChar, 250, of_item<line_comment<Row>>},
});
// clang-format on
static_assert(well_formed(kDetailColumns));

std::string find_pricing_unit(Row& r)
{
    if (!r.is_accounting_item()) return Return_VLBaseUnit(r.state, to_int32(r.row.at<"ItemID">()));
    return Return_BaseUnit(r.state, r.row.text<"APItem">(), r.row.text<"dePriceList">(), r.currency);
}

}  // namespace

void DetailRow::take_line(Statements& statements)
{
    charge = nullptr;
    kind = is_item_line(row.at<"deDType">()) ? LineKind::Item : LineKind::Comment;
    if (kind == LineKind::Item) take_item(statements, false);
}

void DetailRow::take_item(Statements& statements, bool keep_line)
{
    statements.attempt("BaseConv", [&] {
        BaseConv = Return_BaseConvFactor(state, row.text<"APItem">(), row.text<"dePriceList">(), currency, keep_line);
    });
    statements.attempt("pricing unit", [&] { pricing_unit = find_pricing_unit(*this); });
    statements.attempt("pricing unit", [&] {
        if (trimmed(pricing_unit).empty()) pricing_unit = trimmed_text(row.at<"deUofM">());
    });
}

void DetailRow::take_charge(const MiscChargeRecord& record, Statements& statements)
{
    kind = LineKind::Charge;
    charge = &record;
    statements.attempt("last line number", [&] { last_line = to_int16(last_line + 1); });
}

Outcome DetailRow::money(Checked amount)
{
    return Outcome::of(amount, [&](double value) { return Display_AccpacCurrency(state, value, currency, false); });
}

Outcome DetailRow::percent(Checked share)
{
    return Outcome::of((share * 100).absolute(), [&](double value) { return Format_Decimals(state, value, 2) + "%"; });
}

Checked DetailRow::gross() const
{
    const Checked factor = row.number<"deConvFactor">() / BaseConv;
    return row.number<"deQuantity">() * (row.number<"deQuotedPrice">() * factor);
}

bool DetailRow::is_accounting_item() const
{
    return velora::is_accounting_item(row.at<"deIType">());
}

/// The setting is asked for anew for each row.
Outcome comment_or_instruction(SessionState& state, const QueryRow& row)
{
    const Value& has_comment = row.at<"deHasItemCom">();
    if (has_comment.is_null() || !to_bool(has_comment)) return Outcome::unwritten();
    const double choice = leading_number(setting(state, "CommIns", "0"));
    const bool fits = choice == 0 || ((choice == 1 || choice == 2) && equals_number(row.at<"CoInType">(), choice));
    const Value& text = row.at<"CommIns">();
    return fits && !text.is_null() ? trimmed_cell(text) : Outcome::unwritten();
}

std::span<const Column<DetailRow>> detail_columns()
{
    return kDetailColumns;
}

}  // namespace velora
