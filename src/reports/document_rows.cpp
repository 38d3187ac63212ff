#include "reports/document_rows.h"

#include "pricing/charges.h"
#include "reports/detail_lines.h"
#include "reports/pipe_writer.h"
#include "reports/print_totals.h"

namespace velora {

LoadedDocument load_document(SessionState& state, int32_t quote)
{
    Get_DetailPrRecordset(state, quote);
    Get_MiscChargeInfo(state, state.gMiscCharges, quote, state.gQuote.quCurCode);
    QuoteDocument document = load_quote_document(state);
    AddressBlock addresses = quote_addresses(state);
    if (state.gQuoteDetails) Calculate_PrintTotals(state, quote, document.slot_count, document.slots);
    return {std::move(document), std::move(addresses)};
}

void write_document_rows(ReportRun& run, const DocumentFields& fields, LoadedDocument& loaded, DataPipeRecordset& pipe)
{
    auto& state = run.state();
    auto& lines = opened(state.gQuoteDetails, "gQuoteDetails");
    const size_t line_count = lines.RecordCount();
    // A quote without charges has an array without storage, whose bound is a fault that drops the statement.
    if (!state.gMiscCharges) run.statements().settle("charges", fault::kSubscript);
    const size_t charge_count = state.gMiscCharges ? state.gMiscCharges->size() : 0;

    CompanyBlock company{loaded.addresses.company, true};
    DetailRow row{state, loaded.document.currency, QueryRow(lines)};
    row.customer_type = state.gQuote.quCustomerType;
    PipeWriter writer(state, pipe, run.statements(), line_count + charge_count);
    const auto write_row = [&](auto take) {
        writer.row([&] {
            writer.write_once(fields.company, company);
            writer.write_once(fields.header, loaded.document);
            writer.write_once(fields.addresses, loaded.addresses);
            take();
            writer.write(fields.details, row);
            writer.write_once(fields.totals, loaded.document);
        });
    };
    for (size_t at = 1; at <= line_count; ++at) {
        write_row([&] {
            lines.AbsolutePosition(at);
            row.take_line(run.statements());
        });
    }
    for (size_t at = 0; at < charge_count; ++at) {
        write_row([&] { row.take_charge((*state.gMiscCharges)[at], run.statements()); });
    }
}

}  // namespace velora
