#include <ostream>

#include "adapters/odbc_text/connection_string.h"
#include "adapters/sqlite_core/schema_writer.h"
#include "adapters/store_schema/server_schema.h"
#include "adapters/terminal/progress_bar.h"
#include "host/bind.h"
#include "host/stores.h"
#include "host/transfer.h"
#include "values/text.h"

namespace velora {
namespace {

struct SchemaOptions {
    std::string server;
    bool accounting = false;
};

struct TransferOptions {
    std::string database;
    std::string accounting;
    bool replace = false;
};

std::string script_of(const SchemaOptions& options)
{
    const auto tables = options.accounting ? stores::accounting_tables() : stores::product_tables();
    std::string script;
    if (same_name(options.server, "sqlite")) {
        for (const auto& table : tables) script += sqlite::table_sql(table);
        return script;
    }
    const auto server = stores::server_kind(options.server);
    if (!server) {
        throw UsageError("\"" + options.server +
                         "\" is no server whose words are known: sqlite, mariadb, postgresql, sqlserver, pervasive.");
    }
    script += stores::as_script(*server, stores::preparing_statements(*server));
    for (const auto& table : tables) script += stores::as_script(*server, stores::table_statements(*server, table));
    if (!options.accounting) script += stores::as_script(*server, stores::procedure_statements(*server));
    return script;
}

ExitStatus schema(Host& host, const SchemaOptions& options)
{
    host.around().out << script_of(options);
    return ExitStatus::Delivered;
}

/// One store of the folder to where the option says.
void copy_store(Host& host, Transfer transfer, const std::string& named, const std::string& connection, const char* key)
{
    const auto& around = host.around();
    const StorePlace source(host.folder(), named, key, around);
    if (!source.is_file()) {
        throw HostError("Transfer", "The " + transfer.store +
                                        " of the application folder stands on a server already; only a file of the "
                                        "folder can be copied to one.");
    }
    const bool has_scheme = connection.starts_with("odbc:");
    const StorePlace target(host.folder(), has_scheme ? connection : "odbc:" + connection, key, around);
    transfer.file = source.file();
    transfer.connection = target.server();
    ProgressBar bar(around.err, host.is_watched(), "Rows");
    transfer.on_rows = [&](size_t done, size_t total) { bar.show(done, total); };
    const size_t rows = run_transfer(transfer);
    bar.clear();
    host.say("The " + transfer.store + ": " + std::to_string(rows) + " rows in " +
             std::to_string(transfer.tables.size()) + " tables.");
}

ExitStatus transfer(Host& host, const TransferOptions& options)
{
    if (options.database.empty() && options.accounting.empty()) {
        throw UsageError("--database, --accounting or both say where the rows go.");
    }
    const auto config = read_host_config(host.folder());
    const auto product = stores::product_tables();
    const auto accounting = stores::accounting_tables();
    Transfer wanted;
    wanted.replace = options.replace;
    if (!options.database.empty()) {
        wanted.store = "database";
        wanted.tables = product;
        wanted.with_procedures = true;
        copy_store(host, wanted, config.database, options.database, "Database");
    }
    if (!options.accounting.empty()) {
        wanted.store = "accounting store";
        wanted.tables = accounting;
        wanted.with_procedures = false;
        copy_store(host, wanted, config.accounting, options.accounting, "Accounting");
    }
    return ExitStatus::Delivered;
}

}  // namespace

void add_server_commands(CLI::App& program, CommandBody& chosen)
{
    auto* printed = program.add_subcommand("schema", "Print the tables and procedures of a database server");
    const auto server = std::make_shared<SchemaOptions>();
    printed->add_option("SERVER", server->server, "sqlite, mariadb, postgresql, sqlserver or pervasive")->required();
    printed->add_flag("--accounting", server->accounting, "The accounting store instead of the product's database");
    bind(*printed, chosen, server, schema);

    auto* copied = program.add_subcommand("transfer", "Copy the folder's rows to a database server");
    const auto options = std::make_shared<TransferOptions>();
    copied->add_option("--database", options->database, "Where the product's database goes: odbc:CONNECTION STRING");
    copied->add_option("--accounting", options->accounting, "Where the accounting store goes");
    copied->add_flag("--replace", options->replace, "Rows that stand there already go");
    bind(*copied, chosen, options, transfer);
}

}  // namespace velora
