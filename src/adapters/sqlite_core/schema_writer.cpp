#include "adapters/sqlite_core/schema_writer.h"

#include <algorithm>
#include <filesystem>

#include "values/fault.h"
#include "values/text.h"

namespace velora::sqlite {

namespace {

using stores::ColumnType;
using stores::NamedColumn;
using stores::SchemaTable;

std::string_view declaration(ColumnType type)
{
    switch (type) {
        case ColumnType::Text:
        case ColumnType::LongText:
            return "TEXT COLLATE NOCASE";
        case ColumnType::Integer:
            return "INTEGER";
        case ColumnType::Real:
            return "REAL";
        case ColumnType::Money:
            return "MONEY";
        case ColumnType::Date:  // ISO text under the date collation; a trigger turns "month/day/year" into ISO on write
            return "DATETIME COLLATE VLDATE";
        case ColumnType::IsoDate:
            return "DATETIME";
        case ColumnType::Any:
            return "";
    }
    return "";
}

std::string column_sql(const NamedColumn& column)
{
    std::string sql = "  \"" + column.name + "\" " + std::string(declaration(column.type));
    if (!column.default_value.empty()) sql += " DEFAULT " + std::string(column.default_value);
    return sql;
}

// Month, day and year between slashes, or year first where it has four digits, with an optional time behind a blank.
// A year of two digits falls between 1950 and 2049. What is no date stays as it was written.
constexpr std::string_view kDateTrigger = R"(CREATE TRIGGER "{table}_{column}_{event}" AFTER {when} ON "{table}"
WHEN typeof(NEW."{column}") = 'text' AND NEW."{column}" GLOB '*/*/*'
BEGIN
  UPDATE "{table}" SET "{column}" = ifnull((
    SELECT day || CASE WHEN time = '' THEN '' WHEN time GLOB '[0-9]:*' THEN ' 0' || time ELSE ' ' || time END FROM (
      SELECT printf('%04d-%02d-%02d',
                    CASE WHEN length(y) > 2 THEN y + 0 WHEN y + 0 < 50 THEN y + 2000 ELSE y + 1900 END, m, d) AS day, time
      FROM (
        SELECT CASE WHEN length(a) = 4 THEN a ELSE c END AS y, CASE WHEN length(a) = 4 THEN b ELSE a END AS m,
               CASE WHEN length(a) = 4 THEN c ELSE b END AS d, time
        FROM (
          SELECT a, substr(rest, 1, instr(rest, '/') - 1) AS b, substr(rest, instr(rest, '/') + 1) AS c, time
          FROM (
            SELECT substr(day, 1, instr(day, '/') - 1) AS a, substr(day, instr(day, '/') + 1) AS rest, time
            FROM (
              SELECT CASE WHEN instr(whole, ' ') THEN substr(whole, 1, instr(whole, ' ') - 1) ELSE whole END AS day,
                     CASE WHEN instr(whole, ' ') THEN ltrim(substr(whole, instr(whole, ' '))) ELSE '' END AS time
              FROM (SELECT trim(NEW."{column}") AS whole))))
        WHERE a || b || c NOT GLOB '*[^0-9]*' AND length(a) > 0 AND length(b) > 0 AND length(c) > 0))
    WHERE date(day, '+0 days') = day AND (time = '' OR time(substr('0' || time, -length(time) - (time GLOB '[0-9]:*'))) IS NOT NULL)), NEW."{column}")
  WHERE rowid = NEW.rowid;
END;
)";

std::string date_triggers(std::string_view table, std::string_view column)
{
    const auto trigger = [&](std::string_view event, std::string_view when) {
        auto sql = replaced(kDateTrigger, "{when}", when);
        return replaced(replaced(replaced(sql, "{event}", event), "{table}", table), "{column}", column);
    };
    return trigger("insert", "INSERT") + trigger("update", "UPDATE OF \"" + std::string(column) + "\"");
}

bool is_text(const SchemaTable& table, std::string_view column)
{
    return std::ranges::any_of(table.columns, [&](const stores::SchemaColumn& candidate) {
        return candidate.name == column && candidate.type == ColumnType::Text;
    });
}

/// A lookup's texts are indexed trimmed and without case, which is how filters compare them: a stored value with blanks
/// around it is found through the index too.
std::string index_terms(const SchemaTable& table, const SchemaTable::Columns& columns, bool is_lookup)
{
    std::string terms;
    for (const auto column : columns) {
        const std::string name = "\"" + std::string(column) + "\"";
        terms += terms.empty() ? "" : ", ";
        terms += is_lookup && is_text(table, column) ? "trim(" + name + ") COLLATE NOCASE" : name;
    }
    return terms;
}

}  // namespace

std::string table_sql(const SchemaTable& table)
{
    std::string columns;
    std::string triggers;
    for (const NamedColumn& column : table.named_columns()) {
        columns += (columns.empty() ? "" : ",\n") + column_sql(column);
        if (column.type == ColumnType::Date) triggers += date_triggers(table.name, column.name);
    }
    const std::string name(table.name);
    std::string sql = "CREATE TABLE \"" + name + "\" (\n" + columns + "\n);\n" + triggers;
    int number = 0;
    const auto add_index = [&](const std::string& terms) {
        sql +=
            "CREATE INDEX \"" + name + "_key" + std::to_string(++number) + "\" ON \"" + name + "\" (" + terms + ");\n";
    };
    for (const auto& lookup : table.lookups) add_index(index_terms(table, lookup, true));
    for (const auto& index : table.indexes) add_index(index_terms(table, index, false));
    return sql;
}

void create_tables(const Database& database, std::span<const SchemaTable> tables)
{
    std::string sql = "BEGIN;\n";
    for (const auto& table : tables) sql += table_sql(table);
    database.run(sql + "COMMIT;");
}

void create_schema(const std::string& path, std::span<const SchemaTable> tables)
{
    if (std::filesystem::exists(path)) throw Fault(fault::kPathAccess, path + ": there is a file of this name", path);
    try {
        create_tables(Database::create(path), tables);
    } catch (const DriverError& error) {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
        throw Fault(fault::kPathAccess, path + ": the database cannot be made: " + error.what(), path);
    }
}

}  // namespace velora::sqlite
