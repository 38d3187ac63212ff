#pragma once

#include "adapters/sqlite/driver_report.h"
#include "adapters/sqlite_core/statement.h"
#include "platform/rows.h"

namespace velora::sqlite {

/// Rows as they come from the statement: only the current one exists, and its cells are read when they are asked for.
class StatementRows final : public Rows {
public:
    /// Steps to the first row. @throws DriverError
    StatementRows(StatementPool::Loan statement, ErrorList errors);

    [[nodiscard]] bool at_bof() const override;
    [[nodiscard]] bool at_eof() const override;
    /// Runs the statement anew when the first row has been left.
    void MoveFirst() override;
    void MoveNext() override;
    [[nodiscard]] size_t column_count() const override { return columns_->count(); }
    [[nodiscard]] const std::string& column_name(size_t column) const override { return columns_->name(column); }
    [[nodiscard]] size_t column(std::string_view name) const override { return columns_->find(name); }
    [[nodiscard]] const Value& value(size_t column) const override;
    void Close() override;
    using Rows::value;

private:
    struct Cell {
        size_t row = 0;  // the row that it was read in
        Value value;
    };

    void require_open() const;
    void step();

    std::optional<StatementPool::Loan> statement_;
    std::shared_ptr<const ColumnNames> columns_;
    ErrorList errors_;
    mutable std::vector<Cell> cells_;
    size_t row_ = 0;  // counts from 1
    bool has_row_ = false;
    bool is_empty_ = false;
};

}  // namespace velora::sqlite
