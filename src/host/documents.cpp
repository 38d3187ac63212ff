#include "host/documents.h"

#include <algorithm>

#include "adapters/terminal/progress_bar.h"
#include "delivery/export.h"
#include "host/explain.h"
#include "session/lists.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

std::string format_number(ExportFormat format)
{
    const auto formats = export_formats();
    const auto found = std::ranges::find(formats, format, &ExportFormatEntry::format);
    return std::to_string(found - formats.begin());
}

bool names_folder(const std::string& output)
{
    return output.ends_with('/') || fs::is_directory(output);
}

void require_folder(const fs::path& folder)
{
    if (fs::is_directory(folder)) return;
    throw HostError("Report Export Failure", "There is no folder \"" + folder.string() +
                                                 "\" to write the report into. Make it, or name another with "
                                                 "--output.");
}

}  // namespace

Documents::Documents(Host& host, const DeliveryOptions& options, const ReportKind& kind, size_t count)
    : host_(host), options_(options), kind_(kind), state_(host.company()), count_(count)
{
    if (count > 1 && options.exports() && !options.output.empty() && !names_folder(options.output)) {
        throw UsageError("Several documents do not fit into the one file \"" + options.output +
                         "\". Name a folder with --output; one that does not end in \"/\" has to be there.");
    }
    state_.gReportSection = company_id(state_) + "_Report";
    if (options.exports()) place_output();
    if (options.print) require_printer();
    if (options.preview) {
        throw HostError("Not Available",
                        "This build does not have the preview window yet. The report can be written "
                        "to a file with --export and --output.");
    }
    route_ = {options.definition.empty() ? default_definition(state_, kind) : fs::absolute(options.definition).string(),
              options.exports(), options.preview};
    watch_pipe();
}

void Documents::place_output()
{
    LayeredSettings& settings = host_.settings();
    settings.lay_over("Format", format_number(options_.format));
    if (options_.output.empty()) {
        const std::string usual = (fs::path(state_.ports.application_folder) / "Export").string();
        const std::string chosen = settings.get("Morvane\\Velora", state_.gReportSection, "Export", usual);
        settings.lay_over("Export", chosen);
    } else if (names_folder(options_.output)) {
        require_folder(options_.output);
        const fs::path folder = fs::absolute(fs::path(options_.output) / "").lexically_normal().parent_path();
        settings.lay_over("Export", folder.string());
    } else {
        const fs::path file = fs::absolute(options_.output);
        require_folder(file.parent_path());
        state_.ports.export_file = file.string();
    }
}

void Documents::require_printer()
{
    if (state_.ports.printers == nullptr || state_.ports.printers->list().empty()) {
        throw HostError("Printing",
                        "No printer is set up on this machine. The report can be written to a file with "
                        "--export and --output.");
    }
    if (!options_.printer.empty()) host_.settings().lay_over("Name", options_.printer);
}

void Documents::watch_pipe()
{
    if (!options_.pipe.empty()) pipe_ = std::make_unique<PipeFile>(options_.pipe);
    state_.ports.on_pipe = [this](const DataPipeRecordset& pipe) {
        rows_ = pipe.RecordCount();
        if (!pipe_) return;
        pipe_->add(kind_.name, pipe);
        pipe_filled_ = true;
    };
}

void Documents::deliver(const Build& build)
{
    host_.user().forget();
    host_.engine().forget();
    state_.gExportOK = false;
    state_.log.clear();
    ++done_;
    build_with_bar(build);
    const ExitStatus status = outcome();
    report_outcome(status);
    if (worst_ == ExitStatus::Delivered) worst_ = status;
}

void Documents::build_with_bar(const Build& build)
{
    const bool wanted = host_.around().at_terminal && !host_.options().quiet;
    const std::string caption =
        count_ > 1 ? "Document " + std::to_string(done_) + " of " + std::to_string(count_) : "Report";
    ProgressBar bar(host_.around().err, wanted, caption);
    if (count_ > 1) bar.show(0, 1);
    host_.engine().count_rows([&](size_t rows) { bar.show(rows, rows_); });
    build(state_, route_);
    host_.engine().count_rows({});
}

bool Documents::delivered() const
{
    if (route_.export_it) return state_.gExportOK;
    if (route_.preview) return host_.user().pages_shown();
    return host_.user().boxes().empty();
}

ExitStatus Documents::outcome() const
{
    if (delivered()) return ExitStatus::Delivered;
    const auto no_data = [](const MessageBox& box) { return box.title == "No Data Found"; };
    return std::ranges::any_of(host_.user().boxes(), no_data) ? ExitStatus::NoData : ExitStatus::Told;
}

void Documents::report_outcome(ExitStatus status)
{
    if (status == ExitStatus::Told && host_.user().boxes().empty()) {
        host_.tell("Report Export Failure", "The report was not delivered, and nothing said why.");
    }
    if (!host_.engine().reason().empty()) host_.around().err << "Reason: " << host_.engine().reason() << '\n';
    if (status == ExitStatus::Delivered && route_.export_it) host_.say(state_.gExportFile);
    if (state_.gCrReport && status == ExitStatus::Delivered) {
        for (const std::string& warning : state_.gCrReport->warnings()) host_.around().err << warning << '\n';
    }
    if (host_.options().explain) explain(host_.around().out, state_.log);
}

ExitStatus Documents::finish()
{
    state_.ports.on_pipe = nullptr;
    state_.ports.export_file.clear();
    host_.settings().clear();
    if (pipe_filled_) pipe_->finish();
    return worst_;
}

}  // namespace velora
