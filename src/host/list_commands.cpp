#include <CLI/CLI.hpp>

#include "host/commands.h"
#include "host/documents.h"
#include "reports/custom_report.h"
#include "reports/customer_list.h"

namespace velora {
namespace {

/// Criteria of the lists that have them.
struct Criteria {
    std::string from, to;
    std::string accounting_customer;
    int32_t customer = 0;
    int32_t status = 0;
    int32_t reason = 0;
};

struct ListOptions {
    Criteria criteria;
    DeliveryOptions delivery;
};

struct CustomOptions {
    std::string file;
    std::string name;
    DeliveryOptions delivery;
};

std::string iso_date(const std::string& text)
{
    return text.size() == 10 && DateTime::from_iso(text) ? "" : "\"" + text + "\" is no date of the form YYYY-MM-DD";
}

void add_criteria(CLI::App& command, Criteria& criteria, bool with_status)
{
    auto* from = command.add_option("--from", criteria.from, "First quote date")->check(iso_date)->type_name("DATE");
    auto* to = command.add_option("--to", criteria.to, "Last quote date")->check(iso_date)->type_name("DATE");
    from->needs(to);
    to->needs(from);
    auto* accounting = command
                           .add_option("--accounting-customer", criteria.accounting_customer,
                                       "Quotes of one customer of the accounting system")
                           ->type_name("NO");
    command.add_option("--customer", criteria.customer, "Quotes of one customer of the product's own")
        ->type_name("ID")
        ->excludes(accounting);
    if (!with_status) return;
    command.add_option("--status", criteria.status, "Quotes of one status")->type_name("ID");
    command.add_option("--reason", criteria.reason, "Lost quotes of one reason")->type_name("ID");
}

ExitStatus print_customers(Host& host, const ListOptions& options)
{
    Documents documents(host, options.delivery, require_kind("customers"), 1);
    documents.deliver([&](SessionState& state, const Route& route) {
        Print_CustomerList(state, route.definition, route.preview, route.export_it);
    });
    return documents.finish();
}

ExitStatus print_custom(Host& host, CustomOptions& options)
{
    namespace fs = std::filesystem;
    if (options.name.empty()) options.name = fs::path(options.file).stem().string();
    options.delivery.definition = options.file;
    Documents documents(host, options.delivery, require_kind("custom"), 1);
    documents.deliver([&](SessionState& state, const Route& route) {
        Custom_Reports(state, route.definition, options.name, route.preview, route.export_it);
    });
    return documents.finish();
}

void add_list(CLI::App& program, CommandBody& chosen, const char* name, const char* text)
{
    const std::string_view which = name;
    auto* command = program.add_subcommand(name, text);
    auto options = std::make_shared<ListOptions>();
    const bool has_criteria = which != "customers" && which != "items" && which != "expiration";
    if (has_criteria) add_criteria(*command, options->criteria, which == "overview");
    add_delivery_options(*command, options->delivery);
    add_pipe_option(*command, options->delivery);
    command->callback([options, which, text, &chosen] {
        chosen = [options, which, text](Host& host) {
            return which == "customers" ? print_customers(host, *options) : not_available(host, text);
        };
    });
}

}  // namespace

void add_list_commands(CLI::App& program, CommandBody& chosen)
{
    add_list(program, chosen, "expiration", "list of quotes about to expire");
    add_list(program, chosen, "customers", "list of customers not yet in the accounting system");
    add_list(program, chosen, "items", "list of items not yet in the accounting system");
    add_list(program, chosen, "win-loss", "graph of quotes won and lost");
    add_list(program, chosen, "lost-reasons", "graph of reasons for lost quotes");
    add_list(program, chosen, "back-orders", "list of items on back order");
    add_list(program, chosen, "overview", "overview of quotes");

    auto* custom = program.add_subcommand("custom", "report whose definition brings its own data");
    auto options = std::make_shared<CustomOptions>();
    custom->add_option("FILE", options->file, "Report definition")->required();
    custom->add_option("--name", options->name, "Name of the report (default: that of the file)")->type_name("TEXT");
    add_delivery_options(*custom, options->delivery);
    custom->remove_option(custom->get_option("--definition"));
    custom->callback([options, &chosen] { chosen = [options](Host& host) { return print_custom(host, *options); }; });
}

}  // namespace velora
