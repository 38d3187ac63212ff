#include "adapters/odbc/session.h"

#include "adapters/odbc_text/wide_text.h"
#include "values/text.h"

namespace velora::odbc {

namespace {

constexpr SQLSMALLINT kMostRecords = 32;

SQLPOINTER as_pointer(SQLULEN number)
{
    return reinterpret_cast<SQLPOINTER>(number);
}

SQLWCHAR* as_wide(std::u16string& text)
{
    return reinterpret_cast<SQLWCHAR*>(text.data());
}

Server server_named(const std::string& name)
{
    const auto lower = lower_ascii(name);
    if (lower.find("mariadb") != std::string::npos) return Server::MariaDb;
    if (lower.find("postgresql") != std::string::npos) return Server::PostgreSql;
    return lower.find("microsoft sql server") != std::string::npos ? Server::SqlServer : Server::Other;
}

/// Drivers keep the rows of a query in memory unless they are told otherwise. Who does not know a word passes over it.
std::string streaming(const std::string& connection_string)
{
    return connection_string + (connection_string.ends_with(';') ? "" : ";") + "UseDeclareFetch=1;Fetch=1000";
}

}  // namespace

DriverError::DriverError(std::vector<DatabaseError> records)
    : std::runtime_error(records.front().Description), records_(std::move(records))
{
}

DriverError::DriverError(const std::string& state, const std::string& message)
    : DriverError(std::vector<DatabaseError>{{"[Velora][ODBC]" + message, "Velora ODBC", state, 0}})
{
}

Session::Session(const std::string& connection_string, const Options& options)
    : driver_(DriverManager::get()), options_(options)
{
    try {
        connect(options.reads_only ? streaming(connection_string) : connection_string);
        learn();
        set_up();
    } catch (...) {
        close();
        throw;
    }
}

Session::~Session()
{
    close();
}

void Session::connect(const std::string& connection_string)
{
    driver_.alloc_handle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_);
    driver_.set_environment(environment_, SQL_ATTR_ODBC_VERSION, as_pointer(SQL_OV_ODBC3), 0);
    if (!SQL_SUCCEEDED(driver_.alloc_handle(SQL_HANDLE_DBC, environment_, &connection_))) {
        throw error_of(SQL_HANDLE_ENV, environment_);
    }
    const auto seconds = static_cast<SQLULEN>(options_.timeout.count());
    driver_.set_connection(connection_, SQL_ATTR_LOGIN_TIMEOUT, as_pointer(seconds), 0);
    auto text = to_wide(connection_string);
    const auto status = driver_.connect(connection_, nullptr, as_wide(text), static_cast<SQLSMALLINT>(text.size()),
                                        nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(status)) throw error_of(SQL_HANDLE_DBC, connection_);
    is_connected_ = true;
}

void Session::learn()
{
    server_ = server_named(info_text(SQL_DBMS_NAME));
    if (auto name = info_text(SQL_DRIVER_NAME); !name.empty()) driver_name_ = std::move(name);
    if (auto quote = info_text(SQL_IDENTIFIER_QUOTE_CHAR); !trimmed(quote).empty()) quote_ = std::move(quote);
    one_statement_ = options_.one_statement || info_number<SQLUSMALLINT>(SQL_MAX_CONCURRENT_ACTIVITIES) == 1;
    get_data_ = info_number<SQLUINTEGER>(SQL_GETDATA_EXTENSIONS);
}

/// The time-out of statements where the server keeps it by itself, which also covers what a driver does unasked; the
/// others get it with each statement.
void Session::set_up()
{
    const auto seconds = options_.timeout.count();
    if (server_ == Server::MariaDb) run("SET SESSION max_statement_time = " + std::to_string(seconds));
    if (server_ == Server::PostgreSql) run("SET statement_timeout = " + std::to_string(seconds * 1000));
}

std::string Session::info_text(SQLUSMALLINT what) const
{
    char16_t text[256] = {};
    SQLSMALLINT bytes = 0;
    if (!SQL_SUCCEEDED(driver_.get_info(connection_, what, text, sizeof text, &bytes))) return {};
    return from_wide(std::u16string_view(text));
}

template <class Number>
Number Session::info_number(SQLUSMALLINT what) const
{
    Number number{};
    SQLSMALLINT bytes = 0;
    const auto status = driver_.get_info(connection_, what, &number, sizeof number, &bytes);
    return SQL_SUCCEEDED(status) ? number : Number{};
}

bool Session::is_dead() const
{
    SQLUINTEGER dead = SQL_CD_FALSE;
    const auto status = driver_.get_connection(connection_, SQL_ATTR_CONNECTION_DEAD, &dead, sizeof dead, nullptr);
    return SQL_SUCCEEDED(status) && dead == SQL_CD_TRUE;
}

void Session::run(const std::string& text)
{
    SQLHSTMT statement = nullptr;
    if (!SQL_SUCCEEDED(driver_.alloc_handle(SQL_HANDLE_STMT, connection_, &statement))) {
        throw error_of(SQL_HANDLE_DBC, connection_);
    }
    auto wide = to_wide(text);
    const auto status = driver_.execute_directly(statement, as_wide(wide), static_cast<SQLINTEGER>(wide.size()));
    const bool failed = !SQL_SUCCEEDED(status) && status != SQL_NO_DATA;
    std::vector<DatabaseError> records;
    if (failed) records = error_of(SQL_HANDLE_STMT, statement).records();
    driver_.free_handle(SQL_HANDLE_STMT, statement);
    if (failed) throw DriverError(std::move(records));
}

/// The level has to be told before a transaction begins, and stays. SQL Server has one that only some databases allow:
/// where this one does not, a document reads what stands there.
void Session::ask_for_one_state()
{
    if (sees_one_state_) return;
    sees_one_state_ = true;
    if (server_ == Server::SqlServer) {
        return run(
            "IF EXISTS (SELECT 1 FROM sys.databases WHERE name = DB_NAME() AND snapshot_isolation_state = 1)"
            " SET TRANSACTION ISOLATION LEVEL SNAPSHOT");
    }
    driver_.set_connection(connection_, SQL_ATTR_TXN_ISOLATION, as_pointer(SQL_TXN_REPEATABLE_READ), 0);
}

void Session::begin(Purpose purpose)
{
    if (purpose != Purpose::Write) ask_for_one_state();
    if (purpose == Purpose::ReadOnly && server_ == Server::MariaDb) run("SET SESSION TRANSACTION READ ONLY");
    if (purpose == Purpose::ReadOnly && server_ == Server::PostgreSql) {
        run("SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY");
    }
    const auto off =
        driver_.set_connection(connection_, SQL_ATTR_AUTOCOMMIT, as_pointer(SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER);
    if (!SQL_SUCCEEDED(off)) throw error_of(SQL_HANDLE_DBC, connection_);
    in_transaction_ = true;
}

void Session::commit()
{
    end_transaction(SQL_COMMIT);
}

void Session::roll_back() noexcept
{
    try {
        end_transaction(SQL_ROLLBACK);
    } catch (const std::exception&) {
        in_transaction_ = false;  // the server rolls back what nobody ends
    }
}

void Session::end_transaction(SQLSMALLINT how)
{
    if (!in_transaction_) return;
    if (!SQL_SUCCEEDED(driver_.end_transaction(SQL_HANDLE_DBC, connection_, how))) {
        throw error_of(SQL_HANDLE_DBC, connection_);
    }
    in_transaction_ = false;
    driver_.set_connection(connection_, SQL_ATTR_AUTOCOMMIT, as_pointer(SQL_AUTOCOMMIT_ON), SQL_IS_UINTEGER);
}

DriverError Session::error_of(SQLSMALLINT kind, SQLHANDLE handle) const
{
    std::vector<DatabaseError> records;
    for (SQLSMALLINT number = 1; number <= kMostRecords; ++number) {
        char16_t state[6] = {};
        std::u16string message(2048, u'\0');
        SQLINTEGER native = 0;
        SQLSMALLINT units = 0;
        const auto status = driver_.diagnostic(kind, handle, number, reinterpret_cast<SQLWCHAR*>(state), &native,
                                               as_wide(message), static_cast<SQLSMALLINT>(message.size()), &units);
        if (!SQL_SUCCEEDED(status)) break;
        records.push_back({from_wide(message.c_str()), driver_name_, from_wide(state), native});
    }
    if (records.empty()) return {"HY000", "The driver gave no reason."};
    return DriverError(std::move(records));
}

void Session::close() noexcept
{
    if (in_transaction_) roll_back();
    if (is_connected_) driver_.disconnect(connection_);
    if (connection_ != nullptr) driver_.free_handle(SQL_HANDLE_DBC, connection_);
    if (environment_ != nullptr) driver_.free_handle(SQL_HANDLE_ENV, environment_);
    is_connected_ = false;
    connection_ = environment_ = nullptr;
}

}  // namespace velora::odbc
