#include "reports/custom_report.h"

#include <filesystem>

#include "delivery/viewer.h"
#include "reports/run_frame.h"
#include "session/error_messengers.h"

namespace velora {

namespace {

constexpr Builder kBuilder{"Custom_Reports", kToleratedByOrders};

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
    return run_report(state, kBuilder, {pReportString, false, pExportIt}, [&](ReportRun& run) {
        if (!file_exists(pReportString)) return not_found(state);
        run.open_definition();
        run.choose_printer();
        if (!pPreview || pExportIt) return run.route([&] { return dated_name(state, pReportName); });
        bool shown = false;
        run.statements().attempt("InitializeCustom",
                                 [&] { shown = InitializeCustom(state, state.gCrReport, "Velora - Custom Report"); });
        return shown ? RunEnd::Delivered : RunEnd::Failed;
    });
}

}  // namespace velora
