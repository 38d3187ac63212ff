#include "host/drive_command.h"

#include <fstream>
#include <iostream>

#include "forms/desk.h"
#include "forms/hands.h"
#include "host/bind.h"
#include "host/drive/driver.h"
#include "host/open_windows.h"
#include "host/windows_module.h"

namespace velora {
namespace {

struct DriveOptions {
    std::string file;
    bool widgets = false;
};

}  // namespace

ExitStatus drive_forms(Host& host, std::istream& script, const std::filesystem::path& windows)
{
    SessionState& state = host.company();
    forms::Desk desk(state);
    drive::ScriptedUser user(host.user());
    std::unique_ptr<forms::Toolkit> toolkit;
    if (!windows.empty()) toolkit = open_toolkit(windows, desk, {.places = {}, .is_scripted = true});
    forms::Hands bare_hands;
    if (toolkit) user.show_in(toolkit->user());
    state.ports.user = &user;
    state.ports.windows = &desk;
    drive::Driver driver(desk, user, toolkit ? toolkit->hands() : bare_hands, host_calls(state), script,
                         host.around().out);
    const bool understood = driver.run();
    state.ports.user = &host.user();
    state.ports.windows = nullptr;
    if (understood) return ExitStatus::Delivered;
    throw UsageError("Line " + std::to_string(driver.line()) + " of the script is no JSON.");
}

void add_drive_command(CLI::App& program, CommandBody& chosen)
{
    auto* command = program.add_subcommand("drive", "Act on the windows by a script: JSON in, JSON out");
    const auto options = std::make_shared<DriveOptions>();
    command->add_option("FILE", options->file, "Script, an object a line (default: standard input)");
    command->add_flag("--qt", options->widgets, "Act on the windows' widgets by keys and clicks");
    bind(*command, chosen, options, [](Host& host, const DriveOptions& read) {
        const auto windows = read.widgets ? windows_module(host.around().program) : std::filesystem::path();
        if (read.file.empty()) return drive_forms(host, std::cin, windows);
        std::ifstream script(read.file);
        if (!script) throw UsageError("The script \"" + read.file + "\" cannot be read.");
        return drive_forms(host, script, windows);
    });
}

}  // namespace velora
