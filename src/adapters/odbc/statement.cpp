#include "adapters/odbc/statement.h"

#include <algorithm>
#include <cstring>

#include "adapters/odbc_text/conversions.h"
#include "adapters/odbc_text/wide_text.h"
#include "values/fault.h"

namespace velora::odbc {

namespace {

constexpr SQLULEN kShortText = 512;              // characters of a text that is bound
constexpr SQLULEN kLongInput = 4000;             // characters from which an input counts as a long text
constexpr size_t kPiece = 4096;                  // units of a long text that are fetched at once
constexpr size_t kMostText = size_t{64} << 20U;  // units; what is longer is not read
constexpr int kDigitsOfDecimal = 64;

template <class Cell>
Cell cell_in(const std::vector<std::byte>& row, size_t offset)
{
    Cell cell;
    std::memcpy(&cell, row.data() + offset, sizeof cell);
    return cell;
}

SQLWCHAR* as_wide(std::u16string& text)
{
    return reinterpret_cast<SQLWCHAR*>(text.data());
}

SQL_TIMESTAMP_STRUCT timestamp_of(const DateTime& date)
{
    const auto parts = date.parts();
    SQL_TIMESTAMP_STRUCT made{};
    made.year = static_cast<SQLSMALLINT>(parts.year);
    made.month = static_cast<SQLUSMALLINT>(parts.month);
    made.day = static_cast<SQLUSMALLINT>(parts.day);
    made.hour = static_cast<SQLUSMALLINT>(parts.hour);
    made.minute = static_cast<SQLUSMALLINT>(parts.minute);
    made.second = static_cast<SQLUSMALLINT>(parts.second);
    return made;
}

/// Whether the server may have sent more of a text than there was room for.
bool is_cut(SQLLEN length, size_t room)
{
    return length == SQL_NO_TOTAL || static_cast<size_t>(length) > room - sizeof(char16_t);
}

}  // namespace

Statement::Statement(std::shared_ptr<Session> session) : session_(std::move(session))
{
    const auto& driver = session_->driver();
    if (!SQL_SUCCEEDED(driver.alloc_handle(SQL_HANDLE_STMT, session_->handle(), &handle_))) {
        throw session_->error_of(SQL_HANDLE_DBC, session_->handle());
    }
    const auto seconds = session_->options().timeout.count();
    const bool server_keeps_time = session_->server() == Server::MariaDb || session_->server() == Server::PostgreSql;
    if (seconds == 0 || server_keeps_time) return;
    driver.set_statement(handle_, SQL_ATTR_QUERY_TIMEOUT, reinterpret_cast<SQLPOINTER>(seconds), 0);
}

Statement::~Statement()
{
    close();
    session_->driver().free_handle(SQL_HANDLE_STMT, handle_);
}

void Statement::require(SQLRETURN status) const
{
    if (SQL_SUCCEEDED(status)) return;
    throw session_->error_of(SQL_HANDLE_STMT, handle_);
}

void Statement::prepare(const std::string& text)
{
    auto wide = to_wide(text);
    require(session_->driver().prepare(handle_, as_wide(wide), static_cast<SQLINTEGER>(wide.size())));
}

void Statement::execute(const std::vector<Command::Parameter>& parameters)
{
    close();
    inputs_.clear();
    for (size_t at = 0; at < parameters.size(); ++at) bind_input(static_cast<SQLUSMALLINT>(at + 1), parameters[at]);
    const auto status = session_->driver().execute(handle_);
    is_running_ = true;
    if (status != SQL_NO_DATA) require(status);
    begin_rows();
}

void Statement::execute_directly(const std::string& text)
{
    auto wide = to_wide(text);
    const auto status =
        session_->driver().execute_directly(handle_, as_wide(wide), static_cast<SQLINTEGER>(wide.size()));
    is_running_ = true;
    if (status != SQL_NO_DATA) require(status);  // an update that met no row is a success
    begin_rows();
}

void Statement::bind_input(SQLUSMALLINT number, const Command::Parameter& parameter)
{
    using Declared = Command::Parameter::Type;
    Input& input = inputs_.emplace_back();
    const auto bind = [&](SQLSMALLINT c_type, SQLSMALLINT type, SQLULEN size, SQLSMALLINT digits, const void* data) {
        const auto room = input.length > 0 ? input.length : SQLLEN{0};
        require(session_->driver().bind_parameter(handle_, number, SQL_PARAM_INPUT, c_type, type, size, digits,
                                                  const_cast<void*>(data), room, &input.length));
    };
    const auto bind_text = [&](std::string_view text) {
        input.wide = to_wide(text);
        input.length = static_cast<SQLLEN>(input.wide.size() * sizeof(char16_t));
        const auto size = std::max<SQLULEN>({input.wide.size(), parameter.size, 1});
        bind(SQL_C_WCHAR, size > kLongInput ? SQL_WLONGVARCHAR : SQL_WVARCHAR, size, 0, input.wide.data());
    };
    const auto bind_whole = [&](int64_t whole) {
        input.whole = whole;
        const bool is_declared = parameter.type == Declared::Integer;
        bind(SQL_C_SBIGINT, is_declared ? SQL_INTEGER : SQL_BIGINT, is_declared ? 10 : 19, 0, &input.whole);
    };
    const Value& value = parameter.value;
    switch (value.type()) {
        case Value::Type::Null:
            input.length = SQL_NULL_DATA;
            if (parameter.type == Declared::Integer) return bind(SQL_C_SBIGINT, SQL_INTEGER, 10, 0, nullptr);
            return bind(SQL_C_WCHAR, SQL_WVARCHAR, std::max<SQLULEN>(parameter.size, 1), 0, nullptr);
        case Value::Type::Boolean:
            return bind_whole(*value.get_if<bool>() ? 1 : 0);
        case Value::Type::Integer:
            return bind_whole(*value.get_if<int64_t>());
        case Value::Type::Text:
            return bind_text(*value.get_if<std::string>());
        case Value::Type::Date:
            input.moment = timestamp_of(*value.get_if<DateTime>());
            input.length = sizeof input.moment;
            return bind(SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 19, 0, &input.moment);
        case Value::Type::Fixed:
            input.narrow = amount_text(*value.get_if<Fixed4>());
            input.length = static_cast<SQLLEN>(input.narrow.size());
            return bind(SQL_C_CHAR, SQL_DECIMAL, 19, 4, input.narrow.data());
        default:
            input.real = to_number(value);
            return bind(SQL_C_DOUBLE, SQL_DOUBLE, 15, 0, &input.real);
    }
}

/// The first of the results that has columns; a batch may begin with others.
bool Statement::find_result()
{
    SQLSMALLINT count = 0;
    while (true) {
        require(session_->driver().column_count(handle_, &count));
        if (count > 0) return true;
        const auto status = session_->driver().more_results(handle_);
        if (status == SQL_NO_DATA) return false;
        require(status);
    }
}

void Statement::begin_rows()
{
    if (!find_result()) {
        names_ = std::make_shared<const ColumnNames>(std::vector<std::string>{});
        cells_.clear();
        return;
    }
    if (cells_.empty()) describe();  // a prepared statement keeps its columns from run to run
}

void Statement::describe()
{
    const auto& driver = session_->driver();
    SQLSMALLINT count = 0;
    require(driver.column_count(handle_, &count));
    std::vector<std::string> names;
    bool behind_long = false;
    for (SQLSMALLINT at = 1; at <= count; ++at) {
        char16_t name[256] = {};
        SQLSMALLINT length = 0, type = 0, decimals = 0, nullable = 0;
        SQLULEN size = 0;
        require(driver.describe(handle_, static_cast<SQLUSMALLINT>(at), reinterpret_cast<SQLWCHAR*>(name), 256, &length,
                                &type, &size, &decimals, &nullable));
        names.push_back(from_wide(name));
        Kind kind = kind_of(type, size);
        add_column(kind, size, decimals);
        behind_long = behind_long || kind == Kind::LongText;
        if (behind_long && !session_->fetches_any_column()) cells_.back().is_bound = false;
    }
    reads_in_order_ = behind_long && !session_->fetches_any_column();
    names_ = std::make_shared<const ColumnNames>(std::move(names));
    bind_columns();
}

Statement::Kind Statement::kind_of(SQLSMALLINT type, SQLULEN size)
{
    switch (type) {
        case SQL_TINYINT:
        case SQL_SMALLINT:
        case SQL_INTEGER:
        case SQL_BIGINT:
            return Kind::Integer;
        case SQL_REAL:
            return Kind::Single;
        case SQL_FLOAT:
        case SQL_DOUBLE:
            return Kind::Double;
        case SQL_DECIMAL:
        case SQL_NUMERIC:
            return Kind::Decimal;
        case SQL_BIT:
            return Kind::Flag;
        case SQL_TYPE_TIMESTAMP:
        case SQL_TIMESTAMP:
            return Kind::Moment;
        case SQL_TYPE_DATE:
        case SQL_DATE:
            return Kind::Date;
        case SQL_TYPE_TIME:
        case SQL_TIME:
            return Kind::Time;
        default:
            return size >= 1 && size <= kShortText ? Kind::Text : Kind::LongText;
    }
}

void Statement::add_column(Kind kind, SQLULEN size, int decimals)
{
    struct Cell {
        SQLSMALLINT c_type;
        size_t bytes;
    };
    const auto cell = [&]() -> Cell {
        switch (kind) {
            case Kind::Integer:
                return {SQL_C_SBIGINT, sizeof(int64_t)};
            case Kind::Single:
                return {SQL_C_FLOAT, sizeof(float)};
            case Kind::Double:
                return {SQL_C_DOUBLE, sizeof(double)};
            case Kind::Decimal:
                return {SQL_C_CHAR, size + kDigitsOfDecimal};
            case Kind::Flag:
                return {SQL_C_BIT, 1};
            case Kind::Moment:
                return {SQL_C_TYPE_TIMESTAMP, sizeof(SQL_TIMESTAMP_STRUCT)};
            case Kind::Date:
                return {SQL_C_TYPE_DATE, sizeof(SQL_DATE_STRUCT)};
            case Kind::Time:
                return {SQL_C_TYPE_TIME, sizeof(SQL_TIME_STRUCT)};
            case Kind::Text:  // a character takes up to two units, and a zero ends the text
                return {SQL_C_WCHAR, (2 * size + 1) * sizeof(char16_t)};
            default:
                return {SQL_C_WCHAR, 0};
        }
    }();
    constexpr size_t kAlignment = 8;
    const size_t offset = (row_.size() + kAlignment - 1) / kAlignment * kAlignment;
    row_.resize(offset + cell.bytes);
    cells_.push_back({kind, decimals, cell.c_type, offset, cell.bytes, kind != Kind::LongText, SQL_NULL_DATA});
}

void Statement::bind_columns()
{
    for (size_t at = 0; at < cells_.size(); ++at) {
        Column& column = cells_[at];
        if (!column.is_bound) continue;
        require(session_->driver().bind_column(handle_, static_cast<SQLUSMALLINT>(at + 1), column.c_type,
                                               row_.data() + column.offset, static_cast<SQLLEN>(column.capacity),
                                               &column.length));
    }
}

bool Statement::fetch()
{
    if (!is_running_ || cells_.empty()) return false;
    const auto status = session_->driver().fetch(handle_);
    if (status != SQL_NO_DATA) {
        require(status);
        return true;
    }
    while (true) {  // a procedure may still fail behind its rows
        const auto more = session_->driver().more_results(handle_);
        if (more == SQL_NO_DATA) break;
        require(more);
    }
    close();
    return false;
}

void Statement::close() noexcept
{
    if (!is_running_) return;
    const auto& driver = session_->driver();
    while (SQL_SUCCEEDED(driver.more_results(handle_))) {
    }
    driver.free_statement(handle_, SQL_CLOSE);
    is_running_ = false;
}

void Statement::cancel() noexcept
{
    session_->driver().cancel(handle_);
}

bool Statement::is_number(size_t column) const
{
    switch (cells_.at(column).kind) {
        case Kind::Integer:
        case Kind::Double:
        case Kind::Single:
        case Kind::Decimal:
        case Kind::Flag:
            return true;
        default:
            return false;
    }
}

Value Statement::value(size_t at)
{
    Column& column = cells_.at(at);
    if (!column.is_bound && (column.kind == Kind::Text || column.kind == Kind::LongText)) {
        auto text = text_in_pieces(column, at);
        return column.length == SQL_NULL_DATA ? Value() : Value(std::move(text));
    }
    if (!column.is_bound) fetch_cell(column, at);
    if (column.length == SQL_NULL_DATA) return {};
    switch (column.kind) {
        case Kind::Integer:
            return cell_in<int64_t>(row_, column.offset);
        case Kind::Single:
            return cell_in<float>(row_, column.offset);
        case Kind::Double:
            return cell_in<double>(row_, column.offset);
        case Kind::Decimal:
            return decimal_value({reinterpret_cast<const char*>(row_.data() + column.offset),
                                  std::min(static_cast<size_t>(column.length), column.capacity)},
                                 column.decimals);
        case Kind::Flag:
            return cell_in<uint8_t>(row_, column.offset) != 0;
        case Kind::Moment: {
            const auto moment = cell_in<SQL_TIMESTAMP_STRUCT>(row_, column.offset);
            return moment_value({moment.year, moment.month, moment.day, moment.hour, moment.minute, moment.second});
        }
        case Kind::Date: {
            const auto date = cell_in<SQL_DATE_STRUCT>(row_, column.offset);
            return moment_value({date.year, date.month, date.day});
        }
        case Kind::Time: {
            const auto time = cell_in<SQL_TIME_STRUCT>(row_, column.offset);
            return DateTime(0, time.hour * 3600 + time.minute * 60 + time.second);
        }
        default:
            return bound_text(column, at);
    }
}

void Statement::fetch_cell(Column& column, size_t at)
{
    require(session_->driver().get_data(handle_, static_cast<SQLUSMALLINT>(at + 1), column.c_type,
                                        row_.data() + column.offset, static_cast<SQLLEN>(column.capacity),
                                        &column.length));
}

std::string Statement::bound_text(Column& column, size_t at)
{
    if (!is_cut(column.length, column.capacity)) {
        const auto* units = reinterpret_cast<const char16_t*>(row_.data() + column.offset);
        return from_wide({units, static_cast<size_t>(column.length) / sizeof(char16_t)});
    }
    if (!session_->fetches_bound_columns()) {
        throw DriverError("01004", "The text in the column " + names_->name(at) + " is longer than the column tells.");
    }
    return text_in_pieces(column, at);
}

std::string Statement::text_in_pieces(Column& column, size_t at)
{
    std::u16string whole;
    std::u16string piece(kPiece, u'\0');
    const size_t room = kPiece * sizeof(char16_t);
    while (true) {
        const auto status = session_->driver().get_data(handle_, static_cast<SQLUSMALLINT>(at + 1), SQL_C_WCHAR,
                                                        piece.data(), static_cast<SQLLEN>(room), &column.length);
        if (status == SQL_NO_DATA) break;
        require(status);
        if (column.length == SQL_NULL_DATA) return {};
        const bool more = is_cut(column.length, room);
        whole.append(piece, 0, more ? kPiece - 1 : static_cast<size_t>(column.length) / sizeof(char16_t));
        if (whole.size() > kMostText) {
            throw DriverError("22001", "The text in the column " + names_->name(at) + " is too long to be read.");
        }
        if (!more) break;
    }
    column.length = 0;
    return from_wide(whole);
}

}  // namespace velora::odbc
