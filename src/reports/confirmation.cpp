#include "reports/confirmation.h"

#include "gateway/quote_record.h"
#include "reports/document_parameters.h"
#include "reports/document_rows.h"
#include "session/company.h"
#include "session/error_messengers.h"

namespace velora {

namespace {

constexpr Builder kBuilder{"Print_Confirmation", kToleratedByOrders};
constexpr Mark kMark{"UPDATE [Quote] SET [quPrConfirm] = 1 WHERE ([QuoteID] = ",
                     "UPDATE Quote SET quPrConfirm = 1 WHERE (QuoteID = "};

/// Charges are not numbered on a confirmation.
Outcome line_number(DetailRow& r)
{
    return r.kind == LineKind::Charge ? Outcome::unwritten() : as_stored<"Line">(r);
}

/// Of the price in quote units: meant, neither the quantity nor the pricing unit enters, as they do on the quote.
Outcome discount_percent(DetailRow& r)
{
    if (r.kind != LineKind::Item) return Outcome::unwritten();
    return r.percent(r.row.number<"deDiscount">() / (r.row.number<"deQuotedPrice">() * r.row.number<"deConvFactor">()));
}

Outcome printed_before(QuoteDocument& d)
{
    return int32_t{d.quote().quPrConfirm ? 1 : 0};
}

ColumnList<QuoteDocument> header_columns()
{
    return ColumnList(quote_header_columns())
        .leave_out({"Date Last Modified", "Last Modified By", "Territory"})
        .leave_out_from("Customer Discount Type", "Customer Salesperson Name5");
}

ColumnList<DetailRow> line_columns()
{
    return ColumnList(detail_columns())
        .leave_out_from("Detail Item Cost", "Detail GL Acct Description")
        .leave_out({"Detail Item Comm/Ins"})
        .resize("Detail Desc", 100)
        .revalue("Detail Line", line_number)
        .revalue("Detail Discount Percent", discount_percent);
}

ColumnList<QuoteDocument> total_columns()
{
    return ColumnList(quote_total_columns())
        .leave_out_from("Quote Cost", "Quote Margin")
        .append({{"Reprint", ado::TinyInt, 0, printed_before}});
}

struct ConfirmationFields : DocumentFields {
    ConfirmationFields() : DocumentFields(header_columns(), order_address_columns(), line_columns(), total_columns()) {}
};

RunEnd not_found(SessionState& state)
{
    tell(state,
         {"Quote Report Cancelled",
          "The selected Quote Information Could not be found.\r\nThe report will be cancelled.", Icon::Exclamation});
    return RunEnd::NotFound;
}

}  // namespace

RunEnd Print_Confirmation(SessionState& state, int32_t pQuoteID, const std::string& pReportString, bool pPreview,
                          bool pExportIt)
{
    return run_report(state, kBuilder, {pReportString, pPreview, pExportIt}, [&](ReportRun& run) {
        run.open_definition();
        const ConfirmationFields fields;
        DataPipeRecordset pipe(fields.fields(), state.log);
        if (!Fetch_QuoteInfo(state, state.gQuote, pQuoteID)) return not_found(state);
        LoadedDocument loaded = load_document(state, pQuoteID);
        write_document_rows(run, fields, loaded, pipe);
        set_document_parameters(state, loaded.document);
        run.attach(pipe);
        run.choose_printer([&] { return to_text(company_default(state, "mdOCPrintName")); });
        const RunEnd end = run.route([&] { return document_name(pipe, "Order Confirmation"); });
        run.mark(kMark, pQuoteID, end);
        return end;
    });
}

std::vector<PipeField> confirmation_fields()
{
    return ConfirmationFields().fields();
}

}  // namespace velora
