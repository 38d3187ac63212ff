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
    "Exit status: 0 delivered, 1 a message box said why not, 2 wrong usage, 3 no data, 4 delivered with message boxes; "
    "of several documents the worst, in the order 2, 1, 4, 3, 0.\n"
    "\"velora-report help COMMAND\" tells of one command.\n";

void declare(CLI::App& program, CommonOptions& common, CommandBody& chosen)
{
    program.name("velora-report");
    program.description("Quotes, orders and lists of a company as documents.");
    program.footer(kExitStatuses);
    program.set_version_flag("--version", "velora-report " VELORA_VERSION);
    program.require_subcommand(0, 1);
    program.fallthrough();
    add_common_options(program, common);
    for (const auto add : {add_folder_commands, add_server_commands, add_kind_commands, add_quotes_command,
                           add_render_command, add_fields_command, add_report_list_commands, add_mail_command,
                           add_manual_command, add_window_commands, add_drive_command}) {
        add(program, chosen);
    }
    program.allow_extras();  // what no command takes is told by name
}

ExitStatus complain(const Surroundings& around, const std::string& what)
{
    around.err << what << "\nRun with --help for more information.\n";
    return ExitStatus::Usage;
}

std::string command_names(const CLI::App& program)
{
    std::string names;
    for (const CLI::App* command : program.get_subcommands(nullptr)) {
        if (!command->get_group().empty()) names.append(names.empty() ? "" : ", ").append(command->get_name());
    }
    return names;
}

/// "help" and "help COMMAND" ask for what "--help" prints.
std::vector<std::string> with_help_as_option(std::span<const std::string> arguments)
{
    std::vector<std::string> words(arguments.begin(), arguments.end());
    if (words.empty() || words.front() != "help") return words;
    words.erase(words.begin());
    words.emplace_back("--help");
    return words;
}

ExitStatus complain_of_words(const CLI::App& program, const Surroundings& around)
{
    const std::string word = program.remaining().front();
    if (!program.get_subcommands().empty() || word.starts_with('-')) {
        return complain(around, "\"" + word + "\" was not expected.");
    }
    return complain(around, "There is no command \"" + word + "\". The commands are: " + command_names(program) + ".");
}

}  // namespace

ExitStatus run_command_line(std::span<const std::string> arguments, const Surroundings& around)
{
    CLI::App program;
    CommonOptions common;
    CommandBody chosen;
    declare(program, common, chosen);
    try {
        auto words = with_help_as_option(arguments);
        std::ranges::reverse(words);  // as the parser takes them
        program.parse(std::move(words));
    } catch (const CLI::CallForHelp& asked) {
        if (!program.remaining().empty()) return complain_of_words(program, around);
        program.exit(asked, around.out, around.err);
        return ExitStatus::Delivered;
    } catch (const CLI::ParseError& error) {
        const bool asked_for = program.exit(error, around.out, around.err) == 0;
        return asked_for ? ExitStatus::Delivered : ExitStatus::Usage;
    }
    if (!program.remaining().empty()) return complain_of_words(program, around);
    if (!chosen) {
        around.err << program.help();
        return ExitStatus::Usage;
    }
    try {
        Host host(common, around);
        return host.guard([&] {
            const ExitStatus status = chosen(host);
            host.wait_for_windows();
            return status;
        });
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
