#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

#include "host/box_watch.h"
#include "host/host_config.h"
#include "host/layered_settings.h"
#include "host/options.h"
#include "host/watched_engine.h"
#include "session/session_state.h"

namespace velora {

/// What the program is started in.
struct Surroundings {
    std::ostream& out;
    std::ostream& err;
    std::function<std::string(const char*)> environment;  ///< blank for a variable that is not set
    std::filesystem::path program;
    bool at_terminal = false;  ///< a person watches `err`
};

struct Adapters;

/// The ports of one run of the program, made when they are first asked for.
class Host {
public:
    /// @throws UsageError for a region that is none, HostError for a messages file that cannot be written
    Host(const CommonOptions& options, const Surroundings& around);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    [[nodiscard]] const CommonOptions& options() const { return options_; }
    [[nodiscard]] const Surroundings& around() const { return around_; }
    [[nodiscard]] BoxWatch& user();
    [[nodiscard]] WatchedEngine& engine();
    [[nodiscard]] LayeredSettings& settings();
    [[nodiscard]] ProfileFile& profiles();

    /// The session on the company of the application folder, with its database and accounting store open.
    /// @throws HostError saying what is missing or broken and where
    SessionState& company();
    /// The settings of the folder; opens the company as well.
    const HostConfig& config();

    /// A line for the person, unless the run is to be quiet.
    void say(const std::string& line);
    /// A message box of the host's own.
    void tell(const std::string& title, const std::string& text, Icon icon = Icon::Critical);

private:
    [[nodiscard]] std::filesystem::path folder() const;
    void open_company();
    std::shared_ptr<Connection> reader_of(const std::string& source);

    CommonOptions options_;
    const Surroundings& around_;
    std::unique_ptr<Adapters> adapters_;
    std::unique_ptr<BoxWatch> user_;
    std::unique_ptr<LayeredSettings> settings_;
    std::unique_ptr<WatchedEngine> engine_;
    HostConfig config_;
    std::unique_ptr<SessionState> company_;
};

}  // namespace velora
