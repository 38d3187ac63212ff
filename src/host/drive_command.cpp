#include "host/drive_command.h"

#include <fstream>
#include <iostream>

#include "forms/desk.h"
#include "forms/hands.h"
#include "host/bind.h"
#include "host/drive/driver.h"
#include "service/report.h"

namespace velora {
namespace {

/// The application around the component: it keeps what it hands in, since the state holds what the latest call gave.
drive::HostCalls calls_of(SessionState& state)
{
    const auto session = state.gSess;
    const auto database = state.gConn;
    const WhichEngine engine = state.gEngine;
    const bool multi_currency = state.gMultiCurr;
    const std::string user = state.gSessUser;
    return {
        [=, &state](WhichReport kind, int32_t quote_id) {
            Report(state).Open_Reports(session, database, true, engine, kind, multi_currency, user, quote_id);
        },
        [=, &state](WhichFrame pane) { Report(state).Show_Printers(session, database, true, engine, pane); },
        [=, &state] { Report(state).Show_Emailer(session, true, engine); },
    };
}

struct DriveOptions {
    std::string file;
};

}  // namespace

ExitStatus drive_forms(Host& host, std::istream& script)
{
    SessionState& state = host.company();
    forms::Desk desk(state);
    drive::ScriptedUser user(host.user());
    forms::Hands hands;
    state.ports.user = &user;
    state.ports.windows = &desk;
    drive::Driver driver(desk, user, hands, calls_of(state), script, host.around().out);
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
    bind(*command, chosen, options, [](Host& host, const DriveOptions& read) {
        if (read.file.empty()) return drive_forms(host, std::cin);
        std::ifstream script(read.file);
        if (!script) throw UsageError("The script \"" + read.file + "\" cannot be read.");
        return drive_forms(host, script);
    });
}

}  // namespace velora
