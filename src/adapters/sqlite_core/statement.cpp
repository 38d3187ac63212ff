#include "adapters/sqlite_core/statement.h"

#include <sqlite3.h>

#include <cmath>

#include "adapters/sqlite_core/query_guard.h"
#include "values/text.h"

namespace velora::sqlite {

namespace {

// Fixed point with four places in 64 bits; more than this does not fit and stays a plain number.
constexpr double kMostMoney = 9.2e14;

std::string_view text_of(sqlite3_stmt* statement, int column)
{
    const auto* text = static_cast<const char*>(sqlite3_column_blob(statement, column));
    return {text != nullptr ? text : "", static_cast<size_t>(sqlite3_column_bytes(statement, column))};
}

bool is_blank(std::string_view rest)
{
    return rest.find_first_not_of(" \t\r\n;") == std::string_view::npos;
}

/// Why the driver refused: the guard's reason where there is one, else the driver's.
std::string worded(const QueryGuard* guard, const char* message)
{
    return guard != nullptr && !guard->reason().empty() ? guard->reason() : message;
}

}  // namespace

Statement::Statement(const Database& database, const std::string& sql) : guard_(database.guard())
{
    const QueryGuard::Work work(guard_);
    sqlite3_stmt* handle = nullptr;
    const char* rest = nullptr;
    const int size = static_cast<int>(sql.size());
    const int status =
        sqlite3_prepare_v3(database.handle(), sql.c_str(), size + 1, SQLITE_PREPARE_PERSISTENT, &handle, &rest);
    handle_.reset(handle);
    if (status != SQLITE_OK) throw DriverError(status, worded(guard_, sqlite3_errmsg(database.handle())));
    if (handle == nullptr) throw DriverError(SQLITE_ERROR, "there is no statement in the text");
    if (!is_blank(rest)) throw DriverError(SQLITE_ERROR, "more than one statement in the text");
    const int columns = sqlite3_column_count(handle);
    for (int column = 0; column < columns; ++column) {
        kinds_.push_back(kind_of(declared_type(static_cast<size_t>(column))));
    }
}

Statement::CellKind Statement::kind_of(const std::string& type)
{
    if (type.starts_with("date") || type.starts_with("timestamp")) return CellKind::Date;
    return type == "money" ? CellKind::Money : CellKind::Plain;
}

void Statement::bind(int mark, const Value& value)
{
    auto* handle = handle_.get();
    int status = SQLITE_OK;
    const auto bind_text = [&](std::string_view text) {
        return sqlite3_bind_text(handle, mark, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
    };
    switch (value.type()) {
        case Value::Type::Null:
            status = sqlite3_bind_null(handle, mark);
            break;
        case Value::Type::Boolean:
            status = sqlite3_bind_int(handle, mark, *value.get_if<bool>() ? 1 : 0);
            break;
        case Value::Type::Integer:
            status = sqlite3_bind_int64(handle, mark, *value.get_if<int64_t>());
            break;
        case Value::Type::Text:
            status = bind_text(*value.get_if<std::string>());
            break;
        case Value::Type::Date:
            status = bind_text(value.get_if<DateTime>()->iso());
            break;
        default:
            status = sqlite3_bind_double(handle, mark, to_number(value));
    }
    if (status != SQLITE_OK) fail();
}

int Statement::mark_count() const
{
    return sqlite3_bind_parameter_count(handle_.get());
}

bool Statement::step()
{
    const QueryGuard::Work work(guard_);
    const int status = sqlite3_step(handle_.get());
    if (status == SQLITE_ROW) return true;
    if (status != SQLITE_DONE) fail();
    return false;
}

void Statement::reset() noexcept
{
    rewind();
    sqlite3_clear_bindings(handle_.get());
}

void Statement::rewind() noexcept
{
    sqlite3_reset(handle_.get());
}

const std::shared_ptr<const ColumnNames>& Statement::columns() const
{
    if (columns_) return columns_;
    std::vector<std::string> names;
    for (size_t column = 0; column < column_count(); ++column) {
        names.emplace_back(sqlite3_column_name(handle_.get(), static_cast<int>(column)));
    }
    columns_ = std::make_shared<const ColumnNames>(std::move(names));
    return columns_;
}

std::string Statement::declared_type(size_t column) const
{
    const char* type = sqlite3_column_decltype(handle_.get(), static_cast<int>(column));
    return lower_ascii(type != nullptr ? type : "");
}

Value Statement::value(size_t column) const
{
    auto* handle = handle_.get();
    const int at = static_cast<int>(column);
    const CellKind kind = kinds_.at(column);
    switch (sqlite3_column_type(handle, at)) {
        case SQLITE_NULL:
            return {};
        case SQLITE_INTEGER:
            if (kind == CellKind::Plain) return static_cast<int64_t>(sqlite3_column_int64(handle, at));
            [[fallthrough]];
        case SQLITE_FLOAT: {
            const double number = sqlite3_column_double(handle, at);
            if (kind == CellKind::Money && std::abs(number) < kMostMoney) return Fixed4::from(number);
            return number;
        }
        default:
            break;
    }
    const auto text = text_of(handle, at);
    if (kind == CellKind::Date) {
        if (const auto date = DateTime::from_iso(trimmed(text))) return *date;
    }
    return text;
}

void Statement::fail() const
{
    auto* database = sqlite3_db_handle(handle_.get());
    throw DriverError(sqlite3_extended_errcode(database), worded(guard_, sqlite3_errmsg(database)));
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const noexcept
{
    sqlite3_finalize(statement);
}

}  // namespace velora::sqlite
