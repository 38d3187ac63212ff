#pragma once

#include <span>
#include <string>

#include "reports/address_block.h"
#include "reports/columns.h"

namespace velora {

/// What belongs to a quote as a whole: it stands on every row of the pipe and is worked out once.
struct QuoteDocument {
    SessionState& state;
    TaxSlots slots = {};
    int16_t slot_count = 0;
    std::string currency = {};  ///< of all amounts that the document shows

    [[nodiscard]] const QuoteRecord& quote() const { return state.gQuote; }
    /// An amount as the document shows it.
    [[nodiscard]] Value money(double amount);
};

/// The fields of quote header and customer, behind the company block.
std::span<const Column<QuoteDocument>> quote_header_columns();

/// The totals and taxes that close every row.
std::span<const Column<QuoteDocument>> quote_total_columns();

/// The addresses of the state's quote record.
AddressBlock quote_addresses(SessionState& state);

/// The quote's own taxes and currency, read from the state's quote record.
QuoteDocument load_quote_document(SessionState& state);

}  // namespace velora
