#include "host/sample_company.h"

#include <algorithm>
#include <charconv>

#include "adapters/sqlite/connection.h"
#include "host/csv.h"
#include "host/host_error.h"
#include "values/fault.h"

namespace velora {
namespace {

namespace fs = std::filesystem;
using stores::ColumnType;
using stores::NamedColumn;
using stores::SchemaTable;

[[noreturn]] void fail(const fs::path& file, size_t line, const std::string& what)
{
    throw HostError("Sample Company", "The file \"" + file.string() + "\", line " + std::to_string(line) + ": " + what);
}

template <class Number>
std::optional<Number> whole_as(const std::string& text)
{
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// The cell as its column holds it; none for a text that is no number where one has to stand.
std::optional<Value> value_of(const std::string& cell, ColumnType type)
{
    if (cell == "NULL") return Value();
    switch (type) {
        case ColumnType::Text:
        case ColumnType::LongText:
        case ColumnType::IsoDate:
        case ColumnType::Any:
            return Value(cell);
        case ColumnType::Date:
            return cell.empty() ? Value() : Value(cell);
        case ColumnType::Integer:
            if (cell.empty()) return Value();
            if (const auto number = whole_as<int64_t>(cell)) return Value(*number);
            return std::nullopt;
        default:
            if (cell.empty()) return Value();
            if (const auto number = whole_as<double>(cell)) return Value(*number);
            return std::nullopt;
    }
}

/// Writes the rows of one file into its table.
class TableFiller {
public:
    TableFiller(const SchemaTable& table, fs::path file, Connection& store)
        : table_(table), file_(std::move(file)), store_(store)
    {
    }

    void fill()
    {
        const auto rows = read_csv_rows(file_);
        if (rows.empty()) fail(file_, 1, "the first line has to name the columns.");
        read_head(rows.front());
        for (const CsvRow& row : std::span(rows).subspan(1)) write(row);
    }

private:
    void read_head(const CsvRow& head)
    {
        const auto known = table_.named_columns();
        std::string names;
        std::string marks;
        for (const std::string& name : head.cells) {
            const auto column = std::ranges::find(known, name, &NamedColumn::name);
            if (column == known.end()) {
                fail(file_, head.line, "the table " + std::string(table_.name) + " has no column \"" + name + "\".");
            }
            columns_.push_back(*column);
            names += (names.empty() ? "\"" : ",\"") + name + "\"";
            marks += marks.empty() ? "?" : ",?";
        }
        statement_ = "INSERT INTO \"" + std::string(table_.name) + "\" (" + names + ") VALUES (" + marks + ")";
    }

    void write(const CsvRow& row)
    {
        if (row.cells.size() != columns_.size()) {
            fail(file_, row.line,
                 "there are " + std::to_string(row.cells.size()) + " values for " + std::to_string(columns_.size()) +
                     " columns.");
        }
        Command insert = Command::statement(statement_);
        for (size_t at = 0; at < columns_.size(); ++at) {
            auto value = value_of(row.cells[at], columns_[at].type);
            if (!value) {
                fail(file_, row.line,
                     "\"" + row.cells[at] + "\" is no number for the column " + columns_[at].name + ".");
            }
            insert.parameters.push_back({{}, std::move(*value)});
        }
        store_.Stream(insert);
    }

    const SchemaTable& table_;
    fs::path file_;
    Connection& store_;
    std::vector<NamedColumn> columns_;
    std::string statement_;
};

void require_tables_of(const fs::path& folder, std::span<const SchemaTable> tables)
{
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() != ".csv") continue;
        if (std::ranges::find(tables, entry.path().stem().string(), &SchemaTable::name) != tables.end()) continue;
        throw HostError("Sample Company", "The file \"" + entry.path().string() + "\" is of no table.");
    }
}

}  // namespace

void fill_from_csv(const fs::path& store, std::span<const SchemaTable> tables, const fs::path& folder)
{
    require_tables_of(folder, tables);
    const auto connection = open_sqlite(store.string());
    connection->Execute("BEGIN");
    for (const SchemaTable& table : tables) {
        const fs::path file = folder / (std::string(table.name) + ".csv");
        if (fs::exists(file)) TableFiller(table, file, *connection).fill();
    }
    connection->Execute("COMMIT");
}

}  // namespace velora
