#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "values/value.h"

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
    struct Parameter {
        std::string name;
        Value value;
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

/// How the rows of a recordset are held.
enum class Cursor : uint8_t {
    Forward,  ///< walked once from the first row to the last and never held in memory
    Client,   ///< all rows in memory: counted, positioned at will, changed in memory, kept without the connection
};

/// The rows of a query, with one current row. Column names compare without case.
class Recordset {
public:
    virtual ~Recordset() = default;

    [[nodiscard]] virtual bool at_bof() const = 0;  ///< before the first row; true at both ends when there is no row
    [[nodiscard]] virtual bool at_eof() const = 0;
    virtual void MoveFirst() = 0;
    virtual void MoveNext() = 0;

    // These four need a client cursor; a forward one answers with a fault.
    virtual void MoveLast() = 0;
    [[nodiscard]] virtual size_t RecordCount() const = 0;
    virtual void AbsolutePosition(size_t position) = 0;  ///< counts from 1
    virtual void Disconnect() = 0;                       ///< the rows live on without the connection

    [[nodiscard]] virtual size_t column_count() const = 0;
    [[nodiscard]] virtual const std::string& column_name(size_t column) const = 0;
    /// @throws Fault 3265 when there is none of that name
    [[nodiscard]] virtual size_t column(std::string_view name) const = 0;
    /// Cell of the current row; the reference holds until the row changes. @throws Fault 3021 without a current row
    [[nodiscard]] virtual const Value& value(size_t column) const = 0;

    /// A new row of nulls becomes the current one. It lives in memory and never reaches the database.
    virtual void AddNew() = 0;
    /// Changes the current row in memory only. @throws Fault on a forward cursor
    virtual void put(size_t column, Value value) = 0;

    virtual void Close() = 0;

    [[nodiscard]] bool is_empty() const { return at_bof() && at_eof(); }
    [[nodiscard]] const Value& value(std::string_view name) const { return value(column(name)); }
    void put(std::string_view name, Value cell) { put(column(name), std::move(cell)); }
};

/// What bounds statements that somebody else wrote.
struct QueryLimits {
    std::chrono::milliseconds time = std::chrono::seconds(30);  ///< of the database's own work; 0 for no end
    std::function<bool()> cancelled;                            ///< asked while the database works; empty for never
};

/// An open connection to the product's database.
class Connection {
public:
    virtual ~Connection() = default;

    /// @throws Fault, with the driver's report added to `Errors`
    virtual std::unique_ptr<Recordset> Open(const Command& command, Cursor cursor) = 0;

    /// Runs a statement; what gives no rows answers an empty recordset without columns. @throws Fault as `Open`
    virtual std::unique_ptr<Recordset> Execute(std::string_view text) = 0;

    [[nodiscard]] virtual std::vector<DatabaseError>& Errors() = 0;

    /// A second connection to the same data, for statements of unknown origin. It reads rows and can do nothing else:
    /// the database itself sees to that (a file opened for reading, a transaction that reads only and is rolled back).
    /// All its statements together may work for the time of the limits; what goes on longer is a fault.
    /// @throws Fault when the data cannot be opened a second time
    virtual std::unique_ptr<Connection> open_reader(const QueryLimits& limits) = 0;
};

}  // namespace velora
