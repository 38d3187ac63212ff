#include "host/bind.h"
#include "host/kinds.h"

namespace velora {
namespace {

struct WindowOptions {
    std::string kind = "quote";
    std::string pane = "printer";
};

}  // namespace

/// The windows are not part of this build: the commands answer, and no help lists them.
void add_window_commands(CLI::App& program, CommandBody& chosen)
{
    const auto options = std::make_shared<WindowOptions>();

    auto* open = program.add_subcommand("open", "Open the report selection window")->group("");
    open->add_option("KIND", options->kind, "Report kind to open on: " + kind_names());
    bind(*open, chosen, options, [](Host& host, const WindowOptions& read) {
        (void)require_kind(read.kind);
        return not_available(host, "the report selection window");
    });

    const std::vector<std::string> panes{"printer",      "quote",  "expiration", "checklist", "confirmation",
                                         "picking-slip", "export", "email",      "log",       "misc"};
    auto* settings = program.add_subcommand("options", "Open the options window")->group("");
    settings->add_option("PANE", options->pane, "Pane to open on")->check(CLI::IsMember(panes));
    bind(*settings, chosen, options,
         [](Host& host, const WindowOptions&) { return not_available(host, "the options window"); });

    auto* email = program.add_subcommand("email", "Open the e-mail window")->group("");
    bind(*email, chosen, options,
         [](Host& host, const WindowOptions&) { return not_available(host, "the e-mail window"); });
}

}  // namespace velora
