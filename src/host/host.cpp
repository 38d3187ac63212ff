#include "host/host.h"

#include <ostream>

#include "adapters/accounting_sql/session.h"
#include "adapters/engine/report_engine.h"
#include "adapters/sqlite/connection.h"
#include "host/adapters.h"
#include "host/host_error.h"
#include "host/query_table.h"
#include "host/shipped.h"
#include "session/settings.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

/// Opens a store of the folder; a fault becomes a message that says which and where.
template <class Open>
auto open_store(const char* what, const fs::path& file, Open open)
{
    try {
        return open(file.string());
    } catch (const Fault& caught) {
        const bool names_file = caught.description().find(file.string()) != std::string::npos;
        throw HostError("Application Folder", "The " + std::string(what) + " of the application folder is of no use. " +
                                                  caught.description() + (names_file ? "" : ": " + file.string()));
    }
}

/// The accounting store has to be that of the company that velora.ini names.
void require_company(AccountingSession& session, const HostConfig& config)
{
    std::string stored;
    try {
        stored = trimmed(session.Company().CompanyID);
    } catch (const Fault& caught) {
        throw HostError("Application Folder",
                        "The accounting store \"" + config.accounting + "\" cannot be used: " + caught.description() +
                            " Its table CompanyInfo needs one row, for the company \"" + config.company + "\".");
    }
    if (same_name(stored, trimmed(config.company))) return;
    throw HostError("Application Folder", "velora.ini names the company \"" + config.company +
                                              "\", but the accounting store is that of \"" + stored +
                                              "\". Correct the key Company or the key Accounting.");
}

}  // namespace

Host::Host(const CommonOptions& options, const Surroundings& around)
    : options_(options),
      around_(around),
      adapters_(std::make_unique<Adapters>(make_adapters(options, around))),
      user_(std::make_unique<BoxWatch>(*adapters_->user)),
      settings_(std::make_unique<LayeredSettings>(*adapters_->settings))
{
}

Host::~Host() = default;

BoxWatch& Host::user()
{
    return *user_;
}

LayeredSettings& Host::settings()
{
    return *settings_;
}

ProfileFile& Host::profiles()
{
    return *adapters_->profiles;
}

WatchedEngine& Host::engine()
{
    if (!engine_) {
        EngineServices services;
        services.now = [this] { return adapters_->clock->now(); };
        services.locale = replaced(region_name(options_, around_), "-", "_");
        services.run_query = [this](const std::string& source, const Command& command) {
            return query_table(reader_of(source), command, config_.most_rows);
        };
        adapters_->engine = make_report_engine(shipped_folder(around_.program, "fonts"), std::move(services));
        engine_ = std::make_unique<WatchedEngine>(*adapters_->engine);
    }
    return *engine_;
}

/// The database that a definition's own query runs on. The definition may come from anywhere: it can only read.
std::shared_ptr<Connection> Host::reader_of(const std::string& source)
{
    QueryLimits limits;
    limits.time = config_.timeout;
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

const HostConfig& Host::config()
{
    company();
    return config_;
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
    config_ = read_host_config(place);
    auto state = std::make_unique<SessionState>();
    state->gConn = open_store("database", sqlite_file(place, config_.database, "Database"),
                              [](const std::string& file) { return open_sqlite(file); });
    state->gSess = open_store("accounting store", sqlite_file(place, config_.accounting, "Accounting"),
                              [](const std::string& file) { return open_accounting_store(file); });
    require_company(*state->gSess, config_);
    state->gEngine = config_.engine;
    state->gSessUser = config_.user;
    state->ports = {&engine(),
                    adapters_->printers.get(),
                    settings_.get(),
                    adapters_->profiles.get(),
                    adapters_->cipher.get(),
                    user_.get(),
                    nullptr,
                    adapters_->clock.get(),
                    adapters_->region.get(),
                    place.string(),
                    {},
                    {}};
    company_ = std::move(state);
}

void Host::say(const std::string& line)
{
    if (!options_.quiet) around_.out << line << '\n';
}

void Host::tell(const std::string& title, const std::string& text, Icon icon)
{
    user_->show({title, text, icon});
}

}  // namespace velora
