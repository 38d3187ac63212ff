#include "forms/controls/lists.h"

#include <algorithm>
#include <iterator>

#include "forms/controls/control_visitor.h"
#include "values/fault.h"

namespace velora::forms {

void RowChoice::select(int index)
{
    if (index < -1 || index >= count()) throw fault::of(fault::kPropertyValue, name());
    selected_ = index;
    changed.tell();
    click.fire();
}

void RowChoice::row_removed(int index)
{
    if (index == selected_) {
        selected_ = -1;
    } else if (index < selected_) {
        --selected_;
    }
}

void ListBox::add(const std::string& text)
{
    items_.push_back(text);
    changed.tell();
}

void ListBox::remove(int index)
{
    if (index < 0 || index >= count()) throw fault::of(fault::kInvalidCall, name());
    items_.erase(items_.begin() + index);
    row_removed(index);
    changed.tell();
}

void ListBox::clear()
{
    items_.clear();
    forget_selection();
    changed.tell();
}

void ListBox::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

int32_t DropDown::selected_data(int32_t otherwise) const
{
    return selected() < 0 ? otherwise : items_[static_cast<size_t>(selected())].data;
}

void DropDown::add(const std::string& text, int32_t data)
{
    items_.push_back({text, data});
    changed.tell();
}

void DropDown::clear()
{
    items_.clear();
    forget_selection();
    changed.tell();
}

void DropDown::set_back(Back back)
{
    if (back_ == back) return;
    back_ = back;
    changed.tell();
}

void DropDown::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

void ListView::set_columns(std::vector<std::string> columns)
{
    columns_ = std::move(columns);
    changed.tell();
}

void ListView::add(Row row)
{
    row.resize(columns_.size());
    rows_.push_back(std::move(row));
    changed.tell();
}

void ListView::add_rows(std::vector<Row> rows)
{
    std::move(rows.begin(), rows.end(), std::back_inserter(rows_));
    changed.tell();
}

void ListView::clear()
{
    rows_.clear();
    forget_selection();
    changed.tell();
}

void ListView::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

}  // namespace velora::forms
