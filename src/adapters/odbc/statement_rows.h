#pragma once

#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "adapters/odbc/link.h"
#include "values/fault.h"

namespace velora::odbc {

class StatementRows;

/// What a connection and the rows that it handed out share.
class Shared {
public:
    explicit Shared(std::shared_ptr<Link> link) : link_(std::move(link)) {}

    [[nodiscard]] std::vector<DatabaseError>& errors() { return errors_; }
    /// The error as a fault, with its records added to the errors.
    [[nodiscard]] Fault report(const DriverError& error, const std::string& statement);
    /// Does the work; what the driver refuses is a fault, as above.
    template <class Work>
    auto reported(const std::string& statement, Work work)
    {
        try {
            return work();
        } catch (const DriverError& error) {
            throw report(error, statement);
        }
    }

    void add(StatementRows& rows) { reading_.insert(&rows); }  ///< they read from the server
    void remove(StatementRows& rows) { reading_.erase(&rows); }
    /// Takes into memory what another statement would end. @throws DriverError
    void make_room();

private:
    std::shared_ptr<Link> link_;
    std::vector<DatabaseError> errors_;
    std::set<StatementRows*> reading_;
};

/// The rows of a statement as they come from the server; a cell becomes a value when it is first asked for. To go back
/// to the first row of those that have been read runs the statement again.
class StatementRows final : public Rows {
public:
    /// @throws DriverError
    StatementRows(StatementPool::Loan statement, std::vector<Command::Parameter> parameters,
                  std::shared_ptr<Shared> shared);
    StatementRows(const StatementRows&) = delete;
    StatementRows& operator=(const StatementRows&) = delete;
    ~StatementRows() override;

    /// Reads what is left into memory, so that the connection is free for another statement. @throws DriverError
    void hold();

    [[nodiscard]] bool at_bof() const override;
    [[nodiscard]] bool at_eof() const override;
    void MoveFirst() override;
    void MoveNext() override;
    [[nodiscard]] size_t column_count() const override { return columns_->count(); }
    [[nodiscard]] const std::string& column_name(size_t column) const override { return columns_->name(column); }
    [[nodiscard]] size_t column(std::string_view name) const override { return columns_->find(name); }
    [[nodiscard]] const Value& value(size_t column) const override;
    using Rows::value;
    void Close() override;

private:
    void require_open() const;
    void execute();
    void step();
    void read_row(std::vector<Value>& row) const;

    std::optional<StatementPool::Loan> statement_;
    std::vector<Command::Parameter> parameters_;
    std::shared_ptr<Shared> shared_;
    std::shared_ptr<const ColumnNames> columns_;
    std::string text_;
    mutable std::vector<std::optional<Value>> cells_;
    std::vector<std::vector<Value>> held_;  ///< the current row and those behind it, when they are in memory
    size_t held_at_ = 0;
    bool is_held_ = false;
    bool is_open_ = true;
    bool has_row_ = false;
    bool is_empty_ = true;
    bool is_first_ = true;
};

/// All rows in memory, with the columns of the statement. @throws DriverError
std::unique_ptr<Recordset> all_rows(Statement& statement);

}  // namespace velora::odbc
