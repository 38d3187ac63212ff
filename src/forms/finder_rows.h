#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "forms/controls/lists.h"
#include "session/error_messengers.h"

namespace velora::forms {

/// One row of a finder: what is chosen by it, and what is shown. The first cell is the number.
struct FinderRow {
    std::string key;
    ListView::Row cells;
};

/// What a finder looks through. The rows come page by page and are never all in memory.
class FinderRows {
public:
    virtual ~FinderRows() = default;

    [[nodiscard]] virtual std::vector<std::string> columns() const = 0;
    /// Who tells what fails on the way to the rows.
    [[nodiscard]] virtual Messenger messenger() const = 0;
    /// Begins anew with the rows that hold `search` in one of their texts, letter case aside, in the order of a column.
    virtual void start(const std::string& search, size_t column, bool descending) = 0;
    /// The next rows, at most so many; none at the end.
    virtual std::vector<FinderRow> next(size_t most) = 0;
};

/// The text as a pattern of LIKE, with "!" as its escape, that finds it anywhere.
std::string pattern_that_holds(std::string_view search);

/// Quotes by number; with orders their number in the accounting system too.
std::unique_ptr<FinderRows> quote_rows(SessionState& state, bool orders);
/// The product's own customers by number.
std::unique_ptr<FinderRows> customer_rows(SessionState& state);
/// The customers of the accounting system by number.
std::unique_ptr<FinderRows> accounting_customer_rows(SessionState& state);

}  // namespace velora::forms
