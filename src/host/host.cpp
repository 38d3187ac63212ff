#include "host/host.h"

#include <ostream>

#include "adapters/engine/report_engine.h"
#include "adapters/odbc_text/connection_string.h"
#include "adapters/sqlite/connection.h"
#include "host/adapters.h"
#include "host/open_windows.h"
#include "host/query_table.h"
#include "host/shipped.h"
#include "host/stores.h"
#include "host/windows_module.h"
#include "session/settings.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

/// The accounting store has to be that of the company that velora.ini names.
void require_company(AccountingSession& session, const HostConfig& config)
{
    std::string stored;
    try {
        stored = trimmed(session.Company().CompanyID);
    } catch (const Fault& caught) {
        throw HostError("Application Folder", "The accounting store \"" + odbc::without_passwords(config.accounting) +
                                                  "\" cannot be used: " + caught.description() +
                                                  " Its table CompanyInfo needs one row, for the company \"" +
                                                  config.company + "\".");
    }
    if (same_name(stored, trimmed(config.company))) return;
    throw HostError("Application Folder", "velora.ini names the company \"" + config.company +
                                              "\", but the accounting store is that of \"" + stored +
                                              "\". Correct the key Company or the key Accounting.");
}

}  // namespace

Host::Host(const CommonOptions& options, const Surroundings& around, UserInterface* user)
    : options_(options),
      around_(around),
      adapters_(std::make_unique<Adapters>(make_adapters(options, around))),
      user_(std::make_unique<BoxWatch>(user != nullptr ? *user : *adapters_->user)),
      settings_(std::make_unique<LayeredSettings>(*adapters_->settings))
{
    if (!options.messages.empty()) files_.writes(options.messages, "--messages");
    files_.reads(settings_path(options, around), "the user's settings");
}

Host::~Host()
{
    user_->show_in(nullptr);
    windows_.reset();
    adapters_->user->tell_repeats();
}

ProfileFile& Host::profiles()
{
    return *adapters_->profiles;
}

DateTime Host::now() const
{
    return adapters_->clock->now();
}

ReportEngine& Host::engine()
{
    if (!adapters_->engine) make_engine();
    return *adapters_->engine;
}

void Host::make_engine()
{
    EngineServices services;
    services.now = [this] { return adapters_->clock->now(); };
    services.locale = replaced(region_name(options_, around_), "-", "_");
    services.run_query = [this](const std::string& source, const Command& command) {
        return query_table(reader_of(source), command, config_.most_rows);
    };
    services.parameters = house_parameters();
    services.before_export = [this](const fs::path& target) { require_free(target); };
    services.print = [this](const PrintJob& job) { print(job); };
    services.on_rows = [this](size_t rows) {
        if (on_rows_) on_rows_(rows);
        if (windows_) windows_->user().progress(rows, 0);
    };
    services.on_refused = [this](const std::string& path, const std::string& reason) {
        refusal_ = reason.empty() ? path : path + ": " + reason;
    };
    services.on_first_page = [this](const auto& pages) {
        if (windows_) windows_->begin_pages(pages);
    };
    services.on_page = [this] {
        if (windows_) windows_->more_pages();
    };
    services.on_pages_end = [this](bool all_there) {
        if (windows_) windows_->end_pages(all_there);
    };
    adapters_->engine = make_report_engine(shipped_folder(around_.program, "fonts"), std::move(services));
}

/// What velora.ini tells every document of the company.
std::map<std::string, Value, std::less<>> Host::house_parameters()
{
    std::map<std::string, Value, std::less<>> parameters;
    if (!config_.logo.empty()) {
        const fs::path logo = folder() / config_.logo;
        files_.reads(logo, "the company's logo");
        parameters["Logo"] = logo.string();
    }
    if (!config_.tax_registration.empty()) parameters["Tax Registration"] = config_.tax_registration;
    return parameters;
}

void Host::print(const PrintJob& job)
{
    const int32_t number = adapters_->printers->print(job);
    const std::string what = "\"" + job.title + "\" went to the printer as job " + std::to_string(number) + ".";
    (company_ ? *company_->ports.user : *user_).note(what);
}

/// No export goes over a file that the run reads, whatever a document is called.
void Host::require_free(const fs::path& target) const
{
    const std::string role = files_.role_of(target);
    if (role.empty() || role == "--output") return;
    throw Fault(fault::kPathAccess, "The report would be written over " + role + ": " + target.string());
}

/// The database that a definition's own query runs on. The definition may come from anywhere: it can only read.
std::shared_ptr<Connection> Host::reader_of(const std::string& source)
{
    QueryLimits limits;
    limits.time = config_.timeout;
    if (source.starts_with("odbc:")) {
        throw HostError("Data",
                        "A definition names its own database on a server, which is not let through: only "
                        "sqlite:PATH may stand in velora.connection.");
    }
    if (!source.empty()) {
        return open_sqlite_reader(sqlite_file(fs::current_path(), source, "velora.connection").string(), limits);
    }
    if (company_) return company_->gConn->open_reader(limits);
    throw Fault(fault::kObjectNotSet,
                "The definition runs a query on the company's database, and no company is open. "
                "The command \"custom\" runs it there; \"render\" takes its data from a file.");
}

SessionState& Host::company()
{
    if (!company_) open_company();
    return *company_;
}

OpenWindows& Host::windows()
{
    if (!windows_) {
        // Windows keep their places beside the user's settings.
        const fs::path settings = settings_path(options_, around_);
        const fs::path places = settings.empty() ? fs::path() : settings.parent_path() / "VeloraWindows.ini";
        windows_ = std::make_unique<OpenWindows>(company(), windows_module(around_.program), places.string());
        user_->show_in(&windows_->user());
    }
    return *windows_;
}

void Host::wait_for_windows()
{
    if (windows_) windows_->run();
}

fs::path Host::folder() const
{
    if (!options_.folder.empty()) return fs::absolute(options_.folder).lexically_normal();
    const std::string set = around_.environment("VELORA_FOLDER");
    return set.empty() ? fs::current_path() : fs::absolute(set).lexically_normal();
}

void Host::open_company()
{
    const fs::path place = folder();
    config_ = options_.has_folder ? read_host_config(place) : HostConfig();
    if (options_.configure) options_.configure(config_);
    read_files(place);
    auto state = std::make_unique<SessionState>();
    adapters_->mail = adapters_->mail_by(*adapters_->clock, config_.mail);
    state->gConn = adapters_->database({place, config_.database, "Database", around_}, config_.timeout);
    state->gSess = adapters_->accounting({place, config_.accounting, "Accounting", around_}, config_.timeout);
    require_company(*state->gSess, config_);
    state->gEngine = config_.engine;
    state->gSessUser = config_.user;
    state->gMultiCurr = config_.multi_currency.value_or(state->gSess->Company().Multicurrency);
    state->ports = Ports{.engine = &engine(),
                         .printers = adapters_->printers.get(),
                         .settings = settings_.get(),
                         .profiles = adapters_->profiles.get(),
                         .cipher = adapters_->cipher.get(),
                         .user = user_.get(),
                         .windows = nullptr,
                         .clock = adapters_->clock.get(),
                         .region = adapters_->region.get(),
                         .application_folder = place.string(),
                         .export_file = {},
                         .on_pipe = {},
                         .mail = adapters_->mail.get()};
    company_ = std::move(state);
}

/// The files of the company, none of which an output may name.
void Host::read_files(const fs::path& place)
{
    if (options_.has_folder) files_.reads(place / "velora.ini", "the company's velora.ini");
    const auto read_store = [&](const std::string& connection, const char* key, const char* role) {
        const StorePlace store(place, connection, key, around_);
        if (store.is_file()) files_.reads(store.file(), role);
    };
    read_store(config_.database, "Database", "the company's database");
    read_store(config_.accounting, "Accounting", "the company's accounting store");
}

void Host::say(const std::string& line)
{
    if (!options_.quiet) answers() << line << '\n';
}

void Host::tell(const std::string& title, const std::string& text, Icon icon)
{
    user_->show({title, text, icon});
}

ExitStatus Host::guard(const std::function<ExitStatus()>& work)
{
    try {
        return work();
    } catch (const HostError& error) {
        tell(error.title(), error.what());
    } catch (const Fault& caught) {
        std::string text = std::to_string(caught.number()) + ": " + caught.description();
        if (!caught.where().empty()) text += "\r\n" + caught.where();
        tell("Reporting Error", text);
    }
    return ExitStatus::Told;
}

}  // namespace velora
