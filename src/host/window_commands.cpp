#include "host/bind.h"
#include "host/kinds.h"
#include "host/open_windows.h"

namespace velora {
namespace {

struct WindowOptions {
    std::string kind = "quote";
    std::string pane = "printer";
};

constexpr std::string_view kAllOrders = "orders";

ExitStatus open_selection(Host& host, const WindowOptions& options)
{
    const WhichReport kind = options.kind == kAllOrders ? eRptAllOrder : require_kind(options.kind).which;
    host.windows();
    host_calls(host.company()).open_reports(kind, 0);
    return ExitStatus::Delivered;
}

ExitStatus open_options(Host& host, const WindowOptions& options)
{
    const auto pane = std::ranges::find(drive::kPaneNames, options.pane);
    host.windows();
    host_calls(host.company()).show_printers(static_cast<WhichFrame>(pane - drive::kPaneNames.begin()));
    return ExitStatus::Delivered;
}

}  // namespace

void add_window_commands(CLI::App& program, CommandBody& chosen)
{
    const auto options = std::make_shared<WindowOptions>();

    auto* open = program.add_subcommand("open", "Open the report selection window");
    open->add_option("KIND", options->kind, "Report kind to open on, or \"orders\": " + kind_names());
    bind(*open, chosen, options, open_selection);

    auto* settings = program.add_subcommand("options", "Open the options window");
    settings->add_option("PANE", options->pane, "Pane to open on")
        ->check(CLI::IsMember(std::vector<std::string>(drive::kPaneNames.begin(), drive::kPaneNames.end())));
    bind(*settings, chosen, options, open_options);
}

ExitStatus open_email_window(Host& host)
{
    host.windows();
    host_calls(host.company()).show_emailer();
    return ExitStatus::Delivered;
}

}  // namespace velora
