#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velora::stores {

/// What a column holds, whatever the database calls it.
enum class ColumnType : uint8_t {
    Text,      ///< compares without case
    LongText,  ///< the same for texts of any length
    Integer,   ///< keys, counts, codes and flags
    Real,
    Money,    ///< four places, read as fixed point
    Date,     ///< a moment
    IsoDate,  ///< ISO text by agreement
    Any,      ///< keeps what was written
};

struct SchemaColumn {
    std::string_view name;
    ColumnType type = ColumnType::Text;
    int repeated = 0;                     ///< n stands for the columns name1 to name-n
    std::string_view default_value = {};  ///< an SQL literal; empty for null
};

/// One column of a table as the store has it.
struct NamedColumn {
    std::string name;
    ColumnType type;
    std::string_view default_value;
};

struct SchemaTable {
    using Columns = std::vector<std::string_view>;

    std::string_view name;
    std::vector<SchemaColumn> columns;
    std::vector<Columns> indexes;       ///< plain ones
    std::vector<Columns> lookups = {};  ///< indexes for filters, which compare texts trimmed and without case

    [[nodiscard]] std::vector<NamedColumn> named_columns() const;
};

/// The tables of the product's database. No column refuses a null and no key has to be unique; what an insert leaves
/// out of a quote is filled with a harmless value, but for the transfer date.
std::vector<SchemaTable> product_tables();

/// One table for each accounting view, the company, its currencies and its active modules.
std::vector<SchemaTable> accounting_tables();

}  // namespace velora::stores
