#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "values/value.h"

namespace velora {

/// The rows of a query, walked from the first to the last, with one current row. Column names compare without case.
/// Nobody changes the database by way of them.
class Rows {
public:
    virtual ~Rows() = default;

    [[nodiscard]] virtual bool at_bof() const = 0;  ///< before the first row; true at both ends when there is no row
    [[nodiscard]] virtual bool at_eof() const = 0;
    virtual void MoveFirst() = 0;
    virtual void MoveNext() = 0;

    [[nodiscard]] virtual size_t column_count() const = 0;
    [[nodiscard]] virtual const std::string& column_name(size_t column) const = 0;
    /// @throws Fault 3265 when there is none of that name
    [[nodiscard]] virtual size_t column(std::string_view name) const = 0;
    /// Cell of the current row; the reference holds until the row changes. @throws Fault 3021 without a current row
    [[nodiscard]] virtual const Value& value(size_t column) const = 0;

    virtual void Close() = 0;

    [[nodiscard]] bool is_empty() const { return at_bof() && at_eof(); }
    [[nodiscard]] const Value& value(std::string_view name) const { return value(column(name)); }
};

}  // namespace velora
