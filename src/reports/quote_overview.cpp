#include "reports/quote_overview.h"

#include "gateway/database_lookups.h"
#include "reports/closed_quote.h"
#include "reports/list_report.h"
#include "session/query.h"

namespace velora {

namespace {

const ListReport kList{.procedure = "Print_Overview",
                       .nothing = "No data could be found for the report.",
                       .export_name = "Quote Overview"};

constexpr int16_t kAllStatuses = 0;
constexpr int16_t kLost = 3;  // whatever the company's own status for lost quotes is

struct Overview {
    QuoteCriteria quotes;
    int16_t status = kAllStatuses;
    int16_t reason = 0;
};

Outcome shipping_date(ClosedQuote& r)
{
    const Value& shipped = r.row.at<"quDateShip">();
    return Outcome::cell(shipped.is_null() ? r.row.at<"quDateEnter">() : shipped);
}

ClosedQuoteFields overview_row(bool with_reasons)
{
    // clang-format off
    ColumnList quote(closed_quote_columns());
    quote.revalue("Shipping Date", shipping_date)
        .resize("Ship Via Description", 620)  // wider than any other: definitions rely on it
        .insert_behind("FOB Point", {
            {"Home Currency",   ado::VarChar, 10, trimmed_column<"quHomeCurr">},
            {"Source Currency", ado::VarChar, 10, trimmed_column<"quSourceCurr">},
            {"Rate Type",       ado::VarChar, 10, trimmed_column<"quRateType">},
            {"Rate Date",       ado::Date,     0, unless_null<"quRateDate">},
            {"Exchange Rate",   ado::Single,   0, as_stored<"quRateEx">},
        });
    ColumnList customer(customer_columns());
    customer.insert_behind("Contact Email", {{"Customer Email", ado::VarChar, 50, customer_text<"EMAIL2", "cuEmail2">}});
    // clang-format on
    ColumnList reasons(lost_reason_columns());
    if (!with_reasons) reasons.leave_unwritten();
    return {
        quote, customer,
        ColumnList(closed_quote_customer_columns()).append(closed_quote_status_columns()).append(reasons.columns())};
}

Query statement(const Overview& wanted)
{
    const std::string status = std::to_string(wanted.status);
    if (wanted.status != kLost) {
        Query query{
            Command::statement("SELECT [Quote].*,[QuoteStatus].[qsCode],[QuoteStatus].[qsName],"
                               "[QuoteStatus].[qsDescription] FROM [Quote] INNER JOIN [QuoteStatus] ON "
                               "[Quote].[QuoteStatusID] = [QuoteStatus].[QuoteStatusID]"),
            Command::statement("SELECT Quote.*,QuoteStatus.qsCode,QuoteStatus.qsName,QuoteStatus.qsDescription FROM "
                               "Quote INNER JOIN QuoteStatus ON Quote.QuoteStatusID=QuoteStatus.QuoteStatusID")};
        if (wanted.status == kAllStatuses) return query;
        query.sql_server.text += " WHERE ([Quote].[QuoteStatusID] = " + status + ")";
        query.pervasive.text += " WHERE (Quote.QuoteStatusID = " + status + ")";
        return query;
    }
    Query query{
        Command::statement(
            "SELECT [Quote].*,[LostDetail].*,[Reason].[reCode],[Reason].[reDescription],[QuoteStatus].[qsCode],"
            "[QuoteStatus].[qsName],[QuoteStatus].[qsDescription] FROM [Quote] INNER JOIN [LostDetail] ON "
            "[Quote].[QuoteID] = [LostDetail].[QuoteID] INNER JOIN [Reason] ON [LostDetail].[ReasonID] = "
            "[Reason].[ReasonID] INNER JOIN [QuoteStatus] ON [Quote].[QuoteStatusID] = [QuoteStatus].[QuoteStatusID] "
            "WHERE ([Quote].[QuoteStatusID] = " +
            status + ")"),
        Command::statement(
            "SELECT Quote.*,LostDetail.*,Reason.reCode,Reason.reDescription,QuoteStatus.qsCode,QuoteStatus.qsName,"
            "QuoteStatus.qsDescription FROM Quote INNER JOIN LostDetail ON Quote.QuoteID = LostDetail.QuoteID INNER "
            "JOIN Reason ON LostDetail.ReasonID =Reason.ReasonID INNER JOIN QuoteStatus ON "
            "Quote.QuoteStatusID=QuoteStatus.QuoteStatusID WHERE (Quote.QuoteStatusID = " +
            status + ")")};
    if (wanted.reason <= 0) return query;
    query.sql_server.text += " AND ([Reason].[ReasonID] = " + std::to_string(wanted.reason) + ")";
    query.pervasive.text += " AND (Reason.ReasonID = " + std::to_string(wanted.reason) + ")";
    return query;
}

/// In the plain dialect the days of an accounting customer's quotes of one status are asked for with a bracket too
/// many, which databases refuse; it is meant to stand.
std::string entered_column(const SessionState& state, const Overview& wanted)
{
    const bool stray = state.gEngine == eDBPervasive && wanted.status != kAllStatuses &&
                       wanted.quotes.customer_from == CustomerFrom::Accounting;
    return stray ? "Quote.[quDateEnter" : "";
}

std::unique_ptr<Rows> quotes_to_list(SessionState& state, const Overview& wanted)
{
    Query query = statement(wanted);
    const std::string_view word = wanted.status == kAllStatuses ? " WHERE " : " AND ";
    std::string clauses = customer_clause(state, wanted.quotes, word);
    clauses += period_clause(state, wanted.quotes, clauses.empty() ? word : " AND ", entered_column(state, wanted));
    query.sql_server.text += clauses + " ORDER BY [Quote].[QuoteID];";
    query.pervasive.text += clauses + " ORDER BY Quote.QuoteID";
    return stream_query(state, query);
}

}  // namespace

RunEnd Print_Overview(SessionState& state, const std::string& pReportString, bool pAllDates, int16_t pCustFrom,
                      int16_t pStatusID, const DateTime& pFrom, const DateTime& pTo, const std::string& pACCPACCust,
                      int32_t pCustomerID, int16_t pReasonID, bool pPreview, bool pExportIt)
{
    const Overview wanted{
        {pAllDates, CustomerFrom{pCustFrom}, pFrom, pTo, pACCPACCust, pCustomerID}, pStatusID, pReasonID};
    const ClosedQuoteFields fields = overview_row(pStatusID == kLost);
    return run_list(
        state, kList, {pReportString, pPreview, pExportIt}, fields.fields(),
        [&](SessionState&) { return quotes_to_list(state, wanted); },
        [&](ReportRun& run, Rows& rows, DataPipeRecordset& pipe) {
            const bool number = Use_VLNumber(state);
            write_closed_quotes(run, fields, {accounting(state).Company(), wanted.quotes, QueryRow(rows), number}, rows,
                                pipe);
        });
}

std::vector<PipeField> quote_overview_fields()
{
    return overview_row(true).fields();
}

}  // namespace velora
