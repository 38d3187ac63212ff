#include "reports/run_frame.h"

#include <algorithm>

#include "delivery/export.h"
#include "delivery/viewer.h"
#include "reports/like_pattern.h"
#include "session/error_messengers.h"
#include "session/settings.h"
#include "session/value_helpers.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr std::string_view kTitle = "Reporting Error";
constexpr std::string_view kNotInstalled =
    "A Reporting error has occured.\r\nPlease ensure that the program is installed corectly.\r\n\n"
    "Please contact Morvane if this error occurs frequently.";
constexpr std::string_view kNotFound =
    "The specified report could not be found.\r\n\nPlease ensure that the reports are located in a\r\n"
    "folder called 'Reports'. This 'Reports' folder must\r\nbe located within the main folder for the application.";

/// Lookups are remembered from here to the end of the scope.
class CachedRun {
public:
    explicit CachedRun(RunCache& cache) : cache_(cache) { cache_.start(); }
    CachedRun(const CachedRun&) = delete;
    CachedRun& operator=(const CachedRun&) = delete;
    ~CachedRun() { cache_.drop(); }

private:
    RunCache& cache_;
};

OpenedReport& report_of(SessionState& state)
{
    if (!state.gCrReport) throw fault::object_not_set("gCrReport");
    return *state.gCrReport;
}

}  // namespace

RunEnd run_report(SessionState& state, std::string_view procedure, const std::function<RunEnd()>& builder)
{
    const CachedRun cached(state.cache);
    state.run_end = RunEnd::Failed;
    try {
        state.run_end = builder();
    } catch (const std::exception& caught) {
        state.run_end = Show_ReportError(state, fault::of(caught), procedure);
    }
    return state.run_end;
}

RunEnd Show_ReportError(SessionState& state, const Fault& caught, std::string_view procedure)
{
    switch (caught.number()) {
        case fault::kObjectNotSet:
        case fault::kCannotCreate:
            tell(state, {std::string(kTitle), std::string(kNotInstalled), Icon::Critical});
            break;
        case fault::kReportFile:
            tell(state, {std::string(kTitle), std::string(kNotFound), Icon::Critical});
            break;
        case fault::kCancelled:
            return RunEnd::Cancelled;
        default:
            ErrorMessenger(state, caught.number(), caught.description(), "modPrint." + std::string(procedure));
    }
    return RunEnd::Failed;
}

void open_definition(SessionState& state, const std::string& report_string)
{
    if (state.ports.engine == nullptr) throw fault::of(fault::kCannotCreate, "ReportEngine");
    state.gCrReport = state.ports.engine->OpenReport(report_string);
}

void attach_pipe(SessionState& state, const DataPipeRecordset& pipe)
{
    if (state.ports.on_pipe) state.ports.on_pipe(pipe);
    report_of(state).SetDataSource(pipe.table());
}

void choose_printer(SessionState& state, std::string_view name)
{
    constexpr int kPrintersDefault = 0;
    constexpr int kAutomatic = 7;
    const auto wanted = trimmed(name);
    if (wanted.empty()) return;
    const auto printers = state.ports.printers != nullptr ? state.ports.printers->list() : std::vector<Printer>{};
    const LikePattern pattern("*" + std::string(wanted) + "*");
    const auto chosen =
        std::ranges::find_if(printers, [&](const Printer& printer) { return pattern.matches(printer.DeviceName); });
    if (chosen == printers.end()) throw fault::object_not_set("Printer");  // not caught further up on purpose
    state.current_printer = *chosen;
    auto& report = report_of(state);
    report.SelectPrinter(chosen->DriverName, chosen->DeviceName, chosen->Port);
    report.PaperOrientation(kPrintersDefault);
    report.PaperSource(kAutomatic);
}

std::string printer_setting(SessionState& state)
{
    return setting(state, "Name", "");
}

RunEnd route_output(SessionState& state, const Delivery& delivery, std::string_view export_name)
{
    if (delivery.export_it) {
        Export_Report(state, export_name);
        return state.gExportOK ? RunEnd::Delivered : RunEnd::Failed;
    }
    if (delivery.preview) {
        const bool shown = InitializeTTX(state, state.gCrReport, "Velora - " + delivery.report_string);
        return shown ? RunEnd::Delivered : RunEnd::Failed;
    }
    report_of(state).PrintOut();
    return RunEnd::Delivered;
}

std::string dated_name(SessionState& state, std::string_view name)
{
    return today(state).compact().append(" - ").append(trimmed(name));
}

}  // namespace velora
