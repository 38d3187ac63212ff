#include "platform/client_recordset.h"

#include "values/fault.h"

namespace velora {

ColumnNames::ColumnNames(std::vector<std::string> names) : names_(std::move(names))
{
    for (size_t at = 0; at < names_.size(); ++at) positions_.try_emplace(names_[at], at);
}

size_t ColumnNames::find(std::string_view name) const
{
    const auto found = positions_.find(name);
    if (found == positions_.end()) throw fault::no_such_column(std::string(name));
    return found->second;
}

ClientRecordset::ClientRecordset(std::vector<std::string> column_names, std::vector<std::vector<Value>> rows)
    : names_(std::move(column_names)), rows_(std::move(rows))
{
}

bool ClientRecordset::at_bof() const
{
    require_open();
    return rows_.empty();
}

bool ClientRecordset::at_eof() const
{
    require_open();
    return position_ >= rows_.size();
}

void ClientRecordset::MoveFirst()
{
    require_open();
    if (rows_.empty()) throw fault::no_current_row();
    position_ = 0;
}

void ClientRecordset::MoveNext()
{
    require_row();
    ++position_;
}

void ClientRecordset::MoveLast()
{
    MoveFirst();
    position_ = rows_.size() - 1;
}

size_t ClientRecordset::RecordCount() const
{
    require_open();
    return rows_.size();
}

void ClientRecordset::AbsolutePosition(size_t position)
{
    require_open();
    if (position < 1 || position > rows_.size()) throw fault::no_current_row();
    position_ = position - 1;
}

void ClientRecordset::Disconnect()
{
    require_open();
}

const Value& ClientRecordset::value(size_t column) const
{
    require_row();
    return rows_[position_].at(column);
}

void ClientRecordset::AddNew()
{
    require_open();
    rows_.emplace_back(names_.count());
    position_ = rows_.size() - 1;
}

void ClientRecordset::put(size_t column, Value value)
{
    require_row();
    rows_[position_].at(column) = std::move(value);
}

void ClientRecordset::Close()
{
    require_open();
    rows_.clear();
    open_ = false;
}

void ClientRecordset::require_open() const
{
    if (!open_) throw fault::closed_object();
}

void ClientRecordset::require_row() const
{
    require_open();
    if (position_ >= rows_.size()) throw fault::no_current_row();
}

}  // namespace velora
