#include <CLI/CLI.hpp>

#include <charconv>

#include "host/commands.h"
#include "host/documents.h"
#include "service/report.h"

namespace velora {
namespace {

struct DocumentOptions {
    std::vector<std::string> quotes;
    bool by_number = false;
    bool whole_quantities = false;
    DeliveryOptions delivery;
};

int32_t id_of_text(const std::string& text)
{
    int32_t id = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
    if (error != std::errc{} || end != text.data() + text.size()) {
        throw UsageError("\"" + text +
                         "\" is no quote id, which is a whole number. To name quotes by their number, "
                         "add --number.");
    }
    return id;
}

int32_t id_of_number(SessionState& state, const std::string& number)
{
    auto query = Command::statement("SELECT QuoteID FROM Quote WHERE (QuoteNumber = ?)");
    query.parameters.push_back({"Number", number});
    const auto rows = connection(state).Open(query, Cursor::Client);
    if (rows->is_empty()) {
        throw HostError("Invalid Input", "The Quote number \"" + number +
                                             "\" cannot be found.\r\nPlease check the "
                                             "Quote number and try again.");
    }
    return to_int32(rows->value("QuoteID"));
}

std::vector<int32_t> quote_ids(Host& host, const DocumentOptions& options)
{
    std::vector<int32_t> ids;
    for (const std::string& quote : options.quotes) {
        ids.push_back(options.by_number ? id_of_number(host.company(), quote) : id_of_text(quote));
    }
    return ids;
}

/// The tax group whose authorities the service loads first; blank for a quote that is not there.
std::string tax_group_of(SessionState& state, int32_t quote_id)
{
    auto query = Command::statement("SELECT quTaxGroup FROM Quote WHERE (QuoteID = ?)");
    query.parameters.push_back({"QID", quote_id});
    const auto rows = connection(state).Open(query, Cursor::Client);
    if (rows->is_empty() || rows->value("quTaxGroup").is_null()) return {};
    return trimmed_text(rows->value("quTaxGroup"));
}

ExitStatus print_quotes(Host& host, const DocumentOptions& options)
{
    const auto ids = quote_ids(host, options);
    Documents documents(host, options.delivery, require_kind("quote"), ids.size());
    const HostConfig& config = host.config();
    for (const int32_t id : ids) {
        documents.deliver([&](SessionState& state, const Route& route) {
            const bool multi_currency = config.multi_currency.value_or(accounting(state).Company().Multicurrency);
            Report(state).Print_CurrentQuote(state.gSess, state.gConn, config.engine, multi_currency, id,
                                             tax_group_of(state, id), 0, route.definition, route.export_it,
                                             route.preview);
        });
    }
    return documents.finish();
}

using DocumentBody = ExitStatus (*)(Host&, const DocumentOptions&);

CLI::App* add_document_command(CLI::App& program, CommandBody& chosen, const char* name, const char* text,
                               DocumentBody body)
{
    auto* command = program.add_subcommand(name, text);
    auto options = std::make_shared<DocumentOptions>();
    command->add_option("ID", options->quotes, "Quote ids")->required();
    command->add_flag("--number", options->by_number, "The IDs are quote numbers");
    if (std::string_view(name) == "picking-slip") {
        command->add_flag("--whole-quantities", options->whole_quantities, "Print quantities as whole numbers");
    }
    add_delivery_options(*command, options->delivery);
    add_pipe_option(*command, options->delivery);
    command->callback(
        [options, body, &chosen] { chosen = [options, body](Host& host) { return body(host, *options); }; });
    return command;
}

}  // namespace

void add_document_commands(CLI::App& program, CommandBody& chosen)
{
    add_document_command(program, chosen, "quote", "Quotes", print_quotes);
    add_document_command(program, chosen, "confirmation", "Order confirmations",
                         [](Host& host, const DocumentOptions&) { return not_available(host, "order confirmation"); });
    add_document_command(program, chosen, "picking-slip", "Picking slips",
                         [](Host& host, const DocumentOptions&) { return not_available(host, "picking slip"); });
    add_document_command(program, chosen, "checklist", "Order checklists",
                         [](Host& host, const DocumentOptions&) { return not_available(host, "order checklist"); });
}

ExitStatus not_available(Host& host, const std::string& what)
{
    host.tell("Not Available", "This build does not have the " + what + " yet.", Icon::Exclamation);
    return ExitStatus::Told;
}

}  // namespace velora
