#include "delivery/export.h"

#include <filesystem>

#include "session/error_messengers.h"
#include "session/settings.h"
#include "values/text.h"

namespace velora {

namespace {

const ExportFormatRecord* chosen_format(SessionState& state)
{
    return format_of_setting(setting(state, "Format", "-1"));
}

/// The folder is taken as it is set up: one that ends in a separator gets a second one.
std::string export_path(SessionState& state, std::string_view name, std::string_view extension)
{
    if (!state.ports.export_file.empty()) return state.ports.export_file;
    std::string path = setting(state, "Export", state.ports.application_folder);
    path.push_back(static_cast<char>(std::filesystem::path::preferred_separator));
    return path.append(Replace_Slashes(state, name)).append(extension);
}

}  // namespace

void Export_Report(SessionState& state, std::string_view pFileName)
{
    with_failure_path(state, ErrorMessenger, "modPrint.Export_Report", [&] {
        state.gExportOK = false;
        if (!state.gCrReport) throw fault::object_not_set("gCrReport");
        const auto* format = chosen_format(state);
        if (format == nullptr) return;
        const std::string path = export_path(state, pFileName, format->extension);
        state.gCrReport->Export(format->format, path);
        state.gExportFile = path;
        state.gExportOK = true;
        state.log.wrote(path);
    });
}

std::string Replace_Slashes(SessionState& state, std::string_view pName)
{
    return with_failure_path(state, ErrorMessenger, "modPrint.Replace_Slashes", [&] {
        std::string name(trimmed(pName));
        std::replace_if(
            name.begin(), name.end(), [](char c) { return c == '/' || c == '\\'; }, '_');
        return name;
    });
}

}  // namespace velora
