#include "host/manual.h"

#include <CLI/CLI.hpp>

#include "values/text.h"

namespace velora {
namespace {

constexpr const char* kProgram = "velora-report";

/// A text of a manual page: what begins a request or an escape there stands for itself.
std::string roff(const std::string& text)
{
    std::string safe = replaced(replaced(text, "\\", "\\e"), "-", "\\-");
    safe = replaced(safe, "\n.", "\n\\&.");
    return safe.starts_with('.') || safe.starts_with('\'') ? "\\&" + safe : safe;
}

/// Between single quotes of a shell.
std::string quoted(const std::string& text)
{
    return "'" + replaced(text, "'", "'\\''") + "'";
}

/// As zsh takes it, to which colons and brackets have a meaning.
std::string zsh_text(std::string text)
{
    for (const char* mark : {"\\", ":", "[", "]"}) text = replaced(text, mark, std::string("\\") + mark);
    return text;
}

bool is_file(const std::string& value)
{
    return value.find("FILE") != std::string::npos || value.find("DIR") != std::string::npos;
}

bool is_listed(const CLI::App& command)
{
    return !command.get_group().empty();
}

}  // namespace

Manual::Manual(const CLI::App& program)
    : program_{kProgram, program.get_description(), entries_of(program)}, footer_(program.get_footer())
{
    for (const CLI::App* command : program.get_subcommands(nullptr)) {
        if (is_listed(*command)) {
            commands_.push_back({command->get_name(), command->get_description(), entries_of(*command)});
        }
    }
}

std::vector<Manual::Entry> Manual::entries_of(const CLI::App& command)
{
    std::vector<Entry> entries;
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_group().empty()) continue;
        const bool takes_value = option->get_items_expected_max() > 0;
        const std::string type = takes_value ? option->get_type_name() : "";
        if (option->get_lnames().empty()) {
            entries.push_back({"", option->get_name(), option->get_description()});
        } else {
            entries.push_back({"--" + option->get_lnames().front(), type, option->get_description()});
        }
    }
    return entries;
}

std::string Manual::command_names() const
{
    std::string names;
    for (const Command& command : commands_) names += (names.empty() ? "" : " ") + command.name;
    return names;
}

std::string Manual::man_entries(const std::vector<Entry>& entries)
{
    std::string text;
    for (const Entry& entry : entries) {
        text += ".TP\n";
        if (!entry.flag.empty()) text += "\\fB" + roff(entry.flag) + "\\fR";
        if (!entry.value.empty()) text += (entry.flag.empty() ? "\\fI" : " \\fI") + roff(entry.value) + "\\fR";
        text += "\n" + roff(entry.about) + "\n";
    }
    return text;
}

std::string Manual::man_page() const
{
    std::string page = ".TH VELORA\\-REPORT 1 \"\" \"" + std::string(kProgram) + " " VELORA_VERSION "\"\n.SH NAME\n";
    page += roff(kProgram) + " \\- quotes, orders and lists of a company as documents\n.SH SYNOPSIS\n.B " +
            roff(kProgram) + "\n[\\fIOPTION\\fR...] \\fICOMMAND\\fR [\\fIARGUMENT\\fR...]\n";
    page += ".SH DESCRIPTION\n" + roff(program_.about) + "\n.SH OPTIONS\n" + man_entries(program_.entries);
    page += ".SH COMMANDS\n";
    for (const Command& command : commands_) {
        page += ".SS " + roff(command.name) + "\n" + roff(command.about) + "\n" + man_entries(command.entries);
    }
    page += ".SH EXIT STATUS\n" + roff(footer_) + (footer_.ends_with('\n') ? "" : "\n");
    page += ".SH ENVIRONMENT\n.TP\n.B VELORA_FOLDER\nApplication folder where \\fB\\-\\-folder\\fR names none.\n";
    page += ".TP\n.B XDG_CONFIG_HOME\nWhere the user's settings are kept, else \\fI~/.config\\fR.\n";
    return page;
}

std::string Manual::bash() const
{
    const auto flags = [](const Command& command) {
        std::string words;
        for (const Entry& entry : command.entries) {
            if (!entry.flag.empty()) words += (words.empty() ? "" : " ") + entry.flag;
        }
        return words;
    };
    std::string text =
        "# bash completion of velora-report\n_velora_report()\n{\n"
        "    local current=${COMP_WORDS[COMP_CWORD]} command= word flags=\n"
        "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
        "        case \" " +
        command_names() +
        " \" in\n"
        "            *\" $word \"*) command=$word; break ;;\n        esac\n    done\n"
        "    case $command in\n";
    for (const Command& command : commands_) {
        text += "        " + command.name + ") flags=" + quoted(flags(command)) + " ;;\n";
    }
    text += "    esac\n    if [[ $current == -* ]]; then\n        mapfile -t COMPREPLY < <(compgen -W \"$flags " +
            flags(program_) +
            "\" -- \"$current\")\n    elif [[ -z $command ]]; then\n        mapfile -t COMPREPLY < "
            "<(compgen -W " +
            quoted(command_names()) +
            " -- \"$current\")\n    else\n"
            "        mapfile -t COMPREPLY < <(compgen -f -- \"$current\")\n    fi\n}\n";
    return text + "complete -o filenames -F _velora_report velora-report\n";
}

std::string Manual::zsh_arguments(const std::vector<Entry>& entries)
{
    std::string text;
    for (const Entry& entry : entries) {
        std::string value = entry.value.empty() ? "" : ":" + zsh_text(entry.value) + ":";
        if (is_file(entry.value)) value += "_files";
        const std::string all =
            entry.flag.empty() ? "*" + value : entry.flag + "[" + zsh_text(entry.about) + "]" + value;
        text += " \\\n                " + quoted(all);
    }
    return text;
}

std::string Manual::zsh() const
{
    std::string text = "#compdef velora-report\n_velora_report() {\n    local context state line\n    _arguments -C" +
                       zsh_arguments(program_.entries) +
                       " \\\n                '1:command:->command' '*::argument:->argument'\n    case $state in\n"
                       "        command)\n            local -a commands=(\n";
    for (const Command& command : commands_) {
        text += "                " + quoted(zsh_text(command.name) + ":" + command.about) + "\n";
    }
    text +=
        "            )\n            _describe command commands ;;\n        argument)\n            case $words[1] in\n";
    for (const Command& command : commands_) {
        text +=
            "            " + command.name + ")\n                _arguments" + zsh_arguments(command.entries) + " ;;\n";
    }
    return text + "            esac ;;\n    esac\n}\n_velora_report \"$@\"\n";
}

std::string Manual::fish() const
{
    const auto quoted_for_fish = [](const std::string& text) {
        return "'" + replaced(replaced(text, "\\", "\\\\"), "'", "\\'") + "'";
    };
    const auto line = [&](const Entry& entry, const std::string& when) {
        const bool takes_file = is_file(entry.value);
        return "complete -c velora-report " + when + " -l " + entry.flag.substr(2) +
               (entry.value.empty() ? "" : " -r") + (takes_file ? " -F" : "") + " -d " + quoted_for_fish(entry.about) +
               "\n";
    };
    std::string text = "# fish completion of velora-report\nset -l commands " + command_names() + "\n";
    for (const Entry& entry : program_.entries) {
        if (!entry.flag.empty()) text += line(entry, "");
    }
    for (const Command& command : commands_) {
        text += "complete -c velora-report -f -n \"not __fish_seen_subcommand_from $commands\" -a " + command.name +
                " -d " + quoted_for_fish(command.about) + "\n";
        for (const Entry& entry : command.entries) {
            if (!entry.flag.empty()) text += line(entry, "-n '__fish_seen_subcommand_from " + command.name + "'");
        }
    }
    return text;
}

}  // namespace velora
