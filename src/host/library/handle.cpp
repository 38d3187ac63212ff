#include "host/library/handle.h"

#include <algorithm>
#include <cstdlib>

#include "host/kinds.h"
#include "host/library/resources.h"
#include "host/options.h"
#include "host/pipe_file.h"
#include "values/fault.h"

namespace velora {
namespace {

std::string text_of(const char* text)
{
    return text != nullptr ? text : "";
}

CommonOptions common_options(const velora_options& given)
{
    CommonOptions options;
    options.folder = text_of(given.folder);
    options.has_folder = given.folder != nullptr;
    options.settings = text_of(given.settings);
    options.region = text_of(given.region);
    options.quiet = true;
    if (given.today != nullptr) {
        options.today = DateTime::from_iso(given.today);
        if (!options.today) throw UsageError("\"" + text_of(given.today) + "\" is no date of the form YYYY-MM-DD.");
    }
    options.configure = [given](HostConfig& config) {
        const auto take = [](std::string& into, const char* text) {
            if (text != nullptr) into = text;
        };
        take(config.database, given.database);
        take(config.accounting, given.accounting);
        take(config.company, given.company);
        take(config.user, given.user);
        if (given.engine != velora_eDBNone) config.engine = static_cast<WhichEngine>(given.engine);
    };
    return options;
}

/// Without a folder the four that velora.ini would hold have to be there.
const velora_options& complete(const velora_options& options)
{
    const bool has_stores = options.database != nullptr && options.accounting != nullptr && options.company != nullptr;
    if (options.folder == nullptr && !has_stores) {
        throw UsageError("velora_options names neither a folder nor database, accounting and company.");
    }
    if (options.engine < velora_eDBNone || options.engine > velora_eDBPervasive) {
        throw UsageError("velora_options.engine is " + std::to_string(options.engine) + ", which is no engine.");
    }
    return options;
}

}  // namespace

void CallingUser::show(const MessageBox& box)
{
    if (options_.on_box == nullptr) return;
    options_.on_box(options_.context, box.title.c_str(), box.text.c_str(), static_cast<int32_t>(box.icon));
}

void CallingUser::show_pages(std::shared_ptr<PageView>, const std::string& caption)
{
    show({caption, "There is no window to show the report in. Export it instead.", Icon::Exclamation});
}

LastError& thread_error()
{
    thread_local LastError error;
    return error;
}

Handle::Handle(const velora_options& options)
    : options_(complete(options)),
      around_{silence_, silence_, [](const char* name) { return text_of(std::getenv(name)); },
              program_of(text_of(options.resources)), false},
      user_(options_),
      host_(common_options(options), around_, &user_)
{
    const SessionState& state = host_.company();
    engine_ = state.gEngine;
    multi_curr_ = state.gMultiCurr;
    host_.settings().lay_over("Export", (std::filesystem::path(state.ports.application_folder) / "Export").string());
    const auto tell = [this](size_t done, size_t total) {
        if (options_.on_progress != nullptr) options_.on_progress(options_.context, done, total);
    };
    host_.user().watch_progress(tell);
    host_.watch_rows([tell](size_t rows) { tell(rows, 0); });
}

template <class Work>
velora_status Handle::guarded(Work work) noexcept
try {
    const std::unique_lock lock(in_use_, std::try_to_lock);
    if (!lock) {
        thread_error() = {"The handle is in use by another call.", 0};
        return VELORA_USAGE;
    }
    error_ = {};
    silence_.str({});
    try {
        return work();
    } catch (const HostError& error) {
        error_ = {error.title() + ": " + error.what(), 0};
        return VELORA_TOLD;
    } catch (const UsageError& error) {
        error_ = {error.what(), 0};
        return VELORA_USAGE;
    } catch (const std::exception& caught) {
        const Fault fault = fault::of(caught);
        error_ = {std::to_string(fault.number()) + ": " + fault.description(), fault.number()};
        return VELORA_FAULT;
    }
} catch (...) {
    return VELORA_FAULT;  // not even the words for it could be kept
}

velora_status Handle::operate(std::string_view kind, const std::function<void(Report&)>& work) noexcept
{
    return guarded([&] {
        SessionState& state = host_.company();
        host_.user().forget();
        state.gExportOK = false;
        state.log.clear();
        tell_pipe(kind);
        Report report(state);
        work(report);
        return kind.empty() ? shown() : ended();
    });
}

/// Of an operation that prints nothing: what it could not do stands in a box.
velora_status Handle::shown()
{
    const auto& boxes = host_.user().boxes();
    if (boxes.empty()) return VELORA_DELIVERED;
    error_.text = boxes.back().text;
    return VELORA_TOLD;
}

velora_status Handle::attempt(const std::function<velora_status(Host&)>& work) noexcept
{
    return guarded([&] { return work(host_); });
}

velora_status Handle::ended()
{
    const auto& boxes = host_.user().boxes();
    switch (host_.company().run_end) {
        case RunEnd::Delivered:
            return boxes.empty() ? VELORA_DELIVERED : VELORA_DELIVERED_WITH_BOXES;
        case RunEnd::NoData:
            return VELORA_NO_DATA;
        default:
            break;
    }
    const std::string reason = host_.take_refusal();
    const std::string told = boxes.empty() ? "The report was not delivered." : boxes.back().text;
    error_.text = reason.empty() ? told : told + "\r\n" + reason;
    return VELORA_TOLD;
}

void Handle::tell_pipe(std::string_view kind)
{
    auto& on_pipe = host_.company().ports.on_pipe;
    on_pipe = nullptr;
    if (options_.on_pipe == nullptr || kind.empty()) return;
    on_pipe = [this, name = std::string(kind)](const DataPipeRecordset& pipe) {
        std::string json;
        PipeFile([&](std::string_view piece) { json += piece; }).add(name, pipe);
        options_.on_pipe(options_.context, json.c_str(), json.size());
    };
}

void Handle::set_export(const char* format, const char* target)
{
    auto& settings = host_.settings();
    auto& state = host_.company();
    const std::string file = text_of(target);
    if (format != nullptr) {
        const auto found = std::ranges::find(kExportFormats, std::string_view(format), &ExportFormatRecord::name);
        if (found == kExportFormats.end()) throw UsageError("\"" + std::string(format) + "\" is no format of files.");
        settings.lay_over("Format", std::to_string(found - kExportFormats.begin()));
    }
    const auto usual = std::filesystem::path(state.ports.application_folder) / "Export";
    const bool is_folder = std::filesystem::is_directory(file);
    settings.lay_over("Export", is_folder ? std::filesystem::absolute(file).string() : usual.string());
    if (!file.empty() && !is_folder) host_.files().writes(file, "--output");
    state.ports.export_file = file.empty() || is_folder ? "" : std::filesystem::absolute(file).string();
}

std::string Handle::definition(std::string_view kind, const char* named)
{
    if (named != nullptr && *named != '\0') return named;
    return chosen_definition(host_.company(), require_kind(kind), "");
}

}  // namespace velora
