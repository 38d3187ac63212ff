#include "adapters/sqlite/forward_recordset.h"

namespace velora::sqlite {

namespace {

constexpr int32_t kNotSupported = 3251;

Fault needs_client_cursor(const char* operation)
{
    return {kNotSupported, "Current Recordset does not support it: a forward cursor only moves to the next row.",
            operation};
}

}  // namespace

ForwardRecordset::ForwardRecordset(StatementPool::Loan statement, ErrorList errors)
    : statement_(std::move(statement)),
      columns_((*statement_)->columns()),
      errors_(std::move(errors)),
      cells_(columns_->count())
{
    has_row_ = (*statement_)->step();
    row_ = 1;
    is_empty_ = !has_row_;
}

bool ForwardRecordset::at_bof() const
{
    require_open();
    return is_empty_;
}

bool ForwardRecordset::at_eof() const
{
    require_open();
    return !has_row_;
}

void ForwardRecordset::MoveFirst()
{
    require_open();
    if (is_empty_) throw fault::no_current_row();
    if (row_ == 1) return;
    (*statement_)->rewind();
    row_ = 0;
    for (auto& cell : cells_) cell.row = 0;
    step();
}

void ForwardRecordset::MoveNext()
{
    require_open();
    if (!has_row_) throw fault::no_current_row();
    step();
}

void ForwardRecordset::step()
{
    try {
        has_row_ = (*statement_)->step();
        ++row_;
    } catch (const DriverError& error) {
        has_row_ = false;
        throw report(errors_, error, statement_->text());
    }
}

const Value& ForwardRecordset::value(size_t column) const
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

void ForwardRecordset::MoveLast()
{
    throw needs_client_cursor("MoveLast");
}

size_t ForwardRecordset::RecordCount() const
{
    throw needs_client_cursor("RecordCount");
}

void ForwardRecordset::AbsolutePosition(size_t)
{
    throw needs_client_cursor("AbsolutePosition");
}

void ForwardRecordset::Disconnect()
{
    throw needs_client_cursor("Disconnect");
}

void ForwardRecordset::AddNew()
{
    throw needs_client_cursor("AddNew");
}

void ForwardRecordset::put(size_t, Value)
{
    throw needs_client_cursor("put");
}

void ForwardRecordset::Close()
{
    require_open();
    statement_.reset();
    has_row_ = false;
}

void ForwardRecordset::require_open() const
{
    if (!statement_) throw fault::closed_object();
}

}  // namespace velora::sqlite
