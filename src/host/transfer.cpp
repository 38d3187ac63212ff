#include "host/transfer.h"

#include <algorithm>
#include <limits>

#include "adapters/odbc/server_store.h"
#include "adapters/odbc_text/wide_text.h"
#include "adapters/sqlite/connection.h"
#include "host/host_error.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora {
namespace {

using stores::ColumnType;
using stores::NamedColumn;
using stores::SchemaTable;
using stores::ServerKind;

constexpr const char* kTitle = "Transfer";
constexpr size_t kMostCharacters = 255;  // of a text column on a server

/// Why a cell has no place in its column on the server; empty for one that has.
std::string misfit_of(const Value& cell, ColumnType type, ServerKind server)
{
    if (cell.is_null()) return {};
    const bool is_number = cell.type() != Value::Type::Text && cell.type() != Value::Type::Date;
    switch (type) {
        case ColumnType::Integer: {
            if (!is_number) return "is no number";
            const double number = to_number(cell);
            const bool fits = number >= std::numeric_limits<int32_t>::min() &&
                              number <= std::numeric_limits<int32_t>::max() &&
                              number == static_cast<double>(static_cast<int64_t>(number));
            return fits ? "" : "is no whole number of 32 bits";
        }
        case ColumnType::Real:
            return is_number ? "" : "is no number";
        case ColumnType::Money:
            return cell.type() == Value::Type::Fixed ? "" : "is no amount of four decimals";
        case ColumnType::Date:
            return cell.type() == Value::Type::Date ? "" : "is no date";
        default:
            break;
    }
    const auto text = to_text(cell);
    if (odbc::from_wide(odbc::to_wide(text)) != text) return "is no text in UTF-8";
    if (server == ServerKind::PostgreSql && text.find('\0') != std::string::npos) return "holds a zero byte";
    if (type == ColumnType::LongText || server == ServerKind::PostgreSql) return {};
    return character_count(text) <= kMostCharacters ? "" : "is longer than 255 characters";
}

Command::Parameter parameter_of(const Value& cell, ColumnType type)
{
    switch (type) {
        case ColumnType::Integer:
        case ColumnType::Real:
        case ColumnType::Money:
        case ColumnType::Date:
            return {{}, cell};
        default:
            return {{}, cell.is_null() ? cell : Value(to_text(cell))};
    }
}

/// The rows of the folder's file, all reads in one state of it.
class Source {
public:
    explicit Source(const std::filesystem::path& file) : connection_(open_sqlite(file.string()))
    {
        connection_->Execute("BEGIN");
    }

    /// Hands the cells of each row to `take`, in the order of the columns.
    template <class Take>
    void each_row(const SchemaTable& table, const std::vector<NamedColumn>& columns, Take take)
    {
        const auto rows = connection_->Stream(Command::statement("SELECT * FROM \"" + std::string(table.name) + "\""));
        if (rows->is_empty()) return;
        std::vector<size_t> places;
        for (const auto& column : columns) places.push_back(rows->column(column.name));
        std::vector<const Value*> cells(columns.size());
        for (; !rows->at_eof(); rows->MoveNext()) {
            for (size_t at = 0; at < places.size(); ++at) cells[at] = &rows->value(places[at]);
            take(cells);
        }
    }

private:
    std::unique_ptr<Connection> connection_;
};

/// One transfer under way.
class Copy {
public:
    explicit Copy(const Transfer& transfer)
        : transfer_(transfer), source_(transfer.file), server_(open_server_store(transfer.connection))
    {
    }

    size_t run()
    {
        check_rows();
        find_tables();
        try {
            if (server_->rolls_back_tables()) server_->begin();
            make_tables();
            if (!server_->rolls_back_tables()) server_->begin();
            for (const SchemaTable& table : transfer_.tables) copy_table(table);
            server_->commit();
        } catch (const Fault& fault) {
            throw HostError(
                kTitle, "The " + transfer_.store + " could not be copied. " + fault.description() + "\r\n" + undo());
        }
        return done_;
    }

private:
    void check_rows();
    void find_tables();
    void make_tables();
    void copy_table(const SchemaTable& table);
    std::string undo() noexcept;

    const Transfer& transfer_;
    Source source_;
    std::unique_ptr<ServerStore> server_;
    std::vector<std::string> missing_;  ///< tables that were not there
    size_t total_ = 0;
    size_t done_ = 0;
};

void Copy::check_rows()
{
    for (const SchemaTable& table : transfer_.tables) {
        const auto columns = table.named_columns();
        size_t row = 0;
        source_.each_row(table, columns, [&](const std::vector<const Value*>& cells) {
            ++row;
            for (size_t at = 0; at < cells.size(); ++at) {
                const auto misfit = misfit_of(*cells[at], columns[at].type, server_->kind());
                if (misfit.empty()) continue;
                throw HostError(kTitle, "Nothing was copied: in row " + std::to_string(row) + " of the table " +
                                            std::string(table.name) + ", the value of " + columns[at].name + " " +
                                            misfit + ": \"" + std::string(cut_to_characters(to_text(*cells[at]), 60)) +
                                            "\".");
            }
        });
        total_ += row;
    }
}

void Copy::find_tables()
{
    std::string filled;
    for (const SchemaTable& table : transfer_.tables) {
        const std::string name(table.name);
        if (!server_->has_table(name)) {
            missing_.push_back(name);
        } else if (server_->row_count(name) > 0) {
            filled += (filled.empty() ? "" : ", ") + name;
        }
    }
    if (filled.empty() || transfer_.replace) return;
    throw HostError(kTitle, "Nothing was copied: these tables of the " + transfer_.store +
                                " hold rows on the server already: " + filled +
                                ". --replace takes their rows away and copies those of the folder.");
}

void Copy::make_tables()
{
    for (const auto& statement : stores::preparing_statements(server_->kind())) server_->run(statement);
    for (const SchemaTable& table : transfer_.tables) {
        if (std::ranges::find(missing_, table.name) == missing_.end()) continue;
        for (const auto& statement : stores::table_statements(server_->kind(), table)) server_->run(statement);
    }
    if (!transfer_.with_procedures) return;
    for (const auto& statement : stores::procedure_statements(server_->kind())) server_->run(statement);
}

void Copy::copy_table(const SchemaTable& table)
{
    const std::string name(table.name);
    const auto written = stores::server_name(server_->kind(), name);
    if (transfer_.replace) server_->run("DELETE FROM " + written);
    const auto columns = table.named_columns();
    std::string names;
    std::string marks;
    for (const auto& column : columns) {
        names += (names.empty() ? "" : ", ") + stores::server_name(server_->kind(), column.name);
        marks += marks.empty() ? "?" : ", ?";
    }
    const std::string insert = "INSERT INTO " + written + " (" + names + ") VALUES (" + marks + ")";
    int64_t rows = 0;
    source_.each_row(table, columns, [&](const std::vector<const Value*>& cells) {
        std::vector<Command::Parameter> parameters;
        for (size_t at = 0; at < cells.size(); ++at) parameters.push_back(parameter_of(*cells[at], columns[at].type));
        server_->insert(insert, parameters);
        ++rows;
        if (transfer_.on_rows) transfer_.on_rows(++done_, total_);
    });
    const auto there = server_->row_count(name);
    if (there == rows) return;
    throw Fault(fault::kDatabase, "The table " + name + " holds " + std::to_string(there) +
                                      " rows on the server, and " + std::to_string(rows) + " in the folder.");
}

/// Takes back what was done; answers with what stands on the server now.
std::string Copy::undo() noexcept
try {
    server_->roll_back();
    if (server_->rolls_back_tables()) return "The server holds what it held before.";
    std::string left;
    for (const auto& name : missing_) {
        try {
            server_->run("DROP TABLE IF EXISTS " + stores::server_name(server_->kind(), name));
        } catch (const Fault&) {
            left += (left.empty() ? "" : ", ") + name;
        }
    }
    if (left.empty()) return "The server's tables and rows are those that it held before.";
    return "The rows that the server held before stand there; these tables were made and could not be taken away: " +
           left + ".";
} catch (const std::exception&) {
    return "What stands on the server now could not be found out.";
}

}  // namespace

size_t run_transfer(const Transfer& transfer)
{
    try {
        return Copy(transfer).run();
    } catch (const Fault& fault) {
        throw HostError(
            kTitle, "The " + transfer.store + " could not be copied, and nothing was changed. " + fault.description());
    }
}

}  // namespace velora
