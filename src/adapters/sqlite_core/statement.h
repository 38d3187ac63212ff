#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/sqlite_core/database.h"
#include "adapters/statement_pool/statement_pool.h"
#include "platform/recordset.h"

struct sqlite3_stmt;

namespace velora::sqlite {

/// A prepared statement on one connection. Move-only.
class Statement {
public:
    /// @throws DriverError, also for a text with more than one statement or with none
    Statement(const Database& database, const std::string& sql);

    /// Marks are counted from 1. @throws DriverError for one that the statement lacks
    void bind(int mark, const Value& value);
    [[nodiscard]] int mark_count() const;
    [[nodiscard]] bool step();  ///< false when no row is left. @throws DriverError
    void reset() noexcept;      ///< ends the run and forgets what was bound
    void rewind() noexcept;     ///< ends the run and keeps what was bound

    [[nodiscard]] size_t column_count() const { return kinds_.size(); }
    /// Names and positions of the columns, made on first use and kept with the statement.
    [[nodiscard]] const std::shared_ptr<const ColumnNames>& columns() const;
    /// Lower case; empty for an expression.
    [[nodiscard]] std::string declared_type(size_t column) const;
    /// Cell of the current row: the declared type makes dates and money amounts of it, else its storage class decides.
    [[nodiscard]] Value value(size_t column) const;

private:
    enum class CellKind : uint8_t { Plain, Date, Money };
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };

    static CellKind kind_of(const std::string& declared_type);
    [[noreturn]] void fail() const;

    std::unique_ptr<sqlite3_stmt, Finalize> handle_;
    QueryGuard* guard_;
    std::vector<CellKind> kinds_;
    mutable std::shared_ptr<const ColumnNames> columns_;
};

struct Driver {
    using Source = Database;
    using Statement = sqlite::Statement;
    static constexpr size_t kMostIdle = 128;
    static std::unique_ptr<Statement> prepared(const Database& database, const std::string& text)
    {
        return std::make_unique<Statement>(database, text);
    }
    static void end_run(Statement& statement) noexcept { statement.reset(); }
};
using StatementPool = velora::StatementPool<Driver>;

}  // namespace velora::sqlite
