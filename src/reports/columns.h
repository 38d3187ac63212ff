#pragma once

#include <initializer_list>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "reports/data_pipe.h"
#include "reports/query_row.h"
#include "reports/statement.h"

namespace velora {

/// A field of the pipe and where its value comes from, declared once.
template <class Source>
struct Column {
    std::string_view name;
    ado::Type type;
    uint16_t size;
    Outcome (*value)(Source&);
};

/// Names are unique, and a size stands exactly with text.
template <class Columns>
constexpr bool well_formed(const Columns& columns)
{
    for (size_t at = 0; at < columns.size(); ++at) {
        if (columns[at].name.empty() || (columns[at].type == ado::VarChar) != (columns[at].size > 0)) return false;
        for (size_t other = 0; other < at; ++other) {
            if (columns[at].name == columns[other].name) return false;
        }
    }
    return true;
}

// Values of sources with a `row` that is a QueryRow. A null is a fault that drops the field, but for the last.

template <ColumnName Name, class Source>
Outcome as_stored(Source& source)
{
    return Outcome::cell(source.row.template at<Name>());
}

template <ColumnName Name, class Source>
Outcome trimmed_column(Source& source)
{
    return trimmed_cell(source.row.template at<Name>());
}

template <ColumnName Name, class Source>
Outcome unless_null(Source& source)
{
    const Value& cell = source.row.template at<Name>();
    return cell.is_null() ? Outcome::unwritten() : Outcome::cell(cell);
}

/// A table of columns as one kind of report has it: its own, or another kind's with changes, each named by its field.
/// What depends on the run is changed when the run begins.
/// @throws std::logic_error everywhere for a field that the table lacks
template <class Source>
class ColumnList {
public:
    ColumnList(std::span<const Column<Source>> table) : columns_(table.begin(), table.end()) {}

    ColumnList& leave_out(std::initializer_list<std::string_view> fields)
    {
        for (const auto field : fields) columns_.erase(find(field));
        return *this;
    }
    /// All fields from the one to the other.
    ColumnList& leave_out_from(std::string_view first, std::string_view last)
    {
        const auto begin = find(first);
        const auto end = find(last) + 1;
        if (end <= begin) throw std::logic_error("field \"" + std::string(last) + "\" stands before the first");
        columns_.erase(begin, end);
        return *this;
    }
    /// These fields alone, in this order.
    ColumnList& pick(std::initializer_list<std::string_view> fields)
    {
        std::vector<Column<Source>> picked;
        for (const auto field : fields) picked.push_back(*find(field));
        columns_ = std::move(picked);
        return *this;
    }
    ColumnList& resize(std::string_view field, uint16_t size)
    {
        find(field)->size = size;
        return *this;
    }
    ColumnList& retype(std::string_view field, ado::Type type, uint16_t size = 0)
    {
        find(field)->type = type;
        return resize(field, size);
    }
    ColumnList& revalue(std::string_view field, Outcome (*value)(Source&))
    {
        find(field)->value = value;
        return *this;
    }
    /// Fields that stand in the pipe and hold nothing in this run.
    ColumnList& leave_unwritten()
    {
        for (auto& column : columns_) column.value = [](Source&) { return Outcome::unwritten(); };
        return *this;
    }
    ColumnList& insert_behind(std::string_view field, std::initializer_list<Column<Source>> added)
    {
        columns_.insert(find(field) + 1, added.begin(), added.end());
        return *this;
    }
    ColumnList& append(std::span<const Column<Source>> added)
    {
        columns_.insert(columns_.end(), added.begin(), added.end());
        return *this;
    }
    ColumnList& append(std::initializer_list<Column<Source>> added)
    {
        return append(std::span(added.begin(), added.size()));
    }

    [[nodiscard]] const std::vector<Column<Source>>& columns() const { return columns_; }
    operator std::span<const Column<Source>>() const { return columns_; }

private:
    auto find(std::string_view field)
    {
        const auto found = std::ranges::find(columns_, field, &Column<Source>::name);
        if (found == columns_.end()) throw std::logic_error("no field \"" + std::string(field) + "\" to change");
        return found;
    }

    std::vector<Column<Source>> columns_;
};

}  // namespace velora
