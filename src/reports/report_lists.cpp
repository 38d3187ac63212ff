#include "reports/report_lists.h"

#include <algorithm>
#include <filesystem>
#include <limits>

#include "session/company.h"
#include "session/error_messengers.h"
#include "session/settings.h"
#include "values/number_text.h"
#include "values/text.h"

namespace velora {

namespace {

namespace fs = std::filesystem;

/// The order menu lists what the order kinds share.
const ReportKind& kind_of_list(WhichReport kind)
{
    return report_kind(kind == eRptAllOrderMenu ? eRptOrderChecklist : kind);
}

ProfileFile& profiles(SessionState& state)
{
    if (state.ports.profiles == nullptr) throw fault::object_not_set("profiles");
    return *state.ports.profiles;
}

std::string report_section(size_t number)
{
    return "Report #" + std::to_string(number);
}

int16_t type_of(std::string_view text, const std::string& section)
{
    using Limits = std::numeric_limits<int16_t>;
    const double number = leading_number(text);
    if (number < Limits::min() || number > Limits::max()) throw fault::overflow(section);
    return static_cast<int16_t>(number);
}

/// The change that makes a file hold these entries; sections past their end stay.
ProfileChange change_to(std::span<const ReportListEntry> entries)
{
    ProfileChange change;
    change.written.push_back({"Reports", "Number", std::to_string(entries.size())});
    for (size_t at = 0; at < entries.size(); ++at) {
        const std::string section = report_section(at + 1);
        change.written.push_back({section, "Name", entries[at].Name});
        change.written.push_back({section, "Location", entries[at].Location});
        change.written.push_back({section, "Type", std::to_string(entries[at].Type)});
    }
    return change;
}

bool is_file(const fs::path& path)
{
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

/// Whether the path lies in the Reports of an application folder other than the one at hand: of the one that this is
/// a copy of, or of a place where it no longer is.
bool lies_in_other_reports(const fs::path& path)
{
    const fs::path folder = path.parent_path();
    return folder.filename() == "Reports" && (!is_file(path) || is_file(folder.parent_path() / "velora.ini"));
}

bool is_chosen(SessionState& state, const DefaultSetting& choice)
{
    if (choice.location.empty()) return false;
    return choice.flag.empty() || same_name(trimmed(setting(state, choice.flag, "False")), "True");
}

/// The entries of the kind, whose list file others may share.
std::vector<ReportListEntry> entries_of(SessionState& state, const ReportKind& kind)
{
    state.gWhichReport = kind.which;
    Read_ReportList(state);
    std::vector<ReportListEntry> entries;
    std::ranges::copy_if(state.gReportList, std::back_inserter(entries),
                         [&](const ReportListEntry& entry) { return entry.Type == kind.type; });
    return entries;
}

}  // namespace

std::string list_file_name(std::string_view company_id, WhichReport kind)
{
    return std::string(company_id).append(kind_of_list(kind).list_file);
}

std::string INIFile(SessionState& state, WhichReport kind)
{
    return with_failure_path(state, ErrorMessenger, "modGeneral.INIFile", [&] {
        std::string path = application_path(state, "Reports", list_file_name(company_id(state), kind));
        if (!profiles(state).exists(path))
            write_default_list(profiles(state), kind, path, application_path(state, "Reports"));
        return path;
    });
}

std::string Read_ProfileString(SessionState& state, std::string_view section, std::string_view key)
{
    return profiles(state).read(INIFile(state, state.gWhichReport), section, key);
}

void Write_ProfileString(SessionState& state, std::string_view section, std::string_view key, std::string_view value)
{
    profiles(state).write(INIFile(state, state.gWhichReport), section, key, value);
}

void Delete_ProfileSection(SessionState& state, std::string_view section)
{
    profiles(state).delete_section(INIFile(state, state.gWhichReport), section);
}

void Read_ReportList(SessionState& state)
{
    const std::string path = INIFile(state, state.gWhichReport);
    const auto& file = profiles(state);
    const double count = leading_number(file.read(path, "Reports", "Number"));
    state.gReportList.clear();
    for (size_t number = 1; static_cast<double>(number) <= count; ++number) {
        const std::string section = report_section(number);
        const std::string name = file.read(path, section, "Name");
        const std::string location = file.read(path, section, "Location");
        const std::string type = file.read(path, section, "Type");
        if (name.empty() && location.empty() && type.empty()) return;  // whatever the count says
        state.gReportList.push_back({name, definition_path(state, location), type_of(type, section)});
    }
}

void Write_ReportList(SessionState& state)
{
    profiles(state).change(INIFile(state, state.gWhichReport), change_to(state.gReportList));
}

void replace_report_list(SessionState& state, size_t sections)
{
    ProfileChange change = change_to(state.gReportList);
    for (size_t number = 1; number <= sections; ++number) change.deleted_sections.push_back(report_section(number));
    profiles(state).change(INIFile(state, state.gWhichReport), change);
}

void write_shorter_report_list(SessionState& state)
{
    ProfileChange change = change_to(state.gReportList);
    change.deleted_sections.push_back(report_section(state.gReportList.size() + 1));
    profiles(state).change(INIFile(state, state.gWhichReport), change);
}

void write_default_list(ProfileFile& profiles, WhichReport kind, const std::string& path, const fs::path& definitions)
{
    std::vector<ReportListEntry> entries;
    for (const ReportKind& each : report_kinds()) {
        if (each.list_file != kind_of_list(kind).list_file) continue;
        for (const std::string_view name : each.shipped) {
            if (name.empty()) continue;
            entries.push_back({std::string(name), (definitions / (std::string(name) + ".rpt")).string(), each.type});
        }
    }
    profiles.change(path, change_to(entries));
}

std::string definition_path(const SessionState& state, std::string_view location)
{
    if (location.empty()) return {};
    const fs::path reports = application_path(state, "Reports", {});
    const fs::path named = location;
    if (named.is_relative()) return (reports / named).lexically_normal().string();
    const fs::path here = reports / named.filename();
    return lies_in_other_reports(named) && is_file(here) ? here.string() : named.string();
}

std::string default_definition(SessionState& state, const ReportKind& kind)
{
    for (const DefaultSetting& choice : kind.defaults) {
        if (!is_chosen(state, choice)) continue;
        const std::string location = setting(state, choice.location, "");
        if (!location.empty()) return definition_path(state, location);
    }
    const auto entries = entries_of(state, kind);
    return entries.empty() ? std::string() : entries.front().Location;
}

std::string listed_definition(SessionState& state, const ReportKind& kind, std::string_view name)
{
    const auto entries = entries_of(state, kind);
    const auto found = std::ranges::find_if(
        entries, [&](const ReportListEntry& entry) { return same_name(trimmed(entry.Name), trimmed(name)); });
    return found == entries.end() ? std::string() : found->Location;
}

}  // namespace velora
