#include "platform/recordset.h"

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

Recordset::Recordset(std::vector<std::string> column_names, std::vector<std::vector<Value>> rows)
    : names_(std::move(column_names)), rows_(std::move(rows))
{
}

bool Recordset::at_bof() const
{
    require_open();
    return rows_.empty();
}

bool Recordset::at_eof() const
{
    require_open();
    return position_ >= rows_.size();
}

void Recordset::MoveFirst()
{
    require_open();
    if (rows_.empty()) throw fault::no_current_row();
    position_ = 0;
}

void Recordset::MoveNext()
{
    require_row();
    ++position_;
}

void Recordset::MoveLast()
{
    MoveFirst();
    position_ = rows_.size() - 1;
}

size_t Recordset::RecordCount() const
{
    require_open();
    return rows_.size();
}

void Recordset::AbsolutePosition(size_t position)
{
    require_open();
    if (position < 1 || position > rows_.size()) throw fault::no_current_row();
    position_ = position - 1;
}

void Recordset::Disconnect()
{
    require_open();
}

const Value& Recordset::value(size_t column) const
{
    require_row();
    return rows_[position_].at(column);
}

void Recordset::AddNew()
{
    require_open();
    rows_.emplace_back(names_.count());
    position_ = rows_.size() - 1;
}

void Recordset::put(size_t column, Value value)
{
    require_row();
    rows_[position_].at(column) = std::move(value);
}

void Recordset::Close()
{
    require_open();
    rows_.clear();
    open_ = false;
}

void Recordset::require_open() const
{
    if (!open_) throw fault::closed_object();
}

void Recordset::require_row() const
{
    require_open();
    if (position_ >= rows_.size()) throw fault::no_current_row();
}

}  // namespace velora
