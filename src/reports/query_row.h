#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/rows.h"
#include "reports/checked.h"

namespace velora {

/// The name of a database column, as it stands in the place that reads it.
template <size_t N>
struct ColumnName {
    char text[N];

    consteval ColumnName(const char (&literal)[N]) { std::copy_n(literal, N, text); }
};

/// The current row of a query: its columns are named where they are read, and looked up by name once.
class QueryRow {
public:
    explicit QueryRow(const Rows& rows) : rows_(&rows) {}

    /// @throws Fault 3265 for a column that the query lacks, 3021 without a current row
    template <ColumnName Name>
    [[nodiscard]] const Value& at() const
    {
        return rows_->value(place_of(Name.text, kHome<Name>));
    }
    template <ColumnName Name>
    [[nodiscard]] Checked number() const
    {
        return Checked(at<Name>());
    }
    /// @throws Fault 94 for a null
    template <ColumnName Name>
    [[nodiscard]] std::string text() const
    {
        return to_text(at<Name>());
    }

private:
    static constexpr size_t kPlaces = 256;  // more than a query has columns
    struct Place {
        const char* name = nullptr;
        size_t column = 0;
    };

    template <ColumnName Name>
    static constexpr size_t kHome = [] {
        size_t home = 0;
        for (const char c : Name.text) home = home * 31 + static_cast<unsigned char>(c);
        return home % kPlaces;
    }();

    /// A name is known by its address, since equal names as template arguments are one object.
    [[nodiscard]] size_t place_of(const char* name, size_t home) const
    {
        while (places_[home].name != name) {
            if (places_[home].name == nullptr) {
                places_[home] = {name, rows_->column(name)};
            } else {
                home = (home + 1) % kPlaces;
            }
        }
        return places_[home].column;
    }

    const Rows* rows_;
    mutable std::array<Place, kPlaces> places_{};
};

}  // namespace velora
