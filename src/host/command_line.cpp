#include "host/command_line.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <ostream>

#include "host/commands.h"
#include "host/options.h"
#include "values/fault.h"

namespace velora {
namespace {

constexpr const char* kExitStatuses =
    "Exit status: 0 delivered, 1 a message box said why not, 2 wrong usage, 3 no data.";

void declare(CLI::App& program, CommonOptions& common, CommandBody& chosen)
{
    program.name("velora-report");
    program.description("Quotes, orders and lists of a company as documents.");
    program.footer(kExitStatuses);
    program.set_version_flag("--version", "velora-report " VELORA_VERSION);
    program.require_subcommand(0, 1);  // a word that is no command is then named in the message
    program.fallthrough();
    add_common_options(program, common);
    for (const auto add : {add_folder_commands, add_document_commands, add_list_commands, add_engine_commands,
                           add_report_list_commands, add_window_commands}) {
        add(program, chosen);
    }
}

ExitStatus complain(const Surroundings& around, const std::string& what)
{
    around.err << what << "\nRun with --help for more information.\n";
    return ExitStatus::Usage;
}

/// What a command throws becomes a message box.
ExitStatus run_guarded(Host& host, const CommandBody& body)
{
    try {
        return body(host);
    } catch (const HostError& error) {
        host.tell(error.title(), error.what());
    } catch (const Fault& caught) {
        std::string text = std::to_string(caught.number()) + ": " + caught.description();
        if (!caught.where().empty()) text += "\r\n" + caught.where();
        host.tell("Reporting Error", text);
    }
    return ExitStatus::Told;
}

}  // namespace

ExitStatus run_command_line(std::span<const std::string> arguments, const Surroundings& around)
{
    CLI::App program;
    CommonOptions common;
    CommandBody chosen;
    declare(program, common, chosen);
    try {
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        const bool asked_for = program.exit(error, around.out, around.err) == 0;
        return asked_for ? ExitStatus::Delivered : ExitStatus::Usage;
    }
    if (!chosen) return complain(around, "No subcommand is named.");
    try {
        Host host(common, around);
        return run_guarded(host, chosen);
    } catch (const UsageError& error) {
        return complain(around, error.what());
    } catch (const HostError& error) {
        around.err << error.title() << '\n' << error.what() << '\n';
    } catch (const std::exception& error) {
        around.err << "Reporting Error\n" << error.what() << '\n';
    }
    return ExitStatus::Told;
}

}  // namespace velora
