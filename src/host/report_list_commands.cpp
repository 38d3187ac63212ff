#include <algorithm>
#include <filesystem>

#include "adapters/ini/locked_folder.h"
#include "host/bind.h"
#include "host/kinds.h"
#include "reports/report_lists.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

struct EntryOptions {
    std::string kind;
    std::string name;
    std::string file;
};

/// Held from reading a list to writing it, so that of two runs that change it at once neither loses the other's
/// entry. The list files lie in a folder below, which writing them locks for itself.
ini::LockedFolder turn_to_change(Host& host)
{
    return ini::LockedFolder(host.company().ports.application_folder);
}

/// The entries of the kind's list file, which several kinds may share.
SessionState& open_list(Host& host, const ReportKind& kind)
{
    SessionState& state = host.company();
    state.gWhichReport = kind.which;
    Read_ReportList(state);
    return state;
}

auto find_entry(SessionState& state, const ReportKind& kind, const std::string& name)
{
    return std::ranges::find_if(
        state.gReportList, [&](const ReportListEntry& entry) { return entry.Type == kind.type && entry.Name == name; });
}

void print_list(Host& host, const ReportKind& kind)
{
    for (const ReportListEntry& entry : open_list(host, kind).gReportList) {
        if (entry.Type != kind.type) continue;
        host.around().out << kind.name << '\t' << entry.Name << '\t' << entry.Location << '\n';
    }
}

ExitStatus list_reports(Host& host, const EntryOptions& options)
{
    if (options.kind.empty()) {
        for (const ReportKind& each : report_kinds()) print_list(host, each);
    } else {
        print_list(host, require_kind(options.kind));
    }
    return host.user().boxes().empty() ? ExitStatus::Delivered : ExitStatus::Told;
}

ExitStatus add_report(Host& host, const EntryOptions& options)
{
    const ReportKind& kind = require_kind(options.kind);
    const fs::path file = fs::absolute(options.file).lexically_normal();
    if (!fs::is_regular_file(file)) {
        throw HostError("Report Not Found", "There is no report definition \"" + file.string() + "\".");
    }
    const auto turn = turn_to_change(host);
    SessionState& state = open_list(host, kind);
    if (find_entry(state, kind, options.name) != state.gReportList.end()) {
        throw HostError("Report List", "The list of \"" + options.kind + "\" has a report named \"" + options.name +
                                           "\" already. Remove it first, or choose another name.");
    }
    state.gReportList.push_back({options.name, file.string(), kind.type});
    Write_ReportList(state);
    host.say("\"" + options.name + "\" is on the list of \"" + options.kind + "\".");
    return ExitStatus::Delivered;
}

ExitStatus remove_report(Host& host, const EntryOptions& options)
{
    const ReportKind& kind = require_kind(options.kind);
    const auto turn = turn_to_change(host);
    SessionState& state = open_list(host, kind);
    const auto found = find_entry(state, kind, options.name);
    if (found == state.gReportList.end()) {
        throw HostError("Report List", "The list of \"" + options.kind + "\" has no report named \"" + options.name +
                                           "\". \"velora-report lists\" shows what there is.");
    }
    state.gReportList.erase(found);
    write_shorter_report_list(state);
    host.say("\"" + options.name + "\" is off the list of \"" + options.kind + "\". Its file stays.");
    return ExitStatus::Delivered;
}

}  // namespace

void add_report_list_commands(CLI::App& program, CommandBody& chosen)
{
    const std::string kinds = "Report kind: " + kind_names();
    const auto options = std::make_shared<EntryOptions>();

    auto* lists = program.add_subcommand("lists", "Show the report lists: kind, name, definition");
    lists->add_option("KIND", options->kind, kinds + " (default: all)");
    bind(*lists, chosen, options, list_reports);

    auto* add = program.add_subcommand("add-report", "Add a report to the list of a kind");
    add->add_option("KIND", options->kind, kinds)->required();
    add->add_option("NAME", options->name, "Name shown in the list")->required();
    add->add_option("FILE", options->file, "Report definition")->required();
    bind(*add, chosen, options, add_report);

    auto* remove = program.add_subcommand("remove-report", "Take a report off the list of a kind");
    remove->add_option("KIND", options->kind, kinds)->required();
    remove->add_option("NAME", options->name, "Name shown in the list")->required();
    bind(*remove, chosen, options, remove_report);
}

}  // namespace velora
