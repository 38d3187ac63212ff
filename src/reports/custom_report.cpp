#include "reports/custom_report.h"

#include <filesystem>

#include "delivery/viewer.h"
#include "reports/run_frame.h"
#include "session/error_messengers.h"

namespace velora {

namespace {

bool file_exists(const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

RunEnd not_found(SessionState& state)
{
    tell(state, {"Report Not Found",
                 "The selected Report could not be found.\r\nThe Report may have been moved or deleted.\r\n"
                 "Please first remove and then add the Report again.",
                 Icon::Critical});
    return RunEnd::NotFound;
}

}  // namespace

RunEnd Custom_Reports(SessionState& state, const std::string& pReportString, const std::string& pReportName,
                      bool pPreview, bool pExportIt)
{
    return run_report(state, "Custom_Reports", [&] {
        if (!file_exists(pReportString)) return not_found(state);
        open_definition(state, pReportString);
        choose_printer(state, printer_setting(state));
        if (pPreview && !pExportIt) {
            const bool shown = InitializeCustom(state, state.gCrReport, "Velora - Custom Report");
            return shown ? RunEnd::Delivered : RunEnd::Failed;
        }
        return route_output(state, {pReportString, false, pExportIt}, dated_name(state, pReportName));
    });
}

}  // namespace velora
