#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "reports/data_pipe.h"
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

template <class AnyColumn>
void append_fields(std::vector<PipeField>& fields, std::span<const AnyColumn> columns)
{
    for (const auto& column : columns) fields.push_back({column.name, column.type, column.size});
}

/// Writes the outcome of one statement into the row in hand.
inline void write_field(DataPipeRecordset& pipe, Statements& statements, size_t field, const Outcome& outcome)
{
    if (!outcome.writes()) return;
    const int32_t number = outcome.fault() != 0 ? outcome.fault() : pipe.put(field, outcome.value());
    statements.settle(pipe.fields()[field].name, number);
}

/// Fills the fields from `first` on, each by a statement of its own.
template <class Source>
void write_columns(DataPipeRecordset& pipe, Statements& statements, size_t first,
                   std::span<const Column<Source>> columns, Source& source)
{
    for (size_t at = 0; at < columns.size(); ++at) {
        statements.attempt(columns[at].name,
                           [&] { write_field(pipe, statements, first + at, columns[at].value(source)); });
    }
}

/// Keeps the fields as they are for the rows to come: values of the whole document are worked out once.
inline void carry_fields(DataPipeRecordset& pipe, size_t first, size_t count)
{
    for (size_t field = first; field < first + count; ++field) pipe.carry(field);
}

/// The value without blanks at both ends; a null stays a null.
inline Value trimmed_value(const Value& value)
{
    return value.is_null() ? Value() : Value(trimmed_text(value));
}

}  // namespace velora
