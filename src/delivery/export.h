#pragma once

#include <span>
#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// One format of the list from which the user chooses.
struct ExportFormatEntry {
    std::string_view list_text;
    ExportFormat format;
    std::string_view extension;
};

/// The formats in the order of their numbers, which the setting "Format" holds.
std::span<const ExportFormatEntry> export_formats();

/// Writes the prepared report into the folder and in the format of the user's settings. Leaves the result in
/// `gExportOK` and `gExportFile`; with no format set up nothing is written and nothing is said.
/// @param pFileName  without folder and extension
void Export_Report(SessionState& state, std::string_view pFileName);

/// The name with its slashes of both kinds as underscores. Nothing else in a name is cleaned.
std::string Replace_Slashes(SessionState& state, std::string_view pName);

}  // namespace velora
