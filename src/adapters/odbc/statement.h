#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "adapters/odbc/session.h"
#include "adapters/statement_pool/statement_pool.h"
#include "platform/recordset.h"

namespace velora::odbc {

/// A statement on a session, prepared or run at once. Short columns are bound, long texts are fetched in pieces when
/// they are asked for. Move-only.
class Statement {
public:
    /// @throws DriverError
    explicit Statement(std::shared_ptr<Session> session);
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement();

    void prepare(const std::string& text);                            ///< @throws DriverError
    void execute(const std::vector<Command::Parameter>& parameters);  ///< @throws DriverError
    void execute_directly(const std::string& text);                   ///< @throws DriverError
    [[nodiscard]] bool fetch();  ///< false behind the last row. @throws DriverError
    void close() noexcept;       ///< ends the run, with every result that was left
    void cancel() noexcept;      ///< from another thread, while the server works

    [[nodiscard]] const std::shared_ptr<const ColumnNames>& columns() const { return names_; }
    [[nodiscard]] bool is_number(size_t column) const;
    /// Cell of the current row. A long text can be asked for once. @throws DriverError
    [[nodiscard]] Value value(size_t column);
    /// Whether all cells have to be read before any other of the row is left, in their order.
    [[nodiscard]] bool reads_in_order() const { return reads_in_order_; }
    [[nodiscard]] Session& session() const { return *session_; }

private:
    enum class Kind : uint8_t { Integer, Double, Single, Decimal, Moment, Date, Time, Flag, Text, LongText };
    struct Column {
        Kind kind;
        int decimals;
        SQLSMALLINT c_type;
        size_t offset;    // of the cell in the row's buffer
        size_t capacity;  // bytes; 0 for a long text
        bool is_bound;
        SQLLEN length;  // of the current cell, or that it is null
    };
    struct Input {
        std::u16string wide;
        std::string narrow;
        int64_t whole = 0;
        double real = 0;
        SQL_TIMESTAMP_STRUCT moment{};
        SQLLEN length = 0;
    };

    void require(SQLRETURN status) const;
    void bind_input(SQLUSMALLINT number, const Command::Parameter& parameter);
    void begin_rows();
    bool find_result();
    void describe();
    static Kind kind_of(SQLSMALLINT type, SQLULEN size);
    void add_column(Kind kind, SQLULEN size, int decimals);
    void bind_columns();
    void fetch_cell(Column& column, size_t at);
    [[nodiscard]] std::string bound_text(Column& column, size_t at);
    [[nodiscard]] std::string text_in_pieces(Column& column, size_t at);

    std::shared_ptr<Session> session_;
    SQLHSTMT handle_ = nullptr;
    std::deque<Input> inputs_;
    std::vector<Column> cells_;
    std::vector<std::byte> row_;
    std::shared_ptr<const ColumnNames> names_;
    bool reads_in_order_ = false;
    bool is_running_ = false;
};

struct Driver {
    using Source = std::shared_ptr<Session>;
    using Statement = odbc::Statement;
    static constexpr size_t kMostIdle = 64;  // each holds memory on the server too
    static std::unique_ptr<Statement> prepared(const Source& session, const std::string& text)
    {
        auto statement = std::make_unique<Statement>(session);
        statement->prepare(text);
        return statement;
    }
    static void end_run(Statement& statement) noexcept { statement.close(); }
};
using StatementPool = velora::StatementPool<Driver>;

/// A statement that is run once, and prepared nowhere. @throws DriverError
inline StatementPool::Loan once(const StatementPool& pool, const std::string& text)
{
    return {nullptr, text, std::make_unique<Statement>(pool.source())};
}

}  // namespace velora::odbc
