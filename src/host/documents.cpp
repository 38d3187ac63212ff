#include "host/documents.h"

#include <algorithm>
#include <utility>

#include "host/explain.h"
#include "host/mailing.h"
#include "service/print_report.h"
#include "session/company.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

void require_folder(const fs::path& folder)
{
    if (fs::is_directory(folder)) return;
    throw HostError("Report Export Failure", "There is no folder \"" + folder.string() +
                                                 "\" to write the report into. Make it, or name another with "
                                                 "--output.");
}

bool is_delivered(ExitStatus status)
{
    return status == ExitStatus::Delivered || status == ExitStatus::DeliveredWithBoxes;
}

}  // namespace

Documents::Documents(Host& host, const DeliveryOptions& options, const ReportKind& kind, size_t count,
                     std::unique_ptr<PipeFile> pipe)
    : host_(host),
      options_(options),
      kind_(kind),
      state_(host.company()),
      pipe_(std::move(pipe)),
      progress_(host.around().err, host.is_watched(), count)
{
    const bool several = count > 1 || options.each;
    if (several && options.exports() && !options.output.empty() && !names_folder(options.output)) {
        throw UsageError("Several documents do not fit into the one file \"" + options.output +
                         "\". Name a folder with --output; one that does not end in \"/\" has to be there.");
    }
    state_.gReportSection = company_id(state_) + "_Report";
    delivery_ = {chosen_definition(state_, kind, options.definition), options.preview, options.exports()};
    host_.files().reads(delivery_.report_string, "the report definition");
    if (options.email && options.output == "-") {
        throw UsageError("--email sends a file, and --output - makes none. Name a file or a folder.");
    }
    if (options.mail.dry_run) host.leave_standard_output();
    if (options.exports()) place_output();
    if (options.print) require_printer();
    if (options.preview) host_.windows();
    state_.ports.numbers_outputs = options.each;
    state_.cache.hold(count > 1 && !host_.options().explain);  // what each document asks is to be told
    watch_pipe();
}

void Documents::place_output()
{
    LayeredSettings& settings = host_.settings();
    const auto of_settings = [&](const char* key, const std::string& otherwise) {
        return settings.get("Morvane\\Velora", state_.gReportSection, key, otherwise);
    };
    const auto wanted = wanted_format(options_);
    if (wanted || format_of_setting(of_settings("Format", "")) == nullptr) {
        settings.lay_over("Format", format_setting(wanted.value_or(ExportFormat::Pdf)));
    }
    if (options_.output.empty()) {
        const std::string usual = (fs::path(state_.ports.application_folder) / "Export").string();
        const std::string chosen = of_settings("Export", usual);
        settings.lay_over("Export", trimmed(chosen).empty() ? usual : chosen);
    } else if (names_folder(options_.output)) {
        require_folder(options_.output);
        const fs::path folder = fs::absolute(fs::path(options_.output) / "").lexically_normal().parent_path();
        settings.lay_over("Export", folder.string());
    } else {
        place_file(options_.output);
    }
}

void Documents::place_file(const std::string& output)
{
    const fs::path file = file_named(output);
    require_folder(file.parent_path());
    host_.files().writes(file, "--output");
    if (output == "-") host_.leave_standard_output();
    state_.ports.export_file = file.string();
}

void Documents::require_printer()
{
    if (state_.ports.printers == nullptr || !state_.ports.printers->usual()) {
        throw HostError("Printing",
                        "No printer is set up on this machine. The report can be written to a file with "
                        "--export and --output.");
    }
    if (options_.printer.empty()) return;
    host_.settings().lay_over("Name", options_.printer);
    host_.settings().lay_over("Default", "False");  // the expiration list asks before it takes the name
}

void Documents::watch_pipe()
{
    if (!options_.pipe.empty()) {
        const fs::path file = file_named(options_.pipe);
        host_.files().writes(file, "--pipe");
        if (options_.pipe == "-") host_.leave_standard_output();
        if (!pipe_) pipe_ = std::make_unique<PipeFile>(file);
    }
    state_.ports.on_pipe = [this](const DataPipeRecordset& pipe) {
        rows_ = pipe.RecordCount();
        if (!pipe_) return;
        // A fault of the run would be told as one of the report's; the run ends in silence and this in its own words.
        try {
            pipe_->add(kind_.name, pipe);
        } catch (const HostError&) {
            pipe_failure_ = std::current_exception();
            throw fault::of(fault::kCancelled);
        }
        pipe_filled_ = true;
    };
    host_.watch_rows([this](size_t rows) { progress_.rows(rows, rows_); });
    host_.user().watch_notes([this](const std::string& text) {
        progress_.clear();
        host_.say(text);
    });
    host_.user().watch_progress([this](size_t done, size_t total) { progress_.rows(done, total); });
}

ExitStatus Documents::deliver(const std::string& label, const std::function<Selection()>& select)
{
    host_.user().forget();
    state_.gExportOK = false;
    state_.log.clear();
    rows_ = 0;
    progress_.document_begins();
    ExitStatus status = print(select);
    progress_.clear();
    report_outcome(status);
    if (options_.email && is_delivered(status)) status = worse_of(status, mail());
    summary_.add(label, status, host_.user().boxes().size());
    progress_.document_ends();
    return status;
}

ExitStatus Documents::print(const std::function<Selection()>& select)
{
    return host_.guard([&] {
        const RunEnd ended = print_report(state_, kind_, select(), delivery_);
        if (pipe_failure_) std::rethrow_exception(std::exchange(pipe_failure_, nullptr));
        switch (ended) {
            case RunEnd::Delivered:
                return host_.user().boxes().empty() ? ExitStatus::Delivered : ExitStatus::DeliveredWithBoxes;
            case RunEnd::NoData:
                return ExitStatus::NoData;
            default:
                return ExitStatus::Told;
        }
    });
}

void Documents::report_outcome(ExitStatus status)
{
    if (status == ExitStatus::Told && host_.user().boxes().empty()) {
        host_.tell("Report Export Failure", "The report was not delivered, and nothing said why.");
    }
    if (const std::string reason = host_.take_refusal(); !reason.empty()) {
        host_.around().err << "Reason: " << reason << '\n';
    }
    if (options_.output != "-") {
        for (const std::string& file : state_.log.files()) host_.say(file);
    }
    for (const std::string& note : state_.log.notes()) host_.around().err << note << '\n';
    if (is_delivered(status) && state_.gCrReport) {
        for (const std::string& warning : state_.gCrReport->warnings()) host_.around().err << warning << '\n';
    }
    if (host_.options().explain) explain(host_.answers(), state_.log);
}

ExitStatus Documents::mail()
{
    return host_.guard([&] {
        return mail_document(host_, options_.mail, state_.log.files()) ? ExitStatus::Delivered : ExitStatus::Told;
    });
}

ExitStatus Documents::finish()
{
    state_.cache.hold(false);
    state_.ports.on_pipe = nullptr;
    state_.ports.export_file.clear();
    host_.watch_rows({});
    host_.user().watch_progress({});
    host_.user().watch_notes({});
    host_.settings().clear();
    if (pipe_filled_) pipe_->finish();
    return summary_.tell(host_.around().err);
}

}  // namespace velora
