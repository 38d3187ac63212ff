#include "reports/quote_rows.h"

#include "gateway/accounting_lookups.h"
#include "pricing/amount_display.h"
#include "pricing/base_price.h"
#include "pricing/units.h"
#include "session/lists.h"
#include "session/settings.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr double kItemLine = 20;
constexpr double kAccountingItem = 30;

using Row = DetailRow;
using Charge = ChargeRow;
using L = LineColumns;

template <size_t LineColumns::*Column>
Outcome trimmed_column(Row& r)
{
    return trimmed_value(r.at(Column));
}

template <size_t LineColumns::*Column>
Outcome number_column(Row& r)
{
    return r.at(Column);
}

Outcome money(Row& r, Checked amount)
{
    return Outcome::of(amount, [&](double value) { return r.document.money(value); });
}

Outcome item_type(Row& r)
{
    return r.is_accounting_item() ? "Sage Accpac" : "Velora";
}

Outcome line_number(Row& r)
{
    r.last_line = to_int16(r.at(&L::Line));
    return r.last_line;
}

/// The customer's own item number where the company shows it and the line has one, else the item's.
Outcome item_number(Row& r)
{
    auto& state = r.document.state;
    const Value& shows_customers = company_default(state, "mdShowCustItem");
    const bool own = !shows_customers.is_null() && to_number(shows_customers) == 0;
    if (!own) {
        std::string customers = trimmed_text(r.at(&L::deCustItem));
        if (!customers.empty()) return customers;
    }
    if (r.is_accounting_item()) return Return_FormatItem(state, r.text(&L::APItem));
    return trimmed_value(r.at(&L::APItem));
}

Outcome back_order(Row& r)
{
    const Checked open = r.number(&L::deQuantity) - r.number(&L::deQtyTransfer);
    return Outcome::of(open, [](double quantity) { return quantity > 0 ? plain_text(quantity) : std::string("0"); });
}

Outcome unit_price(Row& r)
{
    Checked factor = r.number(&L::deConvFactor);
    if (r.is_accounting_item()) factor = factor / r.BaseConv;
    return money(r, r.number(&L::deQuotedPrice) * factor);
}

Outcome original_base_price(Row& r)
{
    auto& document = r.document;
    auto& state = document.state;
    if (!r.is_accounting_item()) {
        return document.money(
            Return_VLBasePrice(state, to_int32(r.at(&L::ItemID)), document.currency, r.text(&L::dePriceList)));
    }
    std::string price_list = r.text(&L::dePriceList);
    const auto quantity = to_single(r.at(&L::deQuantity));
    const auto factor = to_single(r.at(&L::deConvFactor));
    return document.money(Return_BasePrice(state, r.text(&L::APItem), price_list, document.currency,
                                           state.gQuote.quCustomerType, quantity, factor));
}

Outcome discount_percent(Row& r)
{
    const Checked share = r.number(&L::deDiscount) / r.gross() * 100;
    return Outcome::of(share.absolute(),
                       [&](double percent) { return Format_Decimals(r.document.state, percent, 2) + "%"; });
}

/// The blank before the sign, which the discount's percent lacks, belongs to the report's look.
Outcome margin(Row& r)
{
    const Checked price = r.number(&L::deQuotedPrice);
    if (price.fault() == 0 && !(price.value() > 0)) return int32_t{0};
    const Checked share = (price - r.number(&L::deCost)) / price * 100;
    return Outcome::of(share, [&](double percent) { return Format_Decimals(r.document.state, percent, 2) + " %"; });
}

Outcome shipping_date(Row& r)
{
    const Value& date = r.at(&L::deShipDate);
    return date.is_null() ? Outcome::unwritten() : Outcome(date);
}

/// Which comments print is the user's choice: all, comments only (kind 1), instructions only (kind 2).
Outcome comment_or_instruction(Row& r)
{
    const Value& has_comment = r.at(&L::deHasItemCom);
    if (has_comment.is_null() || !to_bool(has_comment)) return Outcome::unwritten();
    const double choice = leading_number(setting(r.document.state, "CommIns", "0"));
    const Value& kind = r.at(&L::CoInType);
    const bool fits = choice == 0 || ((choice == 1 || choice == 2) && !kind.is_null() && to_number(kind) == choice);
    const Value& text = r.at(&L::CommIns);
    return fits && !text.is_null() ? Outcome(trimmed_value(text)) : Outcome::unwritten();
}

// clang-format off
constexpr auto kDetailColumns = std::to_array<DetailColumn>({
    // name                         type         size  item
    //   comment
    //   charge
    {"Detail Type",                ado::VarChar,  20, [](Row&) -> Outcome { return "Item"; },
        [](Row&) -> Outcome { return "Comment"; },
        [](Charge&) -> Outcome { return "Charge"; }},
    {"Detail Item Type",           ado::VarChar,  20, item_type, nullptr, nullptr},
    {"Detail Line",                ado::Integer,   0, line_number,
        line_number,
        [](Charge& c) -> Outcome { return c.line; }},
    {"Detail Item Number",         ado::VarChar,  30, item_number,
        nullptr,
        [](Charge& c) -> Outcome { return trimmed(c.charge.ChargeCode); }},
    {"Detail Desc",                ado::VarChar, 250, trimmed_column<&L::deDesc>,
        trimmed_column<&L::deComment>,
        [](Charge& c) -> Outcome { return trimmed(c.charge.ChDesc); }},
    {"Detail Quantity",            ado::VarChar,  20, trimmed_column<&L::deQuantity>, nullptr, nullptr},
    {"Detail Available",           ado::VarChar,  20, trimmed_column<&L::deQtyTransfer>, nullptr, nullptr},  // holds what was transferred, as definitions expect
    {"Detail Back Order",          ado::VarChar,  20, back_order, nullptr, nullptr},
    {"Detail Quote UofM",          ado::VarChar,  15, trimmed_column<&L::deUofM>, nullptr, nullptr},
    {"Detail Unit Price",          ado::VarChar,  30, unit_price, nullptr, nullptr},
    {"Detail Pricing UofM",        ado::VarChar,  15, [](Row& r) -> Outcome { return trimmed(r.pricing_unit); }, nullptr, nullptr},
    {"Detail Original Base Price", ado::VarChar,  30, original_base_price, nullptr, nullptr},
    {"Detail Quote Base Price",    ado::VarChar,  30, [](Row& r) { return money(r, r.number(&L::deQuotedPrice)); }, nullptr, nullptr},
    {"Detail Amount",              ado::VarChar,  30, [](Row& r) { return money(r, r.gross()); },
        nullptr,
        [](Charge& c) -> Outcome { return c.document.money(c.charge.Amount); }},
    {"Detail Discount",            ado::VarChar,  30, [](Row& r) { return money(r, r.number(&L::deDiscount) * -1); }, nullptr, nullptr},
    {"Detail Discounted Amt",      ado::VarChar,  30, [](Row& r) { return money(r, r.gross() - r.number(&L::deDiscount)); }, nullptr, nullptr},
    {"Detail Discount Percent",    ado::VarChar,  30, discount_percent, nullptr, nullptr},
    {"Detail Item Cost",           ado::VarChar,  30, [](Row& r) { return money(r, r.number(&L::deCost)); }, nullptr, nullptr},
    {"Detail Profit",              ado::VarChar,  30, [](Row& r) { return money(r, r.number(&L::deQuotedPrice) - r.number(&L::deCost)); }, nullptr, nullptr},
    {"Detail Margin",              ado::VarChar,  20, margin, nullptr, nullptr},
    {"Detail Shipping Date",       ado::Date,      0, shipping_date, nullptr, nullptr},
    {"Detail Price List",          ado::VarChar,  20, trimmed_column<&L::dePriceList>, nullptr, nullptr},
    {"Detail Price List Desc",     ado::VarChar,  60, [](Row& r) -> Outcome { return Return_PriceListDesc(r.document.state, r.text(&L::dePriceList)); }, nullptr, nullptr},
    {"Detail Location",            ado::VarChar,  20, trimmed_column<&L::deLocation>, nullptr, nullptr},
    {"Detail Location Desc",       ado::VarChar,  60, [](Row& r) -> Outcome { return Return_LocationName(r.document.state, r.text(&L::deLocation)); }, nullptr, nullptr},
    {"Detail Category",            ado::VarChar,  20, trimmed_column<&L::deCategory>, nullptr, nullptr},
    {"Detail Category Desc",       ado::VarChar,  60, [](Row& r) -> Outcome { return Return_CategoryDesc(r.document.state, r.text(&L::deCategory)); }, nullptr, nullptr},
    {"Detail GL Account",          ado::VarChar,  20, nullptr, nullptr,
        [](Charge& c) -> Outcome { return trimmed(c.charge.MiscAccount); }},
    {"Detail GL Acct Description", ado::VarChar,  60, nullptr, nullptr,
        [](Charge& c) -> Outcome { return trimmed(c.charge.MiscAccountDesc); }},
    {"Detail Weight",              ado::Single,    0, number_column<&L::deWeight>, nullptr, nullptr},
    {"Detail Lead Time",           ado::VarChar,  60, trimmed_column<&L::deLeadTime>, nullptr, nullptr},
    {"Detail Item Comm/Ins",       ado::VarChar, 250, comment_or_instruction, nullptr, nullptr},
});
// clang-format on
static_assert(well_formed(kDetailColumns));

std::string find_pricing_unit(Row& row)
{
    auto& document = row.document;
    if (!row.is_accounting_item()) return Return_VLBaseUnit(document.state, to_int32(row.at(&L::ItemID)));
    return Return_BaseUnit(document.state, row.text(&L::APItem), row.text(&L::dePriceList), document.currency);
}

}  // namespace

LineColumns::LineColumns(const Recordset& details)
    : Line(details.column("Line")),
      deDType(details.column("deDType")),
      deIType(details.column("deIType")),
      ItemID(details.column("ItemID")),
      APItem(details.column("APItem")),
      deDesc(details.column("deDesc")),
      deComment(details.column("deComment")),
      deQuantity(details.column("deQuantity")),
      deQtyTransfer(details.column("deQtyTransfer")),
      deUofM(details.column("deUofM")),
      deConvFactor(details.column("deConvFactor")),
      deQuotedPrice(details.column("deQuotedPrice")),
      dePriceList(details.column("dePriceList")),
      deDiscount(details.column("deDiscount")),
      deCost(details.column("deCost")),
      deLocation(details.column("deLocation")),
      deCategory(details.column("deCategory")),
      deCustItem(details.column("deCustItem")),
      deShipDate(details.column("deShipDate")),
      deLeadTime(details.column("deLeadTime")),
      deWeight(details.column("deWeight")),
      deHasItemCom(details.column("deHasItemCom")),
      CoInType(details.column("CoInType")),
      CommIns(details.column("CommIns"))
{
}

bool DetailRow::is_item() const
{
    const Value& kind = at(&LineColumns::deDType);
    return !kind.is_null() && numeric_value(kind) == kItemLine;
}

bool DetailRow::is_accounting_item() const
{
    return numeric_value(at(&LineColumns::deIType)) == kAccountingItem;
}

Checked DetailRow::gross() const
{
    const Checked factor = number(&LineColumns::deConvFactor) / BaseConv;
    return number(&LineColumns::deQuantity) * (number(&LineColumns::deQuotedPrice) * factor);
}

std::span<const DetailColumn> quote_detail_columns()
{
    return kDetailColumns;
}

void prepare_item_row(DetailRow& row, Statements& statements)
{
    auto& document = row.document;
    statements.attempt("BaseConv", [&] {
        row.BaseConv = Return_BaseConvFactor(document.state, row.text(&L::APItem), row.text(&L::dePriceList),
                                             document.currency, false);
    });
    statements.attempt("pricing unit", [&] { row.pricing_unit = find_pricing_unit(row); });
    statements.attempt("pricing unit", [&] {
        if (trimmed(row.pricing_unit).empty()) row.pricing_unit = trimmed_text(row.at(&L::deUofM));
    });
}

}  // namespace velora
