#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// Whose quotes a list is about; the numbers are those of the builders' argument.
enum class CustomerFrom : int16_t { Anybody = 0, Accounting = 1, Own = 2 };

/// Which quotes a list is about.
struct QuoteCriteria {
    bool all_dates = true;
    CustomerFrom customer_from = CustomerFrom::Anybody;
    DateTime from, to;
    std::string accounting_customer;
    int32_t customer_id = 0;
};

// The criteria as they stand in a statement of the dialect in use; blank for a criterion that was not asked for.
// `word` opens the clause: " AND " behind others, " WHERE " where it is the first.

std::string customer_clause(const SessionState& state, const QuoteCriteria& criteria, std::string_view word);
/// Of both ends, as far as the database's comparison goes; on SQL Server the last day counts to its end.
/// @param column  as the statement writes it; blank: the day of entry, written as all columns are
std::string period_clause(SessionState& state, const QuoteCriteria& criteria, std::string_view word,
                          std::string_view column = {});
/// The one and the other; only the first of them opens with `word`.
std::string criteria_clauses(SessionState& state, const QuoteCriteria& criteria, std::string_view word);

}  // namespace velora
