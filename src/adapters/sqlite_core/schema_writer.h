#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/sqlite_core/database.h"

namespace velora::sqlite {

/// How a column is declared, which decides how its cells are read.
enum class ColumnType : uint8_t {
    Text,     ///< compares without case
    Integer,  ///< keys, counts, codes and flags
    Real,
    Money,    ///< four places, read as fixed point
    Date,     ///< ISO text under the date collation; a trigger turns "month/day/year" into ISO on write
    IsoDate,  ///< ISO text by agreement, without the collation
    Any,      ///< keeps what was written
};

struct SchemaColumn {
    std::string_view name;
    ColumnType type = ColumnType::Text;
    int repeated = 0;                     ///< n stands for the columns name1 to name-n
    std::string_view default_value = {};  ///< an SQL literal; empty for null
};

/// One column of a table as the file has it.
struct NamedColumn {
    std::string name;
    ColumnType type;
    std::string_view default_value;
};

struct SchemaTable {
    std::string_view name;
    std::vector<SchemaColumn> columns;
    std::vector<std::string> indexes;  ///< each the column list of a plain index

    [[nodiscard]] std::vector<NamedColumn> named_columns() const;
};

/// Makes a new database file with these tables, all or nothing.
/// @throws Fault 75 when the file exists already or cannot be written
void create_schema(const std::string& path, std::span<const SchemaTable> tables);

/// Makes the tables in a database that is open. @throws DriverError
void create_tables(const Database& database, std::span<const SchemaTable> tables);

/// The statements of one table: the table, its triggers and its indexes. Nothing in them needs more than plain SQLite,
/// so that other programs can write rows.
std::string table_sql(const SchemaTable& table);

}  // namespace velora::sqlite
