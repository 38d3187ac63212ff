#include "reports/quote_report.h"

#include "gateway/quote_record.h"
#include "reports/document_parameters.h"
#include "reports/document_rows.h"
#include "session/error_messengers.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr Builder kBuilder{"Print_Quote", kToleratedByQuotes};

struct QuoteFields : DocumentFields {
    QuoteFields() : DocumentFields(quote_header_columns(), address_columns(), detail_columns(), quote_total_columns())
    {
    }
};

RunEnd not_found(SessionState& state)
{
    tell(state,
         {"Quote Report Cancelled",
          "The selected Quote information could not be found.\r\nThe report will be cancelled.", Icon::Exclamation});
    return RunEnd::NotFound;
}

/// Quote number and bill-to name; a bill-to without a name leaves its place blank.
std::string export_name(const QuoteRecord& quote, const AddressBlock& addresses)
{
    const Value name = address_field(addresses.addresses.bill_to, "btName");
    return std::string(trimmed(quote.QuoteNumber)) + " - " + (name.is_null() ? std::string() : to_text(name));
}

}  // namespace

RunEnd Print_Quote(SessionState& state, int32_t pQuoteID, const std::string& pReportString, int16_t, bool pPreview,
                   bool pExportIt)
{
    return run_report(state, kBuilder, {pReportString, pPreview, pExportIt}, [&](ReportRun& run) {
        run.open_definition();
        const QuoteFields fields;
        DataPipeRecordset pipe(fields.fields(), state.log);
        if (!Fetch_QuoteInfo(state, state.gQuote, pQuoteID)) return not_found(state);
        LoadedDocument loaded = load_document(state, pQuoteID);
        write_document_rows(run, fields, loaded, pipe);
        set_document_parameters(state, loaded.document);
        run.attach(pipe);
        run.choose_printer();
        return run.route([&] { return export_name(state.gQuote, loaded.addresses); });
    });
}

std::vector<PipeField> quote_fields()
{
    return QuoteFields().fields();
}

}  // namespace velora
