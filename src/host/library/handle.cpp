#include "host/library/handle.h"

#include <algorithm>
#include <cstdlib>

#include "host/kinds.h"
#include "host/library/resources.h"
#include "host/options.h"
#include "host/pipe_file.h"
#include "session/company.h"
#include "values/fault.h"

namespace velora {
namespace {

constexpr const char* kExport = "--output";  // the role by which the host knows what it may write over

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
    set_export(nullptr, nullptr);
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

/// What is named, else what the ending of the file says, else what the settings say, else PDF; as the setting holds it.
std::string Handle::chosen_format(const char* format, const std::filesystem::path& file)
{
    const std::string ending = file.extension().string();
    const auto named =
        format_named(format != nullptr ? format : std::string_view(ending).substr(ending.empty() ? 0 : 1));
    if (named) return format_setting(*named);
    if (format != nullptr) throw UsageError("\"" + std::string(format) + "\" is no format of files.");
    const auto section = company_id(host_.company()) + "_Report";
    const auto usual = host_.settings().below().get("Morvane\\Velora", section, "Format", "");
    return format_of_setting(usual) != nullptr ? usual : format_setting(ExportFormat::Pdf);
}

void Handle::set_export(const char* format, const char* target)
{
    namespace fs = std::filesystem;
    auto& state = host_.company();
    const std::string named = text_of(target);
    const bool is_folder = fs::is_directory(named);
    const auto file = named.empty() || is_folder ? fs::path() : fs::absolute(named);
    const auto usual = fs::path(state.ports.application_folder) / "Export";
    const auto chosen = chosen_format(format, file);
    // A handle may write the same file again and again, as a run of the command line may not.
    if (!file.empty() && host_.files().role_of(file) != kExport) host_.files().writes(file, kExport);
    host_.settings().lay_over("Format", chosen);
    host_.settings().lay_over("Export", is_folder ? fs::absolute(named).string() : usual.string());
    state.ports.export_file = file.string();
}

void Handle::set_printer(const std::string& name)
{
    if (name.empty()) {
        for (const char* key : {"Name", "Default"}) host_.settings().uncover(key);
        return;
    }
    host_.settings().lay_over("Name", name);
    host_.settings().lay_over("Default", "False");  // the expiration list asks before it takes the name
}

std::string Handle::definition(std::string_view kind, const char* named)
{
    if (named != nullptr && *named != '\0') return named;
    return chosen_definition(host_.company(), require_kind(kind), "");
}

}  // namespace velora
