#include "reports/run_frame.h"

#include <algorithm>

#include "delivery/export.h"
#include "delivery/viewer.h"
#include "platform/one_state.h"
#include "reports/end_reason.h"
#include "reports/like_pattern.h"
#include "session/error_messengers.h"
#include "session/query.h"
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

/// Of a session that can read one state of its data.
std::unique_ptr<Snapshot> accounting_snapshot(const SessionState& state)
{
    auto* store = dynamic_cast<OneState*>(state.gSess.get());
    return store != nullptr ? store->begin_snapshot() : nullptr;
}

RunEnd delivered_if(bool delivered)
{
    return delivered ? RunEnd::Delivered : RunEnd::Failed;
}

}  // namespace

ReportRun::ReportRun(SessionState& state, const Builder& builder, const Delivery& delivery)
    : state_(state),
      delivery_(delivery),
      statements_(state, builder.tolerated),
      procedure_(builder.procedure),
      reads_between_outputs_(builder.reads_between_outputs),
      snapshot_{state.gConn ? state.gConn->begin_snapshot() : nullptr, accounting_snapshot(state)}
{
}

void ReportRun::open_definition()
{
    statements_.attempt("OpenReport", [&] {
        if (state_.ports.engine == nullptr) throw fault::of(fault::kCannotCreate, "ReportEngine");
        state_.gCrReport = state_.ports.engine->OpenReport(delivery_.report_string);
    });
}

void ReportRun::attach(const DataPipeRecordset& pipe)
{
    statements_.attempt("SetDataSource", [&] {
        if (state_.ports.on_pipe) state_.ports.on_pipe(pipe);
        report_of(state_).SetDataSource(pipe.table());
    });
}

void ReportRun::choose_printer(const Text& name)
{
    constexpr int kPrintersDefault = 0;
    constexpr int kAutomatic = 7;
    std::string wanted;
    statements_.attempt("printer name", [&] { wanted = trimmed(name()); });
    if (wanted.empty()) return;
    statements_.attempt("SelectPrinter", [&] { select_printer(wanted); });
    statements_.attempt("PaperOrientation", [&] { report_of(state_).PaperOrientation(kPrintersDefault); });
    statements_.attempt("PaperSource", [&] { report_of(state_).PaperSource(kAutomatic); });
}

void ReportRun::choose_printer()
{
    choose_printer([&] { return setting(state_, "Name", ""); });
}

void ReportRun::select_printer(std::string_view name)
{
    const LikePattern pattern("*" + std::string(name) + "*");
    std::optional<Printer> chosen;
    if (state_.ports.printers != nullptr) {
        chosen =
            state_.ports.printers->first([&](const Printer& printer) { return pattern.matches(printer.DeviceName); });
    }
    if (!chosen) throw fault::object_not_set("Printer");  // not caught further up on purpose
    state_.current_printer = *chosen;
    report_of(state_).SelectPrinter(chosen->DriverName, chosen->DeviceName, chosen->Port);
}

void ReportRun::select_device(const std::string& name)
{
    statements_.attempt("SelectPrinter", [&] { report_of(state_).SelectPrinter("", name, ""); });
}

std::string ReportRun::file_name(const Text& export_name)
{
    std::string name = export_name();
    if (numbers_files()) name.append(" ").append(std::to_string(++files_));
    return name;
}

RunEnd ReportRun::route(const Text& export_name)
{
    if (!reads_between_outputs_) snapshot_.end();  // nobody has to wait for a printer or an open window
    bool went = false;
    if (delivery_.export_it) {
        went = statements_.attempt("Export_Report", [&] { Export_Report(state_, file_name(export_name)); });
        return delivered_if(went && state_.gExportOK);
    }
    if (delivery_.preview) {
        statements_.attempt("InitializeTTX", [&] {
            went = InitializeTTX(state_, state_.gCrReport, "Velora - " + delivery_.report_string);
        });
        return delivered_if(went);
    }
    return delivered_if(statements_.attempt("PrintOut", [&] {
        name_print_job(export_name);
        report_of(state_).PrintOut();
    }));
}

/// A printer's queue shows the name that a file would have. What has no such name prints all the same.
void ReportRun::name_print_job(const Text& export_name)
{
    try {
        if (const std::string name = export_name(); !name.empty()) report_of(state_).Title(name);
    } catch (const Fault&) {
    }
}

void ReportRun::mark(const Mark& as, int32_t quote, RunEnd end)
{
    snapshot_.end();
    if (end != RunEnd::Delivered || !state_.ports.marks_as_printed) return;
    const std::string id = std::to_string(quote);
    try {
        statements_.attempt("mark", [&] {
            execute(state_, std::string(as.sql_server) + id + ");", std::string(as.pervasive) + id + ")");
        });
    } catch (const std::exception& caught) {
        Show_ReportError(state_, fault::of(caught), procedure_);
        state_.log.note("The document went out, and the quote is not marked as printed.");
    }
}

RunEnd run_report(SessionState& state, const Builder& builder, const Delivery& delivery,
                  const std::function<RunEnd(ReportRun&)>& build)
{
    const CachedRun cached(state.cache);
    state.run_end = RunEnd::Failed;
    try {
        ReportRun run(state, builder, delivery);
        state.run_end = build(run);
    } catch (const std::exception& caught) {
        state.run_end = Show_ReportError(state, fault::of(caught), builder.procedure);
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
    if (const auto reason = reason_of(caught); !reason.empty()) state.log.note("Reason: " + reason);
    return RunEnd::Failed;
}

RunEnd no_data(SessionState& state, std::string_view text)
{
    tell(state, {"No Data Found", std::string(text), Icon::Information});
    return RunEnd::NoData;
}

std::string part_of(std::string_view quote_number, std::string_view name)
{
    return std::string(trimmed(std::string(trimmed(quote_number)).append(" - ").append(name)));
}

std::string document_name(const DataPipeRecordset& pipe, std::string_view name)
{
    return trimmed_text(pipe.last("Quote Number")).append(" - ").append(name);
}

std::string dated_name(SessionState& state, std::string_view name)
{
    return today(state).compact().append(" - ").append(trimmed(name));
}

}  // namespace velora
