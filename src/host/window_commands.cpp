#include <CLI/CLI.hpp>

#include "host/commands.h"
#include "host/kinds.h"

namespace velora {

void add_window_commands(CLI::App& program, CommandBody& chosen)
{
    auto* open = program.add_subcommand("open", "Open the report selection window");
    auto kind = std::make_shared<std::string>("quote");
    open->add_option("KIND", *kind, "Report kind to open on");
    open->callback([kind, &chosen] {
        chosen = [kind](Host& host) {
            (void)require_kind(*kind);
            return not_available(host, "report selection window");
        };
    });

    auto* options = program.add_subcommand("options", "Open the options window");
    auto pane = std::make_shared<std::string>("printer");
    options
        ->add_option("PANE", *pane,
                     "printer, quote, expiration, checklist, confirmation, picking-slip, export, email, "
                     "log, misc")
        ->check(CLI::IsMember({"printer", "quote", "expiration", "checklist", "confirmation", "picking-slip", "export",
                               "email", "log", "misc"}));
    options->callback(
        [pane, &chosen] { chosen = [pane](Host& host) { return not_available(host, "options window"); }; });

    auto* email = program.add_subcommand("email", "Open the e-mail window");
    email->callback([&chosen] { chosen = [](Host& host) { return not_available(host, "e-mail window"); }; });
}

}  // namespace velora
