#include "adapters/store_schema/server_schema.h"

#include <algorithm>
#include <array>

#include "adapters/store_schema/procedures.h"
#include "values/text.h"

namespace velora::stores {

namespace {

/// The words of one server.
struct Words {
    std::string_view name;
    std::string_view opening, closing;  // around a name
    std::string_view text, long_text, integer, real, money, date;
    std::string_view behind_table;
    std::string_view end;  // of a statement in a script
};

// In the order of ServerKind. Texts compare without case on each of them.
constexpr auto kWords = std::to_array<Words>({
    {"mariadb", "`", "`", "VARCHAR(255)", "MEDIUMTEXT", "INT", "DOUBLE", "DECIMAL(19,4)", "DATETIME(3)",
     " CHARACTER SET utf8mb4 COLLATE utf8mb4_uca1400_as_ci", ";\n"},
    {"postgresql", "\"", "\"", "citext", "citext", "INTEGER", "DOUBLE PRECISION", "NUMERIC(19,4)", "TIMESTAMP(3)", "",
     ";\n"},
    {"sqlserver", "[", "]", "NVARCHAR(255)", "NVARCHAR(MAX)", "INT", "FLOAT", "MONEY", "DATETIME", "", "\nGO\n"},
    {"pervasive", "\"", "\"", "VARCHAR(255) CASE", "LONGVARCHAR", "INTEGER", "DOUBLE", "DECIMAL(19,4)", "TIMESTAMP", "",
     ";\n"},
});

const Words& words_of(ServerKind server)
{
    return kWords[static_cast<size_t>(server)];
}

std::string_view declaration(const Words& words, ColumnType type)
{
    switch (type) {
        case ColumnType::Text:
        case ColumnType::IsoDate:
        case ColumnType::Any:
            return words.text;
        case ColumnType::LongText:
            return words.long_text;
        case ColumnType::Integer:
            return words.integer;
        case ColumnType::Real:
            return words.real;
        case ColumnType::Money:
            return words.money;
        case ColumnType::Date:
            return words.date;
    }
    return {};
}

std::string column_sql(ServerKind server, const NamedColumn& column)
{
    std::string sql =
        "  " + server_name(server, column.name) + " " + std::string(declaration(words_of(server), column.type));
    if (!column.default_value.empty()) sql += " DEFAULT " + std::string(column.default_value);
    return sql;
}

bool is_text(const SchemaTable& table, std::string_view name)
{
    return std::ranges::any_of(table.columns, [&](const SchemaColumn& column) {
        return column.name == name && column.type == ColumnType::Text;
    });
}

/// PostgreSQL finds texts that are compared trimmed by an index on just that.
std::string index_terms(ServerKind server, const SchemaTable& table, const SchemaTable::Columns& columns,
                        bool is_lookup)
{
    std::string terms;
    for (const auto column : columns) {
        const auto name = server_name(server, column);
        const bool is_folded = is_lookup && server == ServerKind::PostgreSql && is_text(table, column);
        terms += (terms.empty() ? "" : ", ") + (is_folded ? "lower(trim(" + name + "))" : name);
    }
    return terms;
}

std::string procedure_sql(ServerKind server, const Procedure& procedure)
{
    const bool is_sql_server = server == ServerKind::SqlServer;
    const std::string mark = ":" + std::string(procedure.parameter);
    const std::string input = (is_sql_server ? "@" : "") + std::string(procedure.parameter);
    std::string type = "INT";
    if (procedure.text_size > 0) {  // on MariaDB an input has a collation of its own
        type = "VARCHAR(" + std::to_string(procedure.text_size) + ")";
        if (!is_sql_server) type += words_of(server).behind_table;
    }
    const std::string declared = procedure.parameter.empty() ? "" : input + " " + type;
    std::string body(procedure.statement);
    if (!procedure.parameter.empty()) body = replaced(body, mark, input);
    const std::string name(procedure.name);
    if (is_sql_server) return "CREATE OR ALTER PROCEDURE [" + name + "] " + declared + " AS SET NOCOUNT ON; " + body;
    return "CREATE OR REPLACE PROCEDURE `" + name + "`(" + declared + ") " + body;
}

}  // namespace

std::optional<ServerKind> server_kind(std::string_view name)
{
    for (size_t at = 0; at < kWords.size(); ++at) {
        if (same_name(kWords[at].name, name)) return static_cast<ServerKind>(at);
    }
    return std::nullopt;
}

/// Plain names are left to PostgreSQL's own case, which the plain dialect relies on; DESC is a word of SQL.
std::string server_name(ServerKind server, std::string_view name)
{
    if (server == ServerKind::PostgreSql) return same_name(name, "DESC") ? "\"desc\"" : std::string(name);
    const auto& words = words_of(server);
    return std::string(words.opening) + std::string(name) + std::string(words.closing);
}

std::vector<std::string> preparing_statements(ServerKind server)
{
    if (server != ServerKind::PostgreSql) return {};
    return {"CREATE EXTENSION IF NOT EXISTS citext"};
}

std::vector<std::string> table_statements(ServerKind server, const SchemaTable& table)
{
    std::string columns;
    for (const NamedColumn& column : table.named_columns()) {
        columns += (columns.empty() ? "" : ",\n") + column_sql(server, column);
    }
    const auto name = server_name(server, table.name);
    std::vector<std::string> statements{"CREATE TABLE " + name + " (\n" + columns + "\n)" +
                                        std::string(words_of(server).behind_table)};
    const auto add_index = [&](const SchemaTable::Columns& terms, bool is_lookup) {
        const auto index = std::string(table.name) + "_key" + std::to_string(statements.size());
        statements.push_back("CREATE INDEX " + server_name(server, index) + " ON " + name + " (" +
                             index_terms(server, table, terms, is_lookup) + ")");
    };
    for (const auto& lookup : table.lookups) add_index(lookup, true);
    for (const auto& index : table.indexes) add_index(index, false);
    return statements;
}

std::vector<std::string> procedure_statements(ServerKind server)
{
    if (server != ServerKind::MariaDb && server != ServerKind::SqlServer) return {};
    std::vector<std::string> statements;
    for (const Procedure& procedure : procedures()) statements.push_back(procedure_sql(server, procedure));
    if (server == ServerKind::MariaDb) {
        statements.emplace_back(
            "CREATE OR REPLACE PROCEDURE `sp_configure`(setting VARCHAR(40)) SELECT setting AS `name`, 0 AS `minimum`,"
            " 9999 AS `maximum`, 0 AS `config_value`, 0 AS `run_value`");
        statements.emplace_back(
            "CREATE OR REPLACE PROCEDURE `sp_helplanguage`() SELECT 0 AS `langid`, 'ymd' AS `dateformat`,"
            " 'us_english' AS `name`, 'English' AS `alias`");
    }
    return statements;
}

std::string as_script(ServerKind server, const std::vector<std::string>& statements)
{
    std::string script;
    for (const auto& statement : statements) script.append(statement).append(words_of(server).end);
    return script;
}

}  // namespace velora::stores
