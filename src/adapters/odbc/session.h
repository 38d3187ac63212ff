#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "adapters/odbc/driver_manager.h"
#include "platform/database.h"

namespace velora::odbc {

/// What a driver refused: every record that it left, the first of them in front.
class DriverError : public std::runtime_error {
public:
    explicit DriverError(std::vector<DatabaseError> records);
    /// An error that the adapter itself raises.
    DriverError(const std::string& state, const std::string& message);

    [[nodiscard]] const std::vector<DatabaseError>& records() const { return records_; }
    [[nodiscard]] const std::string& state() const { return records_.front().SQLState; }

private:
    std::vector<DatabaseError> records_;
};

/// The server on the other end, as far as its words differ.
enum class Server : uint8_t { MariaDb, PostgreSql, SqlServer, Other };

/// One connection to a server. Statements and open rows hold it; it ends with the last of them.
class Session {
public:
    struct Options {
        std::chrono::seconds timeout{30};  ///< of a login and of a statement; 0 for no end
        bool reads_only = false;           ///< rows come as they are asked for, whatever the driver would rather do
        bool one_statement = false;        ///< takes the driver for one that has a single statement at a time
    };

    /// @throws DriverError, Fault where there is no driver manager
    Session(const std::string& connection_string, const Options& options);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    [[nodiscard]] const DriverManager& driver() const { return driver_; }
    [[nodiscard]] SQLHDBC handle() const { return connection_; }
    [[nodiscard]] const Options& options() const { return options_; }
    [[nodiscard]] Server server() const { return server_; }
    [[nodiscard]] const std::string& driver_name() const { return driver_name_; }
    [[nodiscard]] const std::string& quote() const { return quote_; }  ///< what stands around a name
    /// Whether a second statement ends the first, whose rows have to be held before.
    [[nodiscard]] bool one_statement() const { return one_statement_; }
    /// Whether a long text can be fetched in any order and behind bound columns.
    [[nodiscard]] bool fetches_any_column() const { return (get_data_ & SQL_GD_ANY_COLUMN) != 0; }
    [[nodiscard]] bool fetches_bound_columns() const { return (get_data_ & SQL_GD_BOUND) != 0; }

    /// Asks the driver after something went wrong.
    [[nodiscard]] bool is_dead() const;
    /// A statement without rows. @throws DriverError
    void run(const std::string& text);
    enum class Purpose : uint8_t { Snapshot, ReadOnly, Write };
    /// A transaction; one that reads sees one state of the data. @throws DriverError
    void begin(Purpose purpose);
    void commit();  ///< @throws DriverError
    void roll_back() noexcept;

    /// The records that the last call on a handle left.
    [[nodiscard]] DriverError error_of(SQLSMALLINT kind, SQLHANDLE handle) const;

private:
    void connect(const std::string& connection_string);
    void learn();
    void ask_for_one_state();
    void set_up();
    [[nodiscard]] std::string info_text(SQLUSMALLINT what) const;
    template <class Number>
    [[nodiscard]] Number info_number(SQLUSMALLINT what) const;
    void end_transaction(SQLSMALLINT how);
    void close() noexcept;

    const DriverManager& driver_;
    Options options_;
    SQLHENV environment_ = nullptr;
    SQLHDBC connection_ = nullptr;
    bool is_connected_ = false;
    bool in_transaction_ = false;
    bool sees_one_state_ = false;  ///< the level of isolation was told
    Server server_ = Server::Other;
    std::string driver_name_ = "ODBC";
    std::string quote_ = "\"";
    bool one_statement_ = false;
    SQLUINTEGER get_data_ = 0;
};

}  // namespace velora::odbc
