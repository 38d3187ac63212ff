#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "reports/kinds.h"
#include "session/session_state.h"

namespace velora {

/// The path of the list file for a report kind; the file is made when it is not there. The only place that knows
/// the names.
std::string INIFile(SessionState& state, WhichReport kind);

// The list file of `gWhichReport`.
std::string Read_ProfileString(SessionState& state, std::string_view section, std::string_view key);
void Write_ProfileString(SessionState& state, std::string_view section, std::string_view key, std::string_view value);
void Delete_ProfileSection(SessionState& state, std::string_view section);

/// Fills `gReportList` from the file, up to the first section that is not there. Locations come as full paths.
/// @throws Fault 6 for a type that is no 16-bit number
void Read_ReportList(SessionState& state);
/// Writes `gReportList` back; sections past its end stay in the file.
void Write_ReportList(SessionState& state);
/// Deletes the sections of that many reports and writes `gReportList`, in one step.
void replace_report_list(SessionState& state, size_t sections);
/// Writes the list, which is shorter by one entry, in one step; what else its file says stays.
void write_shorter_report_list(SessionState& state);

/// Writes the list that a company begins with: the reports that the product ships for the kinds of that list, each by
/// its full path in the folder of the definitions. A copy of the folder finds its own by `definition_path`.
void write_default_list(ProfileFile& profiles, WhichReport kind, const std::string& path,
                        const std::filesystem::path& definitions);

/// Name of the list file for a kind.
std::string list_file_name(std::string_view company_id, WhichReport kind);

/// The definition that a location of a list or a setting means, as a full path. A relative one counts from the
/// application folder's Reports. One that lies in the Reports of an application folder that has been moved, or that
/// this one is a copy of, is the definition of that name in the Reports at hand.
std::string definition_path(const SessionState& state, std::string_view location);

/// The definition that a report of the kind is printed with when nobody names one: that of the user's settings, else
/// the first of the kind's list. Empty when there is neither.
std::string default_definition(SessionState& state, const ReportKind& kind);

/// The definition of that name in the kind's list, letter case aside. Empty when there is none.
std::string listed_definition(SessionState& state, const ReportKind& kind, std::string_view name);

}  // namespace velora
