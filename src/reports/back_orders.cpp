#include "reports/back_orders.h"

#include <array>
#include <utility>

#include "gateway/database_lookups.h"
#include "pricing/amount_display.h"
#include "reports/closed_quote.h"
#include "reports/detail_rows.h"
#include "reports/line_kinds.h"
#include "reports/list_report.h"
#include "reports/pipe_writer.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

const ListReport kList{.procedure = "Print_BackOrder",
                       .nothing = "No data could be found for the report.",
                       .export_name = "Back Order Items"};

Outcome item_number(DetailRow& r)
{
    if (shows_accounting_item(r.row.at<"deIType">())) return Return_FormatItem(r.state, r.row.text<"APItem">());
    return trimmed_cell(r.row.at<"ItemID">());
}

/// Each line has a quote of its own, and so a discount level of its own.
Outcome base_price_of_quote(DetailRow& r)
{
    if (r.is_accounting_item()) r.customer_type = to_int16(r.row.at<"quCustomerType">());
    return original_base_price(r);
}

/// A line without a price has none, too, where a quote leaves the field empty.
Outcome margin_or_none(DetailRow& r)
{
    return r.row.at<"deQuotedPrice">().is_null() ? Outcome(int32_t{0}) : margin(r);
}

constexpr auto kCurrencyColumns = std::to_array<Column<DetailRow>>({
    {"Customer Currency Code", ado::VarChar, 15, [](DetailRow& r) -> Outcome { return trimmed(r.currency); }},
});

ColumnList<DetailRow> line_columns()
{
    ColumnList lines(detail_columns());
    lines.leave_out({"Detail Line", "Detail Discount Percent", "Detail Lead Time", "Detail Item Comm/Ins"})
        .revalue("Detail Item Number", item_number)
        .revalue("Detail Back Order", trimmed_column<"BackOrder">)
        .revalue("Detail Original Base Price", base_price_of_quote)
        .revalue("Detail Margin", margin_or_none);
    return lines;
}

struct BackOrderFields : PipeLayout {
    Section<CompanyBlock> company = add(list_company_columns());
    Section<ClosedQuote> quote = add(ColumnList(closed_quote_columns()).leave_out({"Detail Lines"}));
    Section<CustomerSource> customer = add(ColumnList(customer_columns()));
    Section<ClosedQuote> terms =
        add(ColumnList(closed_quote_customer_columns())
                .pick({"Customer Discount Type", "Customer Price List", "Customer Tax Group", "Customer Terms Code"}));
    Section<DetailRow> currency = add(ColumnList<DetailRow>(kCurrencyColumns));
    Section<DetailRow> line = add(line_columns());
    Section<ClosedQuote> status = add(ColumnList(closed_quote_status_columns()));
    Section<ClosedQuote> period = add(ColumnList(closed_quote_period_columns()));
};

/// Neither text has a blank before WHERE. Behind a bracket that does no harm; in the plain dialect the join's last name
/// runs into it, and the database refuses the statement. That only the plain list has `quLines` is meant, too.
std::unique_ptr<Rows> open_lines(SessionState& state, const QuoteCriteria& criteria)
{
    const std::string clauses = criteria_clauses(state, criteria, " AND ");
    return stream_query(
        state,
        {Command::statement(
             "SELECT [Quote].[QuoteID],[Quote].[QuoteNumber],[Quote].[quDateTransfer],[Details].[deIType],"
             "[Details].[ItemID],[Details].[APItem],[Details].[deQuantity] - [Details].[deQtyTransfer] AS [BackOrder],"
             "[Details].[deUofM],[Quote].[AccPacID],[Quote].[CustomerID],[Quote].[quDateEnter],[Quote].[quPONumber],"
             "[Quote].[quDesc],[Quote].[quReference],[Quote].[quACCPACNum],[Quote].[quDateShip],[Quote].[quDateExpire],"
             "[Quote].[quCompany],[Quote].[quUserEnter],[Quote].[quDateModify],[Quote].[quUserModify],"
             "[Quote].[quLocation],[Quote].[quNotes],[Quote].[quShipToLoc],[Quote].[quShipVia],[Quote].[quShipViaDesc],"
             "[Quote].[quFOBPoint],[Details].[dePriceList],[Details].[deQuotedPrice],[Details].[deConvFactor],"
             "[Details].[deDesc],[Details].[deQuantity],[Details].[deDiscount],[Details].[deCost],"
             "[Details].[deLocation],[Details].[deCategory],[Details].[deShipDate],[Details].[deWeight],"
             "[Details].[deDiscPer],[Details].[deQtyTransfer],[Quote].[quCustomerType],[Quote].[CustFrom],"
             "[Quote].[quCurCode],[Quote].[quPriceList],[Quote].[quTaxGroup],[Quote].[quTermsCode],"
             "[Quote].[QuoteStatusID],[QuoteStatus].[qsCode],[QuoteStatus].[qsName],[QuoteStatus].[qsDescription] "
             "FROM [Quote] INNER JOIN "
             "[Details] ON [Quote].[QuoteID] = [Details].[QuoteID] INNER JOIN "
             "[QuoteStatus] ON [Quote].[QuoteStatusID] = [QuoteStatus].[QuoteStatusID]"
             "WHERE ([Quote].[quComplete] = 0) AND (NOT ([Quote].[quDateTransfer] IS NULL)) AND "
             "([Details].[deDType] = 20) AND ([Details].[deQuantity] > [Details].[deQtyTransfer])" +
             clauses +
             " ORDER BY [Details].[APItem],[Details].[deIType],[Details].[ItemID],[Quote].[quDateEnter],"
             "[Quote].[QuoteNumber];"),
         Command::statement(
             "SELECT Quote.QuoteID,Quote.QuoteNumber,Quote.quDateTransfer,Details.deIType,Details.ItemID,"
             "Details.APItem,Details.deQuantity - Details.deQtyTransfer AS BackOrder,Details.deUofM,Quote.AccPacID,"
             "Quote.CustomerID,Quote.quDateEnter,Quote.quPONumber,Quote.quDesc,Quote.quReference,Quote.quACCPACNum,"
             "Quote.quDateShip,Quote.quDateExpire,Quote.quCompany,Quote.quUserEnter,Quote.quDateModify,"
             "Quote.quUserModify,Quote.quLocation,Quote.quLines,Quote.quNotes,Quote.quShipToLoc,Quote.quShipVia,"
             "Quote.quShipViaDesc,Quote.quFOBPoint,Details.dePriceList,Details.deQuotedPrice,Details.deConvFactor,"
             "Details.deDesc,Details.deQuantity,Details.deDiscount,Details.deCost,Details.deLocation,"
             "Details.deCategory,Details.deShipDate,Details.deWeight,Details.deDiscPer,Details.deQtyTransfer,"
             "Quote.quCustomerType,Quote.CustFrom,Quote.quCurCode,Quote.quPriceList,Quote.quTaxGroup,"
             "Quote.quTermsCode,Quote.QuoteStatusID,QuoteStatus.qsCode,QuoteStatus.qsName,QuoteStatus.qsDescription "
             "FROM Quote INNER JOIN "
             "Details ON Quote.QuoteID = Details.QuoteID INNER JOIN "
             "QuoteStatus ON Quote.QuoteStatusID = QuoteStatus.QuoteStatusID"
             "WHERE (Quote.quComplete = 0) AND (NOT (Quote.quDateTransfer IS NULL)) AND (Details.deDType = 20) AND "
             "(Details.deQuantity > Details.deQtyTransfer)" +
             clauses + " ORDER BY Details.APItem,Details.deIType,Details.ItemID,Quote.quDateEnter,Quote.QuoteNumber")});
}

/// The currency of all amounts: the first row's in a multi-currency company, else the home currency.
std::string run_currency(ReportRun& run, const Rows& rows)
{
    auto& state = run.state();
    std::string currency;
    run.statements().attempt("currency", [&] {
        if (state.gMultiCurr) currency = trimmed_text(rows.value("quCurCode"));
    });
    return currency.empty() ? accounting(state).Company().HomeCurrency : currency;
}

/// Prices are looked up for no quote in particular: an earlier report's quote and lines are put aside.
class NoQuote {
public:
    explicit NoQuote(SessionState& state)
        : state_(state), quote_(std::exchange(state.gQuote, {})), lines_(std::exchange(state.gQuoteDetails, nullptr))
    {
    }
    NoQuote(const NoQuote&) = delete;
    NoQuote& operator=(const NoQuote&) = delete;
    ~NoQuote()
    {
        state_.gQuote = std::move(quote_);
        state_.gQuoteDetails = std::move(lines_);
    }

private:
    SessionState& state_;
    QuoteRecord quote_;
    std::shared_ptr<Recordset> lines_;
};

void write_rows(ReportRun& run, const BackOrderFields& fields, const QuoteCriteria& criteria, Rows& rows,
                DataPipeRecordset& pipe)
{
    auto& state = run.state();
    const NoQuote no_quote(state);
    const bool uses_quote_number = Use_VLNumber(state);
    std::string currency = run_currency(run, rows);
    CompanyBlock company{accounting(state).Company(), false};
    ClosedQuote quote{company.company, criteria, QueryRow(rows), uses_quote_number};
    QuoteCustomers customers(state, fields.customer);
    DetailRow line{state, currency, QueryRow(rows)};
    PipeWriter writer(state, pipe, run.statements());
    for (; !rows.at_eof(); rows.MoveNext()) {
        writer.row([&] {
            writer.write_once(fields.company, company);
            writer.write(fields.quote, quote);
            run.statements().attempt("customer",
                                     [&] { writer.write_values(fields.customer, customers.of(quote.row)); });
            writer.write(fields.terms, quote);
            writer.write(fields.currency, line);
            line.take_item(run.statements(), true);
            writer.write(fields.line, line);
            writer.write(fields.status, quote);
            writer.write_once(fields.period, quote);
        });
    }
}

}  // namespace

RunEnd Print_BackOrder(SessionState& state, const std::string& pReportString, bool pAllDates, int16_t pCustFrom,
                       const DateTime& pFrom, const DateTime& pTo, const std::string& pACCPACCust, int32_t pCustomerID,
                       bool pPreview, bool pExportIt)
{
    const QuoteCriteria criteria{pAllDates, CustomerFrom{pCustFrom}, pFrom, pTo, pACCPACCust, pCustomerID};
    const BackOrderFields fields;
    return run_list(
        state, kList, {pReportString, pPreview, pExportIt}, fields.fields(),
        [&](SessionState&) { return open_lines(state, criteria); },
        [&](ReportRun& run, Rows& rows, DataPipeRecordset& pipe) { write_rows(run, fields, criteria, rows, pipe); });
}

std::vector<PipeField> back_order_fields()
{
    return BackOrderFields().fields();
}

}  // namespace velora
