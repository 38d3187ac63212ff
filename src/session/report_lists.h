#pragma once

#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// The path of the list file for a report kind; the file is made when it is not there. The only place that knows
/// the names.
std::string INIFile(SessionState& state, WhichReport kind);

// The list file of `gWhichReport`.
std::string Read_ProfileString(SessionState& state, std::string_view section, std::string_view key);
void Write_ProfileString(SessionState& state, std::string_view section, std::string_view key, std::string_view value);
void Delete_ProfileSection(SessionState& state, std::string_view section);

/// Fills `gReportList` from the file; an empty or zero "Number" gives an empty list.
void Read_ReportList(SessionState& state);
/// Writes `gReportList` back; sections past its end stay in the file.
void Write_ReportList(SessionState& state);

/// Makes a company's list files with the reports that the product ships.
class DefaultReportLists {
public:
    explicit DefaultReportLists(SessionState& state) : state_(state) {}
    /// Writes the list of a kind for the company into `path`.
    void create(WhichReport kind, const std::string& path) const;

private:
    SessionState& state_;
};

}  // namespace velora
