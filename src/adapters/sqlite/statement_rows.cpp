#include "adapters/sqlite/statement_rows.h"

namespace velora::sqlite {

StatementRows::StatementRows(StatementPool::Loan statement, ErrorList errors)
    : statement_(std::move(statement)),
      columns_((*statement_)->columns()),
      errors_(std::move(errors)),
      cells_(columns_->count())
{
    has_row_ = (*statement_)->step();
    row_ = 1;
    is_empty_ = !has_row_;
}

bool StatementRows::at_bof() const
{
    require_open();
    return is_empty_;
}

bool StatementRows::at_eof() const
{
    require_open();
    return !has_row_;
}

void StatementRows::MoveFirst()
{
    require_open();
    if (is_empty_) throw fault::no_current_row();
    if (row_ == 1) return;
    (*statement_)->rewind();
    row_ = 0;
    for (auto& cell : cells_) cell.row = 0;
    step();
}

void StatementRows::MoveNext()
{
    require_open();
    if (!has_row_) throw fault::no_current_row();
    step();
}

void StatementRows::step()
{
    try {
        has_row_ = (*statement_)->step();
        ++row_;
    } catch (const DriverError& error) {
        has_row_ = false;
        throw report(errors_, error, statement_->text());
    }
}

const Value& StatementRows::value(size_t column) const
{
    require_open();
    if (!has_row_) throw fault::no_current_row();
    auto& cell = cells_.at(column);
    if (cell.row != row_) {
        cell.value = (*statement_)->value(column);
        cell.row = row_;
    }
    return cell.value;
}

void StatementRows::Close()
{
    require_open();
    statement_.reset();
    has_row_ = false;
}

void StatementRows::require_open() const
{
    if (!statement_) throw fault::closed_object();
}

}  // namespace velora::sqlite
