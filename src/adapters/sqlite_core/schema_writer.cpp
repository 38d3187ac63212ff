#include "adapters/sqlite_core/schema_writer.h"

#include <filesystem>

#include "values/fault.h"
#include "values/text.h"

namespace velora::sqlite {

namespace {

std::string_view declaration(ColumnType type)
{
    switch (type) {
        case ColumnType::Text:
            return "TEXT COLLATE NOCASE";
        case ColumnType::Integer:
            return "INTEGER";
        case ColumnType::Real:
            return "REAL";
        case ColumnType::Money:
            return "MONEY";
        case ColumnType::Date:
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

}  // namespace

std::vector<NamedColumn> SchemaTable::named_columns() const
{
    std::vector<NamedColumn> named;
    for (const SchemaColumn& column : columns) {
        for (int at = 1; at <= std::max(column.repeated, 1); ++at) {
            const std::string number = column.repeated > 0 ? std::to_string(at) : "";
            named.push_back({std::string(column.name) + number, column.type, column.default_value});
        }
    }
    return named;
}

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
    for (const auto& index : table.indexes) {
        sql +=
            "CREATE INDEX \"" + name + "_key" + std::to_string(++number) + "\" ON \"" + name + "\" (" + index + ");\n";
    }
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
