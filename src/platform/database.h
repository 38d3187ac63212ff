#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/recordset.h"

namespace velora {

/// One entry of a connection's error collection, as the driver reported it.
struct DatabaseError {
    std::string Description;
    std::string Source;
    std::string SQLState;
    int32_t NativeError = 0;
};

/// What to run: a statement, or a stored procedure with its arguments. Parameters stand in the order of the marks.
struct Command {
    enum class Kind : uint8_t { Text, StoredProcedure };
    /// An input of the command, with the type that it is declared with: a driver has to bind a null too, and a text in
    /// the width of the procedure's own parameter.
    struct Parameter {
        enum class Type : uint8_t { OfValue, Integer, VarChar };

        std::string name;
        Value value;
        Type type = Type::OfValue;
        uint16_t size = 0;  ///< of a VarChar, in characters

        static Parameter integer(std::string name, int32_t value) { return {std::move(name), value, Type::Integer, 0}; }
        static Parameter varchar(std::string name, uint16_t size, std::string value)
        {
            return {std::move(name), std::move(value), Type::VarChar, size};
        }
    };

    Kind kind = Kind::Text;
    std::string text;
    std::vector<Parameter> parameters;

    static Command statement(std::string text) { return {Kind::Text, std::move(text), {}}; }
    static Command procedure(std::string name, std::vector<Parameter> parameters = {})
    {
        return {Kind::StoredProcedure, std::move(name), std::move(parameters)};
    }
};

/// What bounds statements that somebody else wrote.
struct QueryLimits {
    std::chrono::milliseconds time = std::chrono::seconds(30);  ///< of the database's own work; 0 for no end
    std::function<bool()> cancelled;                            ///< asked while the database works; empty for never
};

/// While it lives, everything that the connection reads is one state of the data, whoever writes meanwhile. Nothing is
/// written through the connection before it ended.
class Snapshot {
public:
    virtual ~Snapshot() = default;
};

/// An open connection to the product's database.
class Connection {
public:
    virtual ~Connection() = default;

    /// All rows in memory, for what counts them, goes back, or outlives the connection.
    /// @throws Fault, with the driver's report added to `Errors`
    virtual std::unique_ptr<Recordset> Open(const Command& command) = 0;

    /// The rows as they come, none of them held. The connection may be asked for others before they are through.
    /// @throws Fault as `Open`
    virtual std::unique_ptr<Rows> Stream(const Command& command) = 0;

    /// Runs a statement; what gives no rows answers empty ones without columns. @throws Fault as `Open`
    virtual std::unique_ptr<Rows> Execute(std::string_view text) = 0;

    [[nodiscard]] virtual std::vector<DatabaseError>& Errors() = 0;

    /// From its first read on, the connection sees one state of the data. None where the database has no such thing, or
    /// where the connection already reads so.
    virtual std::unique_ptr<Snapshot> begin_snapshot() { return nullptr; }

    /// A second connection to the same data, for statements of unknown origin. It reads rows and can do nothing else:
    /// the database itself sees to that (a file opened for reading, a transaction that reads only and is rolled back).
    /// All its statements together may work for the time of the limits; what goes on longer is a fault.
    /// @throws Fault when the data cannot be opened a second time
    virtual std::unique_ptr<Connection> open_reader(const QueryLimits& limits) = 0;
};

}  // namespace velora
