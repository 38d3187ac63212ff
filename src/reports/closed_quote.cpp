#include "reports/closed_quote.h"

#include <array>

#include "reports/pipe_writer.h"
#include "values/text.h"

namespace velora {

namespace {

using Row = ClosedQuote;

template <ColumnName Name>
constexpr auto text = trimmed_column<Name, Row>;

Outcome order_number(Row& r)
{
    return r.uses_quote_number ? text<"QuoteNumber">(r) : text<"quACCPACNum">(r);
}

Outcome discount_type(Row& r)
{
    const Value& level = r.row.at<"quCustomerType">();
    return level.is_null() ? Outcome::failed(fault::kNull) : discount_letter(to_number(level));
}

Outcome confirm_phone(Row& r)
{
    const Value& phone = r.row.at<"ldPhone">();
    return phone.is_null() ? Outcome::failed(fault::kNull) : phone_text(r.company, Value(trimmed_text(phone)));
}

// clang-format off
constexpr auto kQuoteColumns = std::to_array<Column<Row>>({
    // name                         type              size  value
    {"Quote Number",               ado::VarChar,       30, text<"QuoteNumber">},
    {"Sage Accpac OE Number",      ado::VarChar,       50, order_number},
    {"PO Number",                  ado::VarChar,       30, text<"quPONumber">},
    {"Quote Date",                 ado::DBTimeStamp,    0, as_stored<"quDateEnter">},
    {"Shipping Date",              ado::DBTimeStamp,    0, as_stored<"quDateShip">},
    {"Expiry Date",                ado::DBTimeStamp,    0, as_stored<"quDateExpire">},
    {"Sage Accpac Company",        ado::VarChar,       20, text<"quCompany">},
    {"Entered By",                 ado::VarChar,       20, text<"quUserEnter">},
    {"Date Last Modified",         ado::DBTimeStamp,    0, unless_null<"quDateModify">},
    {"Last Modified By",           ado::VarChar,       20, text<"quUserModify">},
    {"Location",                   ado::VarChar,       15, text<"quLocation">},
    {"Description",                ado::VarChar,      100, text<"quDesc">},
    {"Reference Number",           ado::VarChar,       60, text<"quReference">},
    {"Detail Lines",               ado::VarChar,       10, text<"quLines">},
    {"Quote Notes",                ado::VarChar,      250, text<"quNotes">},
    {"Ship-To Location",           ado::VarChar,       15, text<"quShipToLoc">},
    {"Ship Via",                   ado::VarChar,       15, text<"quShipVia">},
    {"Ship Via Description",       ado::VarChar,       60, text<"quShipViaDesc">},
    {"FOB Point",                  ado::VarChar,       60, text<"quFOBPoint">},
});
static_assert(well_formed(kQuoteColumns));

constexpr auto kCustomerColumns = std::to_array<Column<Row>>({
    {"Customer Discount Type",     ado::VarChar,        4, discount_type},
    {"Customer Price List",        ado::VarChar,       15, text<"quPriceList">},
    {"Customer Tax Group",         ado::VarChar,       15, text<"quTaxGroup">},
    {"Customer Terms Code",        ado::VarChar,       15, text<"quTermsCode">},
    {"Customer Currency Code",     ado::VarChar,       15, text<"quCurCode">},
    {"Customer Tax Class1",        ado::VarChar,       20, text<"quTaxClass1">},
    {"Customer Tax Class2",        ado::VarChar,       20, text<"quTaxClass2">},
    {"Customer Tax Class3",        ado::VarChar,       20, text<"quTaxClass3">},
    {"Customer Tax Class4",        ado::VarChar,       20, text<"quTaxClass4">},
    {"Customer Tax Class5",        ado::VarChar,       20, text<"quTaxClass5">},
    {"Customer Registration No1",  ado::VarChar,       20, text<"quRegNumber1">},
    {"Customer Registration No2",  ado::VarChar,       20, text<"quRegNumber2">},
    {"Customer Registration No3",  ado::VarChar,       20, text<"quRegNumber3">},
    {"Customer Registration No4",  ado::VarChar,       20, text<"quRegNumber4">},
    {"Customer Registration No5",  ado::VarChar,       20, text<"quRegNumber5">},
    {"Customer Salesperson1",      ado::VarChar,       20, text<"quSalesperson1">},
    {"Customer Salesperson2",      ado::VarChar,       20, text<"quSalesperson2">},
    {"Customer Salesperson3",      ado::VarChar,       20, text<"quSalesperson3">},
    {"Customer Salesperson4",      ado::VarChar,       20, text<"quSalesperson4">},
    {"Customer Salesperson5",      ado::VarChar,       20, text<"quSalesperson5">},
    {"Customer Sales Split1",      ado::Single,         0, as_stored<"quPercentSS1">},
    {"Customer Sales Split2",      ado::Single,         0, as_stored<"quPercentSS2">},
    {"Customer Sales Split3",      ado::Single,         0, as_stored<"quPercentSS3">},
    {"Customer Sales Split4",      ado::Single,         0, as_stored<"quPercentSS4">},
    {"Customer Sales Split5",      ado::Single,         0, as_stored<"quPercentSS5">},
});
static_assert(well_formed(kCustomerColumns));

constexpr auto kStatusColumns = std::to_array<Column<Row>>({
    {"Status ID",                  ado::Integer,        0, as_stored<"QuoteStatusID">},
    {"Status Code",                ado::VarChar,       10, text<"qsCode">},
    {"Status Name",                ado::VarChar,       30, text<"qsName">},
    {"Status Desc",                ado::VarChar,      100, text<"qsDescription">},
});
static_assert(well_formed(kStatusColumns));

constexpr auto kReasonColumns = std::to_array<Column<Row>>({
    {"Reason ID",                  ado::Integer,        0, as_stored<"ReasonID">},
    {"Reason Code",                ado::VarChar,       10, text<"reCode">},
    {"Reason Desc",                ado::VarChar,      100, text<"reDescription">},
    {"Reason Date Lost",           ado::DBTimeStamp,    0, as_stored<"ldDateLost">},
    {"Reason User Lost",           ado::VarChar,       20, text<"ldUserLost">},
    {"Reason Confirmed By",        ado::VarChar,       30, text<"ldConfirm">},
    {"Reason Confirm Phone",       ado::VarChar,       30, confirm_phone},
    {"Reason Reference No",        ado::VarChar,       30, text<"ldRefNumber">},
    {"Reason Notes",               ado::VarChar,      250, text<"ldNotes">},
});
static_assert(well_formed(kReasonColumns));

constexpr auto kPeriodColumns = std::to_array<Column<Row>>({
    {"Date All",                   ado::Integer,        0, [](Row& r) -> Outcome { return r.criteria.all_dates ? 1 : 0; }},
    {"Date From",                  ado::DBTimeStamp,    0, [](Row& r) -> Outcome { return r.criteria.from; }},  // applied or not
    {"Date To",                    ado::DBTimeStamp,    0, [](Row& r) -> Outcome { return r.criteria.to; }},
});
static_assert(well_formed(kPeriodColumns));
// clang-format on

}  // namespace

std::span<const Column<ClosedQuote>> closed_quote_columns()
{
    return kQuoteColumns;
}

std::span<const Column<ClosedQuote>> closed_quote_customer_columns()
{
    return kCustomerColumns;
}

std::span<const Column<ClosedQuote>> closed_quote_status_columns()
{
    return kStatusColumns;
}

std::span<const Column<ClosedQuote>> closed_quote_period_columns()
{
    return kPeriodColumns;
}

std::span<const Column<ClosedQuote>> lost_reason_columns()
{
    return kReasonColumns;
}

void write_closed_quotes(ReportRun& run, const ClosedQuoteFields& fields, ClosedQuote quote, Rows& rows,
                         DataPipeRecordset& pipe)
{
    CompanyBlock company{quote.company, false};
    QuoteCustomers customers(run.state(), fields.customer);
    PipeWriter writer(run.state(), pipe, run.statements());
    for (; !rows.at_eof(); rows.MoveNext()) {
        writer.row([&] {
            writer.write_once(fields.company, company);
            writer.write(fields.quote, quote);
            run.statements().attempt("customer",
                                     [&] { writer.write_values(fields.customer, customers.of(quote.row)); });
            writer.write(fields.rest, quote);
            writer.write_once(fields.period, quote);
        });
    }
}

}  // namespace velora
