#include "reports/win_loss.h"

#include "gateway/database_lookups.h"
#include "reports/closed_quote.h"
#include "reports/list_report.h"
#include "session/company.h"
#include "session/query.h"

namespace velora {

namespace {

const ListReport kList{.procedure = "Print_WinLoss",
                       .nothing = "No data could be found for the report.",
                       .export_name = "Win Loss Ratio Graph"};

ClosedQuoteFields win_loss_row()
{
    return {closed_quote_columns(), customer_columns(),
            ColumnList(closed_quote_customer_columns()).append(closed_quote_status_columns())};
}

std::unique_ptr<Rows> closed_quotes(SessionState& state, const QuoteCriteria& criteria)
{
    const std::string open = to_text(company_default(state, "qdStatusOpen"));
    const std::string clauses = criteria_clauses(state, criteria, " AND ");
    return stream_query(
        state, {Command::statement(
                    "SELECT [Quote].*,[QuoteStatus].[qsCode],[QuoteStatus].[qsName],[QuoteStatus].[qsDescription] "
                    "FROM [Quote] INNER JOIN [QuoteStatus] ON [Quote].[QuoteStatusID]=[QuoteStatus].[QuoteStatusID] "
                    "WHERE ([Quote].[QuoteStatusID] <> " +
                    open + ")" + clauses + ";"),
                Command::statement("SELECT Quote.*,QuoteStatus.qsCode,QuoteStatus.qsName,QuoteStatus.qsDescription "
                                   "FROM Quote INNER JOIN QuoteStatus ON Quote.QuoteStatusID=QuoteStatus.QuoteStatusID "
                                   "WHERE (Quote.QuoteStatusID <> " +
                                   open + ")" + clauses)});
}

}  // namespace

RunEnd Print_WinLoss(SessionState& state, const std::string& pReportString, bool pAllDates, int16_t pCustFrom,
                     const DateTime& pFrom, const DateTime& pTo, const std::string& pACCPACCust, int32_t pCustomerID,
                     bool pPreview, bool pExportIt)
{
    const QuoteCriteria criteria{pAllDates, CustomerFrom{pCustFrom}, pFrom, pTo, pACCPACCust, pCustomerID};
    const ClosedQuoteFields fields = win_loss_row();
    return run_list(
        state, kList, {pReportString, pPreview, pExportIt}, fields.fields(),
        [&](SessionState&) { return closed_quotes(state, criteria); },
        [&](ReportRun& run, Rows& rows, DataPipeRecordset& pipe) {
            const bool number = Use_VLNumber(state);
            write_closed_quotes(run, fields, {accounting(state).Company(), criteria, QueryRow(rows), number}, rows,
                                pipe);
        });
}

std::vector<PipeField> win_loss_fields()
{
    return win_loss_row().fields();
}

}  // namespace velora
