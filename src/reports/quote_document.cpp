#include "reports/quote_document.h"

#include <array>

#include "gateway/accounting_lookups.h"
#include "gateway/database_lookups.h"
#include "pricing/amount_display.h"
#include "pricing/taxes.h"
#include "pricing/units.h"
#include "reports/company_block.h"
#include "session/lists.h"
#include "values/text.h"

namespace velora {

namespace {

using Document = QuoteDocument;

Outcome text(std::string_view value)
{
    return trimmed(value);
}

template <size_t N>
Outcome salesperson_name(Document& d)
{
    return Return_SalesPersonName(d.state, d.quote().quSalesperson[N]);
}

Outcome customer_number(Document& d)
{
    if (d.quote().CustFrom != 0) return text(Return_VLCustomer(d.state, d.quote().CustomerID));
    return text(d.quote().AccpacID);
}

Outcome discount_percent(Document& d)
{
    const Checked share = Checked(d.state.gPrDiscount) / d.state.gPrSubTotal * 100;
    return Outcome::of(share.absolute(), [&](double percent) { return Format_Decimals(d.state, percent, 2) + "%"; });
}

// clang-format off
constexpr auto kHeaderColumns = std::to_array<Column<Document>>({
    // name                         type          size  value
    {"Quote Number",               ado::VarChar,   30, [](Document& d) { return text(d.quote().QuoteNumber); }},
    {"Customer Number",            ado::VarChar,   20, customer_number},
    {"Customer Contact",           ado::VarChar,   60, [](Document& d) { return text(d.quote().CustContact); }},
    {"PO Number",                  ado::VarChar,   30, [](Document& d) { return text(d.quote().quPONumber); }},
    {"Quote Status",               ado::VarChar,   30, [](Document& d) { return text(Return_ListValue(d.state, d.state.gQuoteStatus, d.quote().QuoteStatusID, kListStatus)); }},
    {"Quote Date",                 ado::Date,       0, [](Document& d) -> Outcome { return d.quote().quDateEnter; }},
    {"Quote Type",                 ado::VarChar,   30, [](Document& d) { return text(Return_ListValue(d.state, d.state.gQuoteType, d.quote().QuoteTypeID, kListType)); }},
    {"Quote Confidence",           ado::VarChar,   30, [](Document& d) { return text(Return_ListValue(d.state, d.state.gQuoteConfid, d.quote().QuoteConfidID, kListConfidence)); }},
    {"Shipping Date",              ado::Date,       0, [](Document& d) -> Outcome { return d.quote().quDateShip; }},
    {"Expiry Date",                ado::Date,       0, [](Document& d) -> Outcome { return d.quote().quDateExpire; }},
    {"Sage Accpac Company",        ado::VarChar,   20, [](Document& d) { return text(d.quote().quCompany); }},
    {"Entered By",                 ado::VarChar,   20, [](Document& d) { return text(d.quote().quUserEnter); }},
    {"Date Last Modified",         ado::Date,       0, [](Document& d) -> Outcome { return d.quote().quDateModify; }},
    {"Last Modified By",           ado::VarChar,   20, [](Document& d) { return text(d.quote().quUserModify); }},
    {"Location",                   ado::VarChar,   15, [](Document& d) { return text(d.quote().quLocation); }},
    {"Location Desc",              ado::VarChar,   60, [](Document& d) -> Outcome { return Return_LocationName(d.state, d.quote().quLocation); }},
    {"Description",                ado::VarChar,  100, [](Document& d) { return text(d.quote().quDesc); }},
    {"Reference Number",           ado::VarChar,   60, [](Document& d) { return text(d.quote().quReference); }},
    {"Detail Lines",               ado::VarChar,   10, [](Document& d) -> Outcome { return std::to_string(d.quote().quLines); }},
    {"Quote Notes",                ado::VarChar,  250, [](Document& d) { return text(d.quote().quNotes); }},
    {"Ship-To Location",           ado::VarChar,   15, [](Document& d) { return text(d.quote().quShipToLoc); }},
    {"Ship Via",                   ado::VarChar,   15, [](Document& d) { return text(d.quote().quShipVia); }},
    {"Ship Via Description",       ado::VarChar,   60, [](Document& d) { return text(d.quote().quShipViaDesc); }},
    {"FOB Point",                  ado::VarChar,   60, [](Document& d) { return text(d.quote().quFOBPoint); }},
    {"Territory",                  ado::VarChar,    6, [](Document&) -> Outcome { return ""; }},  // nothing fills it: definitions carry the field
    {"Email Address",              ado::VarChar,   60, [](Document& d) { return text(d.quote().quEmail); }},
    {"Home Currency",              ado::VarChar,   10, [](Document& d) { return text(d.quote().quHomeCurr); }},
    {"Source Currency",            ado::VarChar,   10, [](Document& d) { return text(d.quote().quSourceCurr); }},
    {"Rate Type",                  ado::VarChar,   10, [](Document& d) { return text(d.quote().quRateType); }},
    {"Rate Date",                  ado::Date,       0, [](Document& d) -> Outcome { return d.quote().quRateDate; }},
    {"Exchange Rate",              ado::Single,     0, [](Document& d) -> Outcome { return d.quote().quRateEx; }},
    {"Customer Discount Type",     ado::VarChar,    4, [](Document& d) { return discount_letter(d.quote().quCustomerType); }},
    {"Customer Price List",        ado::VarChar,   15, [](Document& d) { return text(d.quote().quPriceList); }},
    {"Customer Price List Desc",   ado::VarChar,   60, [](Document& d) -> Outcome { return Return_PriceListDesc(d.state, d.quote().quPriceList); }},
    {"Customer Tax Group",         ado::VarChar,   15, [](Document& d) { return text(d.quote().quTaxGroup); }},
    {"Customer Tax Group Desc",    ado::VarChar,   60, [](Document& d) -> Outcome { return Return_TaxGroupDesc(d.state, d.quote().quTaxGroup); }},
    {"Customer Terms Code",        ado::VarChar,   15, [](Document& d) { return text(d.quote().quTermsCode); }},
    {"Customer Terms Code Desc",   ado::VarChar,   60, [](Document& d) -> Outcome { return Return_TermsCodeDesc(d.state, d.quote().quTermsCode); }},
    {"Customer Currency Code",     ado::VarChar,   15, [](Document& d) { return text(d.quote().quCurCode); }},
    {"Customer Tax Class1",        ado::VarChar,   10, [](Document& d) { return text(d.quote().quTaxClass[0]); }},
    {"Customer Tax Class2",        ado::VarChar,   10, [](Document& d) { return text(d.quote().quTaxClass[1]); }},
    {"Customer Tax Class3",        ado::VarChar,   10, [](Document& d) { return text(d.quote().quTaxClass[2]); }},
    {"Customer Tax Class4",        ado::VarChar,   10, [](Document& d) { return text(d.quote().quTaxClass[3]); }},
    {"Customer Tax Class5",        ado::VarChar,   10, [](Document& d) { return text(d.quote().quTaxClass[4]); }},
    {"Customer Registration No1",  ado::VarChar,   30, [](Document& d) { return text(d.quote().quRegNumber[0]); }},
    {"Customer Registration No2",  ado::VarChar,   30, [](Document& d) { return text(d.quote().quRegNumber[1]); }},
    {"Customer Registration No3",  ado::VarChar,   30, [](Document& d) { return text(d.quote().quRegNumber[2]); }},
    {"Customer Registration No4",  ado::VarChar,   30, [](Document& d) { return text(d.quote().quRegNumber[3]); }},
    {"Customer Registration No5",  ado::VarChar,   30, [](Document& d) { return text(d.quote().quRegNumber[4]); }},
    {"Customer Salesperson1",      ado::VarChar,   20, [](Document& d) { return text(d.quote().quSalesperson[0]); }},
    {"Customer Salesperson2",      ado::VarChar,   20, [](Document& d) { return text(d.quote().quSalesperson[1]); }},
    {"Customer Salesperson3",      ado::VarChar,   20, [](Document& d) { return text(d.quote().quSalesperson[2]); }},
    {"Customer Salesperson4",      ado::VarChar,   20, [](Document& d) { return text(d.quote().quSalesperson[3]); }},
    {"Customer Salesperson5",      ado::VarChar,   20, [](Document& d) { return text(d.quote().quSalesperson[4]); }},
    {"Customer Sales Split1",      ado::Single,     0, [](Document& d) -> Outcome { return d.quote().quPercentSS[0]; }},
    {"Customer Sales Split2",      ado::Single,     0, [](Document& d) -> Outcome { return d.quote().quPercentSS[1]; }},
    {"Customer Sales Split3",      ado::Single,     0, [](Document& d) -> Outcome { return d.quote().quPercentSS[2]; }},
    {"Customer Sales Split4",      ado::Single,     0, [](Document& d) -> Outcome { return d.quote().quPercentSS[3]; }},
    {"Customer Sales Split5",      ado::Single,     0, [](Document& d) -> Outcome { return d.quote().quPercentSS[4]; }},
    {"Customer Salesperson Name1", ado::VarChar,   60, salesperson_name<0>},
    {"Customer Salesperson Name2", ado::VarChar,   60, salesperson_name<1>},
    {"Customer Salesperson Name3", ado::VarChar,   60, salesperson_name<2>},
    {"Customer Salesperson Name4", ado::VarChar,   60, salesperson_name<3>},
    {"Customer Salesperson Name5", ado::VarChar,   60, salesperson_name<4>},
});
static_assert(well_formed(kHeaderColumns));

constexpr auto kTotalColumns = std::to_array<Column<Document>>({
    {"Quote SubTotal",         ado::VarChar, 30, [](Document& d) -> Outcome { return d.money(d.state.gPrSubTotal); }},
    {"Quote Discount",         ado::VarChar, 30, [](Document& d) -> Outcome { return d.money(d.state.gPrDiscount * -1); }},
    {"Quote Discount Percent", ado::VarChar, 30, discount_percent},
    {"Quote Net Total",        ado::VarChar, 30, [](Document& d) -> Outcome { return d.money(d.state.gPrNetTotal); }},
    {"Quote Tax Total",        ado::VarChar, 30, [](Document& d) -> Outcome { return d.money(d.state.gPrTaxTotal); }},
    {"Quote Total",            ado::VarChar, 30, [](Document& d) -> Outcome { return d.money(d.state.gPrTotal); }},
    {"Quote Cost",             ado::VarChar, 30, [](Document& d) -> Outcome { return d.money(d.state.gPrCost); }},
    {"Quote Profit",           ado::VarChar, 30, [](Document& d) -> Outcome { return d.money(d.state.gPrProfit); }},
    {"Quote Margin",           ado::VarChar, 20, [](Document& d) { return text(d.state.gPrMargin); }},
    {"Quote Weight",           ado::Single,   0, [](Document& d) -> Outcome { return d.state.gPrWeight; }},
    {"Quote Weight Unit",      ado::VarChar, 20, [](Document& d) -> Outcome { return Return_ItemWeightUnit(d.state); }},
    {"Tax Authority1",         ado::VarChar, 10, [](Document& d) { return text(d.slots[0].Authority); }},
    {"Tax Authority2",         ado::VarChar, 10, [](Document& d) { return text(d.slots[1].Authority); }},
    {"Tax Authority3",         ado::VarChar, 10, [](Document& d) { return text(d.slots[2].Authority); }},
    {"Tax Authority4",         ado::VarChar, 10, [](Document& d) { return text(d.slots[3].Authority); }},
    {"Tax Authority5",         ado::VarChar, 10, [](Document& d) { return text(d.slots[4].Authority); }},
    {"Tax Amount1",            ado::Single,   0, [](Document& d) -> Outcome { return d.slots[0].Amount; }},
    {"Tax Amount2",            ado::Single,   0, [](Document& d) -> Outcome { return d.slots[1].Amount; }},
    {"Tax Amount3",            ado::Single,   0, [](Document& d) -> Outcome { return d.slots[2].Amount; }},
    {"Tax Amount4",            ado::Single,   0, [](Document& d) -> Outcome { return d.slots[3].Amount; }},
    {"Tax Amount5",            ado::Single,   0, [](Document& d) -> Outcome { return d.slots[4].Amount; }},
});
// clang-format on
static_assert(well_formed(kTotalColumns));

/// In a company with one currency amounts show in the home currency, whatever the quote says.
std::string document_currency(SessionState& state)
{
    std::string currency(state.gMultiCurr ? trimmed(state.gQuote.quCurCode) : std::string_view());
    return currency.empty() ? accounting(state).Company().HomeCurrency : currency;
}

}  // namespace

Value QuoteDocument::money(double amount)
{
    return Display_AccpacCurrency(state, amount, currency, false);
}

std::span<const Column<QuoteDocument>> quote_header_columns()
{
    return kHeaderColumns;
}

std::span<const Column<QuoteDocument>> quote_total_columns()
{
    return kTotalColumns;
}

AddressBlock quote_addresses(SessionState& state)
{
    const auto& quote = state.gQuote;
    return {accounting(state).Company(), fetch_addresses(state, {quote.CustFrom, quote.AccpacID, quote.CustomerID,
                                                                 quote.BillToID, quote.ShipToID, quote.quShipToLoc})};
}

QuoteDocument load_quote_document(SessionState& state)
{
    QuoteDocument document{state};
    const auto& quote = state.gQuote;
    Get_TaxAuthorities(state, quote.quTaxGroup, document.slots, document.slot_count);
    for (size_t n = 0; n < kTaxSlots; ++n) document.slots[n].TaxClass = quote.quTaxClass[n];
    document.currency = document_currency(state);
    return document;
}

}  // namespace velora
