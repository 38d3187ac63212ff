#pragma once

#include "reports/company_block.h"
#include "reports/pipe_layout.h"
#include "reports/quote_criteria.h"
#include "reports/quote_customers.h"
#include "reports/run_frame.h"

namespace velora {

/// The quote in hand, on a row of a query over quotes.
struct ClosedQuote {
    const CompanyInfo& company;
    const QuoteCriteria& criteria;
    QueryRow row;
    bool uses_quote_number = false;  ///< what stands for the number of the accounting order
};

// The closed quote row: what the lists of quotes show of one, in the order in which it stands in the pipe. The tables
// are those of the win loss report; another kind leaves out, adds and changes.

std::span<const Column<ClosedQuote>> closed_quote_columns();           ///< 19, before those of the customer
std::span<const Column<ClosedQuote>> closed_quote_customer_columns();  ///< 25, behind: what the quote says of him
std::span<const Column<ClosedQuote>> closed_quote_status_columns();    ///< 4
std::span<const Column<ClosedQuote>> closed_quote_period_columns();    ///< 3, the criteria themselves
/// 9, of a row that also holds why the quote was lost.
std::span<const Column<ClosedQuote>> lost_reason_columns();

/// The fields of a list of quotes: a kind hands in the parts that it has changed.
struct ClosedQuoteFields : PipeLayout {
    Section<CompanyBlock> company = add(list_company_columns());
    Section<ClosedQuote> quote;
    Section<CustomerSource> customer;
    Section<ClosedQuote> rest;
    Section<ClosedQuote> period;

    /// @param rest_list  behind the customer and before the period
    ClosedQuoteFields(const ColumnList<ClosedQuote>& quote_list, const ColumnList<CustomerSource>& customer_list,
                      const ColumnList<ClosedQuote>& rest_list)
        : quote(add(quote_list)),
          customer(add(customer_list)),
          rest(add(rest_list)),
          period(add(ColumnList<ClosedQuote>(closed_quote_period_columns())))
    {
    }
};

/// Fills the pipe: a row for each row of the query.
void write_closed_quotes(ReportRun& run, const ClosedQuoteFields& fields, ClosedQuote quote, Rows& rows,
                         DataPipeRecordset& pipe);

}  // namespace velora
