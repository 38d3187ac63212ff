#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "adapters/sqlite_core/date_collation.h"
#include "platform/database.h"

struct sqlite3;

namespace velora::sqlite {

class QueryGuard;

/// What the driver refused, with its extended code.
class DriverError : public std::runtime_error {
public:
    DriverError(int code, const std::string& message) : std::runtime_error(message), code_(code) {}
    [[nodiscard]] int code() const noexcept { return code_; }

private:
    int code_;
};

/// An open database. It knows the date collation, waits a few seconds for a lock, takes double quotes for names only,
/// and cannot be led to another file by a statement.
class Database {
public:
    enum class Access : uint8_t {
        QueryOnly,  ///< no statement may change anything; what a broken write left behind is still cleared up
        ReadWrite,
        Guarded,  ///< for statements of unknown origin: the file is opened for reading, under a `QueryGuard`
    };

    struct Options {
        Access access = Access::ReadWrite;  ///< a file that may not be written opens for reading all the same
        DateOrder date_order = DateOrder::MonthDayYear;
        int busy_milliseconds = 5000;
        QueryLimits limits = {};  ///< of a guarded database
    };

    /// Opens a file that is there; none is ever made. Its header, its size and its table list are checked.
    /// @throws Fault 53 for a missing file, Fault 75 for one that is no database, truncated, locked or unreadable;
    ///         both with the path and the reason
    static Database open(const std::string& path, const Options& options);
    /// Makes the file. @throws DriverError
    static Database create(const std::string& path);
    /// An empty database that lives as long as the object.
    static Database memory(const Options& options);
    Database(Database&&) noexcept;
    Database& operator=(Database&&) noexcept;
    ~Database();

    [[nodiscard]] sqlite3* handle() const { return handle_.get(); }
    [[nodiscard]] QueryGuard* guard() const { return guard_.get(); }  ///< none unless the access is guarded
    /// Runs statements without rows. @throws DriverError
    void run(const std::string& sql) const;

private:
    struct Close {
        void operator()(sqlite3* database) const noexcept;
    };

    explicit Database(sqlite3* handle);
    void set_up(const Options& options) const;

    std::unique_ptr<QueryGuard> guard_;  // outlives the handle, which calls it
    std::unique_ptr<sqlite3, Close> handle_;
};

}  // namespace velora::sqlite
