#include "reports/quote_expiration.h"

#include <array>

#include "gateway/accounting_lookups.h"
#include "gateway/view_reading.h"
#include "reports/company_block.h"
#include "reports/list_report.h"
#include "reports/pipe_writer.h"
#include "session/query.h"
#include "session/settings.h"
#include "session/value_helpers.h"
#include "values/text.h"

namespace velora {

namespace {

/// Unlike all others it takes the printer of the settings only where they say that it is not the default one, by its
/// whole name, and leaves orientation and paper as they are.
void choose_own_printer(ReportRun& run)
{
    bool is_default = true;
    std::string name;
    run.statements().attempt("Default", [&] { is_default = to_bool(Value(setting(run.state(), "Default", "True"))); });
    run.statements().attempt("Name", [&] { name = trimmed(setting(run.state(), "Name", "")); });
    if (!is_default && !name.empty()) run.select_device(name);
}

const ListReport kList{.procedure = "Print_Expiration",
                       .nothing =
                           "There are no Expired Quotes or Quotes about to Expire\r\nin the database to place "
                           "on the report.",
                       .export_name = "Quote Expiration",
                       .choose_printer = choose_own_printer};

constexpr int kDaysAhead = 7;

DateTime days_after(const DateTime& day, int days)
{
    return {day.serial_day() + days, 0};
}

enum class CustomerPlace : uint8_t { Unknown, Accounting, Own };

/// The quote in hand.
struct ExpiringQuote {
    SessionState& state;
    const CompanyInfo& company;
    DateTime today;
    QueryRow row;
    CustomerPlace place = CustomerPlace::Unknown;

    /// Takes the row on which the rows stand. A null leaves its customer unknown, and number and phone empty.
    void take(Statements& statements)
    {
        place = CustomerPlace::Unknown;
        statements.attempt("CustFrom", [&] {
            place = numeric_value(row.at<"CustFrom">()) == 0 ? CustomerPlace::Accounting : CustomerPlace::Own;
        });
    }
};

using Row = ExpiringQuote;

template <ColumnName Name>
constexpr auto text = trimmed_column<Name, Row>;

Outcome customer_number(Row& r)
{
    if (r.place == CustomerPlace::Unknown) return Outcome::unwritten();
    return r.place == CustomerPlace::Accounting ? text<"AccPacID">(r) : text<"CustomerNumber">(r);
}

Outcome shown_phone(const Row& r, const Value& phone)
{
    return phone.is_null() ? Outcome::failed(fault::kNull) : phone_text(r.company, Value(trimmed_text(phone)));
}

/// None for a customer who has left the accounting system.
std::optional<Value> accounting_phone(SessionState& state, const std::string& customer)
{
    return state.cache.remember("AR0024 TEXTPHON1", {customer}, [&]() -> std::optional<Value> {
        OpenedView view(state, "AR0024");
        view.put_key("IDCUST", customer);
        return view.read() ? std::optional(view.field("TEXTPHON1")) : std::nullopt;
    });
}

Outcome customer_phone(Row& r)
{
    if (r.place == CustomerPlace::Unknown) return Outcome::unwritten();
    if (r.place == CustomerPlace::Own) return shown_phone(r, r.row.at<"cuPhone">());
    const auto phone = accounting_phone(r.state, trimmed_text(r.row.at<"AccPacID">()));
    return phone ? shown_phone(r, *phone) : Outcome::unwritten();
}

Outcome status(Row& r)
{
    const Value& name = r.row.at<"qsName">();
    return name.is_null() || !trimmed_text(name).empty() ? trimmed_cell(name) : text<"qsCode">(r);
}

Outcome shipping_date(Row& r)
{
    const Value& shipped = r.row.at<"quDateShip">();
    return Outcome::cell(shipped.is_null() ? r.row.at<"quDateEnter">() : shipped);
}

Outcome modified_by(Row& r)
{
    const Value& user = r.row.at<"quUserModify">();
    return user.is_null() ? Outcome::unwritten() : trimmed_cell(user);
}

Outcome location_name(Row& r)
{
    return Return_LocationName(r.state, r.row.text<"quLocation">());
}

struct Group {
    int16_t number;
    std::string_view text;
};

/// The first that holds decides.
Group group_of(const Row& r)
{
    const DateTime expires = to_date(r.row.at<"quDateExpire">());
    if (expires < r.today) return {1, "Quotes that have Expired"};
    if (expires <= days_after(r.today, 1)) return {2, "Quotes that will Expire within 1 day"};
    if (expires <= days_after(r.today, 3)) return {3, "Quotes that will Expire within 3 days"};
    return {4, "Quotes that will Expire within 7 days"};
}

// clang-format off
constexpr auto kExpirationColumns = std::to_array<Column<Row>>({
    // name                     type          size  value
    {"Quote Number",           ado::VarChar,   30, text<"QuoteNumber">},
    {"Customer Number",        ado::VarChar,   20, customer_number},
    {"Customer Name",          ado::VarChar,   60, text<"CustName">},  // as it was on the quote
    {"Customer Contact",       ado::VarChar,   60, text<"CustContact">},
    {"Customer Phone",         ado::VarChar,   30, customer_phone},
    {"Quote Status",           ado::VarChar,   30, status},
    {"Expiry Date",            ado::Date,       0, as_stored<"quDateExpire">},
    {"Quote Date",             ado::Date,       0, as_stored<"quDateEnter">},
    {"Shipping Date",          ado::Date,       0, shipping_date},
    {"Entered By",             ado::VarChar,   20, text<"quUserEnter">},
    {"Date Last Modified",     ado::Date,       0, unless_null<"quDateModify">},
    {"Last Modified By",       ado::VarChar,   20, modified_by},
    {"Location",               ado::VarChar,   15, text<"quLocation">},
    {"Location Desc",          ado::VarChar,   60, location_name},
    {"Description",            ado::VarChar,  100, text<"quDesc">},
    {"Reference Number",       ado::VarChar,   60, text<"quReference">},
    {"Detail Lines",           ado::VarChar,   10, text<"quLines">},
    {"Quote Notes",            ado::VarChar,  250, text<"quNotes">},
    {"Expiration Group",       ado::TinyInt,    0, [](Row& r) -> Outcome { return group_of(r).number; }},
    {"Expiration Group Desc",  ado::VarChar,  100, [](Row& r) -> Outcome { return group_of(r).text; }},
});
// clang-format on
static_assert(well_formed(kExpirationColumns));

struct ExpirationFields : PipeLayout {
    Section<CompanyBlock> company = add(list_company_columns());
    Section<ExpiringQuote> quote = add(ColumnList<ExpiringQuote>(kExpirationColumns));
};

/// The status is 1 here whatever the company calls open, and the date is the region's short one in the first dialect,
/// not the server's: both are meant.
std::unique_ptr<Rows> expiring_quotes(SessionState& state)
{
    const DateTime limit = days_after(today(state), kDaysAhead);
    return stream_query(
        state,
        {Command::statement(
             "SELECT [Quote].[QuoteID],[Quote].[QuoteNumber],[Quote].[CustFrom],[Quote].[AccPacID],"
             "[Customer].[CustomerNumber],[Quote].[CustName],[QuoteStatus].[qsName],[QuoteStatus].[qsCode],"
             "[Quote].[quDateEnter],[Quote].[quDateExpire],[Quote].[quUserEnter],[Quote].[quDesc],"
             "[Quote].[CustContact],[Quote].[quDateShip],[Quote].[quReference],[Quote].[quLocation],"
             "[Quote].[quLines],[Quote].[quNotes],[Quote].[quDateModify],[Quote].[quUserModify],[Customer].[cuPhone] "
             "FROM [Quote] INNER JOIN "
             "[QuoteStatus] ON [Quote].[QuoteStatusID] = [QuoteStatus].[QuoteStatusID] LEFT OUTER JOIN "
             "[Customer] ON [Quote].[CustomerID] = [Customer].[CustomerID] "
             "WHERE ([Quote].[quDateExpire] <= '" +
             plain_date(state, limit) +
             "') AND ([Quote].[QuoteStatusID] = 1) "
             "ORDER BY [Quote].[quDateExpire];"),
         Command::statement("SELECT Quote.QuoteID,Quote.QuoteNumber,Quote.CustFrom,Quote.AccPacID,"
                            "Customer.CustomerNumber,Quote.CustName,QuoteStatus.qsName,QuoteStatus.qsCode,"
                            "Quote.quDateEnter,Quote.quDateExpire,Quote.quUserEnter,Quote.quDesc,"
                            "Quote.CustContact,Quote.quDateShip,Quote.quReference,Quote.quLocation,"
                            "Quote.quLines,Quote.quNotes,Quote.quDateModify,Quote.quUserModify,Customer.cuPhone "
                            "FROM Quote INNER JOIN "
                            "QuoteStatus ON Quote.QuoteStatusID = QuoteStatus.QuoteStatusID LEFT OUTER JOIN "
                            "Customer ON Quote.CustomerID = Customer.CustomerID "
                            "WHERE (Quote.quDateExpire <= '" +
                            limit.iso() +
                            "') AND (Quote.QuoteStatusID = 1) "
                            "ORDER BY Quote.quDateExpire")});
}

void write_rows(ReportRun& run, const ExpirationFields& fields, Rows& rows, DataPipeRecordset& pipe)
{
    auto& state = run.state();
    CompanyBlock company{accounting(state).Company(), false};
    ExpiringQuote quote{state, company.company, today(state), QueryRow(rows)};
    PipeWriter writer(state, pipe, run.statements());
    for (; !rows.at_eof(); rows.MoveNext()) {
        writer.row([&] {
            writer.write_once(fields.company, company);
            quote.take(run.statements());
            writer.write(fields.quote, quote);
        });
    }
}

}  // namespace

RunEnd Print_Expiration(SessionState& state, const std::string& pReportString, bool pPreview, bool pExportIt)
{
    const ExpirationFields fields;
    return run_list(state, kList, {pReportString, pPreview, pExportIt}, fields.fields(), expiring_quotes,
                    [&](ReportRun& run, Rows& rows, DataPipeRecordset& pipe) { write_rows(run, fields, rows, pipe); });
}

std::vector<PipeField> quote_expiration_fields()
{
    return ExpirationFields().fields();
}

}  // namespace velora
