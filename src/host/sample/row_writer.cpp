#include "host/sample/row_writer.h"

#include <sqlite3.h>

#include <stdexcept>

namespace velora::sample {
namespace {

std::string insert_sql(std::string_view table, const Row& row)
{
    std::string names;
    std::string marks;
    for (const auto& [name, value] : row) {
        names += (names.empty() ? "" : ",") + name;
        marks += marks.empty() ? "?" : ",?";
    }
    return "INSERT INTO \"" + std::string(table) + "\" (" + names + ") VALUES (" + marks + ")";
}

void bind(sqlite3_stmt* statement, int position, const Value& value)
{
    switch (value.type()) {
        case Value::Type::Null:
            sqlite3_bind_null(statement, position);
            return;
        case Value::Type::Boolean:  // flags are 0 and 1 in both stores
            sqlite3_bind_int(statement, position, to_bool(value) ? 1 : 0);
            return;
        case Value::Type::Integer:
            sqlite3_bind_int64(statement, position, *value.get_if<int64_t>());
            return;
        case Value::Type::Date:
        case Value::Type::Text: {
            const std::string text = to_text(value);
            sqlite3_bind_text(statement, position, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
            return;
        }
        default:
            sqlite3_bind_double(statement, position, to_number(value));
    }
}

}  // namespace

void RowWriter::CloseDatabase::operator()(sqlite3* database) const noexcept
{
    sqlite3_close_v2(database);
}

void RowWriter::FinalizeStatement::operator()(sqlite3_stmt* statement) const noexcept
{
    sqlite3_finalize(statement);
}

RowWriter::RowWriter(const std::filesystem::path& path)
{
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    database_.reset(opened);
    if (code != SQLITE_OK) fail("opening " + path.string());
    execute("BEGIN");
}

RowWriter::~RowWriter() = default;

void RowWriter::insert(std::string_view table, const Row& row)
{
    sqlite3_stmt* statement = prepared(insert_sql(table, row));
    int position = 0;
    for (const auto& cell : row) bind(statement, ++position, cell.second);
    const int code = sqlite3_step(statement);
    sqlite3_reset(statement);
    if (code != SQLITE_DONE) fail("writing a row of " + std::string(table));
}

void RowWriter::commit()
{
    execute("COMMIT");
}

sqlite3_stmt* RowWriter::prepared(const std::string& sql)
{
    Statement& statement = statements_[sql];
    if (!statement) {
        sqlite3_stmt* made = nullptr;
        const int code = sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &made, nullptr);
        statement.reset(made);
        if (code != SQLITE_OK) fail("preparing " + sql);
    }
    return statement.get();
}

void RowWriter::execute(const char* sql)
{
    if (sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail(sql);
}

void RowWriter::fail(std::string_view doing) const
{
    throw std::runtime_error(std::string(doing) + ": " +
                             (database_ ? sqlite3_errmsg(database_.get()) : "out of memory"));
}

}  // namespace velora::sample
