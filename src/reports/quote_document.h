#pragma once

#include <span>
#include <string>

#include "gateway/addresses.h"
#include "reports/columns.h"

namespace velora {

/// What belongs to a quote as a whole: it stands on every row of the pipe and is worked out once.
struct QuoteDocument {
    SessionState& state;
    DocumentAddresses addresses = {};
    TaxSlots slots = {};
    int16_t slot_count = 0;
    std::string currency = {};  ///< of all amounts that the document shows

    [[nodiscard]] const QuoteRecord& quote() const { return state.gQuote; }
    /// An amount as the document shows it.
    [[nodiscard]] Value money(double amount);
    /// An address field; null when the address has no row. @throws Fault 91 when there is no address at all
    [[nodiscard]] Value bill_to(std::string_view column) const;
    [[nodiscard]] Value ship_to(std::string_view column) const;
    [[nodiscard]] Value phone(const Value& number) const;
};

/// The fields of quote header, customer and addresses, behind the company block.
std::span<const Column<QuoteDocument>> quote_header_columns();

/// The totals and taxes that close every row.
std::span<const Column<QuoteDocument>> quote_total_columns();

/// The quote's own taxes, addresses and currency, read from the state's quote record.
QuoteDocument load_quote_document(SessionState& state);

}  // namespace velora
