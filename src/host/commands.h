#pragma once

#include <functional>

#include "host/host.h"
#include "host/host_error.h"

namespace CLI {
class App;
}

namespace velora {

using CommandBody = std::function<ExitStatus(Host&)>;

// Each adds a family of commands; the one that is named on the command line puts its body into `chosen`.
void add_folder_commands(CLI::App& program, CommandBody& chosen);
void add_server_commands(CLI::App& program, CommandBody& chosen);
void add_kind_commands(CLI::App& program, CommandBody& chosen);
void add_render_command(CLI::App& program, CommandBody& chosen);
void add_fields_command(CLI::App& program, CommandBody& chosen);
void add_quotes_command(CLI::App& program, CommandBody& chosen);
void add_report_list_commands(CLI::App& program, CommandBody& chosen);
void add_window_commands(CLI::App& program, CommandBody& chosen);
void add_mail_command(CLI::App& program, CommandBody& chosen);
void add_manual_command(CLI::App& program, CommandBody& chosen);
void add_drive_command(CLI::App& program, CommandBody& chosen);

/// What "email" does without a recipient.
ExitStatus open_email_window(Host& host);

/// A command whose report or window is not in this build says so.
ExitStatus not_available(Host& host, std::string_view what);

}  // namespace velora
