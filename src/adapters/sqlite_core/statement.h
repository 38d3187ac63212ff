#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "adapters/sqlite_core/database.h"
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

/// The prepared statements of a database by their text. A statement is lent to one user at a time and comes back when
/// the loan ends; the pool lives until the last loan has ended.
class StatementPool : public std::enable_shared_from_this<StatementPool> {
public:
    class Loan {
    public:
        Loan(std::shared_ptr<StatementPool> pool, std::string text, std::unique_ptr<Statement> statement)
            : pool_(std::move(pool)), text_(std::move(text)), statement_(std::move(statement))
        {
        }
        Loan(Loan&&) noexcept = default;
        Loan& operator=(Loan&& other) noexcept;
        ~Loan() { give_back(); }

        Statement* operator->() const { return statement_.get(); }
        [[nodiscard]] const std::string& text() const { return text_; }

    private:
        void give_back() noexcept;

        std::shared_ptr<StatementPool> pool_;
        std::string text_;
        std::unique_ptr<Statement> statement_;
    };

    explicit StatementPool(Database database) : database_(std::move(database)) {}

    /// @throws DriverError when the text cannot be prepared
    Loan lend(std::string text);
    [[nodiscard]] const Database& database() const { return database_; }

private:
    Database database_;  // outlives the statements
    std::unordered_map<std::string, std::vector<std::unique_ptr<Statement>>> idle_;
    size_t idle_count_ = 0;
};

}  // namespace velora::sqlite
