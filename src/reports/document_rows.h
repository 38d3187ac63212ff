#pragma once

#include "reports/company_block.h"
#include "reports/detail_rows.h"
#include "reports/pipe_layout.h"
#include "reports/quote_document.h"
#include "reports/run_frame.h"

namespace velora {

/// The fields of a document that shows all lines of a quote: the quote itself, and what prints it with fields left out
/// or other values. Each list is the quote's own where a kind does not change it.
struct DocumentFields : PipeLayout {
    Section<CompanyBlock> company = add(ColumnList(company_columns()));
    Section<QuoteDocument> header;
    Section<AddressBlock> addresses;
    Section<DetailRow> details;
    Section<QuoteDocument> totals;

    DocumentFields(const ColumnList<QuoteDocument>& header_list, const ColumnList<AddressBlock>& address_list,
                   const ColumnList<DetailRow>& detail_list, const ColumnList<QuoteDocument>& total_list)
        : header(add(header_list)), addresses(add(address_list)), details(add(detail_list)), totals(add(total_list))
    {
    }
};

/// What the whole document shares.
struct LoadedDocument {
    QuoteDocument document;
    AddressBlock addresses;
};

/// Loads what belongs to the quote of the state's quote record: its lines, charges, taxes, addresses and totals.
LoadedDocument load_document(SessionState& state, int32_t quote);

/// Fills the pipe: a row for each detail line, then one for each charge.
/// @throws Fault 91 for a quote without lines, whatever charges it has
void write_document_rows(ReportRun& run, const DocumentFields& fields, LoadedDocument& loaded, DataPipeRecordset& pipe);

}  // namespace velora
