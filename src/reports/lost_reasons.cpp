#include "reports/lost_reasons.h"

#include "reports/closed_quote.h"
#include "reports/list_report.h"
#include "session/query.h"

namespace velora {

namespace {

const ListReport kList{.procedure = "Print_LostReason",
                       .nothing = "No data could be found for the report.",
                       .export_name = "Lost Reason Graph"};

ClosedQuoteFields lost_reason_row()
{
    ColumnList quote(closed_quote_columns());
    quote.leave_out({"Sage Accpac OE Number"}).revalue("Date Last Modified", as_stored<"quDateModify">);
    ColumnList customer(customer_columns());
    customer.revalue("Customer Country", customer_text<"CODECTRY", "[cuCountry">);  // the bracket is meant to stand
    return {quote, customer, ColumnList(closed_quote_customer_columns()).append(lost_reason_columns())};
}

std::unique_ptr<Rows> lost_quotes(SessionState& state, const QuoteCriteria& criteria)
{
    const std::string clauses = criteria_clauses(state, criteria, " WHERE ");
    return stream_query(
        state, {Command::statement("SELECT [Quote].*,[LostDetail].*,[Reason].[reCode],[Reason].[reDescription] "
                                   "FROM [Quote] INNER JOIN [LostDetail] ON [Quote].[QuoteID] = [LostDetail].[QuoteID] "
                                   "INNER JOIN [Reason] ON [LostDetail].[ReasonID] = [Reason].[ReasonID]" +
                                   clauses + (criteria.all_dates ? "" : ";")),
                Command::statement("SELECT Quote.*,LostDetail.*,Reason.reCode,Reason.reDescription "
                                   "FROM Quote INNER JOIN LostDetail ON Quote.QuoteID = LostDetail.QuoteID "
                                   "INNER JOIN Reason ON LostDetail.ReasonID = Reason.ReasonID" +
                                   clauses)});
}

}  // namespace

RunEnd Print_LostReason(SessionState& state, const std::string& pReportString, bool pAllDates, int16_t pCustFrom,
                        const DateTime& pFrom, const DateTime& pTo, const std::string& pACCPACCust, int32_t pCustomerID,
                        bool pPreview, bool pExportIt)
{
    const QuoteCriteria criteria{pAllDates, CustomerFrom{pCustFrom}, pFrom, pTo, pACCPACCust, pCustomerID};
    const ClosedQuoteFields fields = lost_reason_row();
    return run_list(
        state, kList, {pReportString, pPreview, pExportIt}, fields.fields(),
        [&](SessionState&) { return lost_quotes(state, criteria); },
        [&](ReportRun& run, Rows& rows, DataPipeRecordset& pipe) {
            write_closed_quotes(run, fields, {accounting(state).Company(), criteria, QueryRow(rows)}, rows, pipe);
        });
}

std::vector<PipeField> lost_reason_fields()
{
    return lost_reason_row().fields();
}

}  // namespace velora
