#pragma once

#include <string_view>

#include "reports/data_pipe.h"
#include "reports/quote_document.h"

namespace velora {

/// What a document says beside its table, for definitions that declare such parameters:
///   "Document Number"   for titles and file information
///   "Amount Pattern"    how the amounts of the currency are written: decimals and sign
///   "Amount Marks"      their decimal mark and mark of thousands, in the form of a locale
///   "Included Taxes"    the authorities whose tax is in the prices, separated by commas
/// Asks nothing of the database, shows no box, and leaves out what is not known. The lines of the state
/// come out without a place.
void set_document_parameters(SessionState& state, std::string_view number, std::string_view currency,
                             const TaxSlots& slots);

/// The same, of what a document has loaded.
void set_document_parameters(SessionState& state, const QuoteDocument& document);

/// Of a document without amounts: the quote number of its rows, and nothing where it has none.
void set_document_parameters(SessionState& state, const DataPipeRecordset& pipe);

}  // namespace velora
