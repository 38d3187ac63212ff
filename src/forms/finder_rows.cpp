#include "forms/finder_rows.h"

#include <span>

#include "session/query.h"
#include "session/value_helpers.h"
#include "values/text.h"

namespace velora::forms {

namespace {

struct Column {
    std::string_view heading;
    std::string_view name;
    bool is_date = false;
};

struct Table {
    std::string_view name;
    std::string_view key;
    std::span<const Column> columns;
    std::string_view owner = {};  ///< the column of the user to whom a row belongs
};

// clang-format off
constexpr auto kQuoteColumns = std::to_array<Column>({
    {"Quote Number", "QuoteNumber"}, {"Customer", "CustName"}, {"Description", "quDesc"}, {"Contact", "CustContact"},
    {"Quote Date", "quDateEnter", true}});
constexpr auto kOrderColumns = std::to_array<Column>({
    {"Quote Number", "QuoteNumber"}, {"Order Number", "quACCPACNum"}, {"Customer", "CustName"},
    {"Description", "quDesc"}, {"Contact", "CustContact"}, {"Quote Date", "quDateEnter", true}});
constexpr auto kCustomerColumns = std::to_array<Column>({
    {"Customer Number", "CustomerNumber"}, {"Customer", "cuFullName"}, {"Short Name", "cuShortName"},
    {"Contact", "cuContact"}, {"City", "cuCity"}});
constexpr Table kQuotes{"Quote", "QuoteID", kQuoteColumns, "quUserEnter"};
constexpr Table kOrders{"Quote", "QuoteID", kOrderColumns, "quUserEnter"};
constexpr Table kCustomers{"Customer", "CustomerID", kCustomerColumns};
// clang-format on

/// Rows of a table of the product's database, read on as they are asked for.
class TableRows final : public FinderRows {
public:
    TableRows(SessionState& state, const Table& table, bool own_only)
        : state_(state), table_(table), own_only_(own_only)
    {
    }
    ~TableRows() override { close(); }

    [[nodiscard]] std::vector<std::string> columns() const override
    {
        std::vector<std::string> headings;
        for (const Column& column : table_.columns) headings.emplace_back(column.heading);
        return headings;
    }

    [[nodiscard]] Messenger messenger() const override { return ErrorADO; }

    void start(const std::string& search, size_t column, bool descending) override
    {
        close();
        const Command query = command(trimmed(search), column, descending);
        rows_ = stream_query(state_, {query, query});
        if (!move_to_first(*rows_)) close();
    }

    std::vector<FinderRow> next(size_t most) override
    {
        std::vector<FinderRow> page;
        while (rows_ && page.size() < most) {
            page.push_back(row());
            rows_->MoveNext();
            if (rows_->at_eof()) close();
        }
        return page;
    }

private:
    void close()
    {
        if (rows_) rows_->Close();
        rows_.reset();
    }

    [[nodiscard]] Command command(std::string_view search, size_t column, bool descending) const
    {
        std::string text = "SELECT " + std::string(table_.key);
        std::string found;
        Command query = Command::statement("");
        for (const Column& each : table_.columns) {
            text.append(",").append(each.name);
            if (each.is_date) continue;
            found.append(found.empty() ? "" : " OR ").append(each.name).append(" LIKE ? ESCAPE '!'");
            query.parameters.push_back({std::string(each.name), pattern_that_holds(search)});
        }
        if (search.empty()) {
            found.clear();
            query.parameters.clear();
        }
        text.append(" FROM ").append(table_.name);
        std::string where = found.empty() ? "" : " WHERE (" + found + ")";
        if (own_only_ && !table_.owner.empty()) {
            where.append(where.empty() ? " WHERE (" : " AND (").append(table_.owner).append("=?)");
            query.parameters.push_back({std::string(table_.owner), std::string(trimmed(state_.gSessUser))});
        }
        const auto& order = table_.columns[column < table_.columns.size() ? column : 0];
        query.text = text + where + " ORDER BY " + std::string(order.name) + (descending ? " DESC" : "");
        return query;
    }

    [[nodiscard]] FinderRow row() const
    {
        const auto text = [](const Value& value) { return value.is_null() ? std::string() : trimmed_text(value); };
        FinderRow row{text(rows_->value(0)), {}};
        for (size_t at = 0; at < table_.columns.size(); ++at) {
            Value cell = rows_->value(at + 1);
            row.cells.push_back(table_.columns[at].is_date ? Display_Date(state_, cell) : text(cell));
        }
        return row;
    }

    SessionState& state_;
    const Table& table_;
    bool own_only_;
    std::unique_ptr<Rows> rows_;
};

}  // namespace

std::string pattern_that_holds(std::string_view search)
{
    std::string pattern = "%";
    for (const char c : search) {
        if (c == '%' || c == '_' || c == '[' || c == '!') pattern += '!';
        pattern += c;
    }
    return pattern + "%";
}

std::unique_ptr<FinderRows> quote_rows(SessionState& state, bool orders)
{
    return std::make_unique<TableRows>(state, orders ? kOrders : kQuotes, state.gOwnQuotes);
}

std::unique_ptr<FinderRows> customer_rows(SessionState& state)
{
    return std::make_unique<TableRows>(state, kCustomers, false);
}

}  // namespace velora::forms
