#include "reports/quote_criteria.h"

#include "gateway/database_lookups.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

std::string quote_column(const SessionState& state, const std::string& name)
{
    return state.gEngine == eDBSQLServer ? "[Quote].[" + name + "]" : "Quote." + name;
}

}  // namespace

std::string customer_clause(const SessionState& state, const QuoteCriteria& criteria, std::string_view word)
{
    std::string clause(word);
    switch (criteria.customer_from) {
        case CustomerFrom::Accounting:
            return clause + "(" + quote_column(state, "AccPacID") + " = '" +
                   doubled_quotes(trimmed(criteria.accounting_customer)) + "')";
        case CustomerFrom::Own:
            return clause + "(" + quote_column(state, "CustomerID") + " = " + std::to_string(criteria.customer_id) +
                   ")";
        default:
            return {};
    }
}

std::string period_clause(SessionState& state, const QuoteCriteria& criteria, std::string_view word,
                          std::string_view column)
{
    if (criteria.all_dates) return {};
    const bool by_server = state.gEngine == eDBSQLServer;
    const auto first = by_server ? SQLServer_DateFormat(state, criteria.from, false) : criteria.from.date_only().iso();
    const auto last = by_server ? SQLServer_DateFormat(state, criteria.to, true) : criteria.to.date_only().iso();
    const auto entered = column.empty() ? quote_column(state, "quDateEnter") : std::string(column);
    return std::string(word) + "(" + entered + " BETWEEN '" + first + "' AND  '" + last + "')";
}

std::string criteria_clauses(SessionState& state, const QuoteCriteria& criteria, std::string_view word)
{
    const std::string customer = customer_clause(state, criteria, word);
    return customer + period_clause(state, criteria, customer.empty() ? word : " AND ");
}

}  // namespace velora
