#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>

#include "host/box_watch.h"
#include "host/file_roles.h"
#include "host/host_config.h"
#include "host/host_error.h"
#include "host/layered_settings.h"
#include "host/options.h"
#include "host/surroundings.h"
#include "session/session_state.h"

namespace velora {

struct Adapters;
class OpenWindows;

/// The ports of one run of the program, made when they are first asked for.
class Host {
public:
    /// @throws UsageError for a region that is none, HostError for a messages file that cannot be written
    /// @param user  who is shown what a person should see; null for the streams
    Host(const CommonOptions& options, const Surroundings& around, UserInterface* user = nullptr);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    [[nodiscard]] const CommonOptions& options() const { return options_; }
    [[nodiscard]] const Surroundings& around() const { return around_; }
    [[nodiscard]] BoxWatch& user() { return *user_; }
    [[nodiscard]] ReportEngine& engine();
    [[nodiscard]] LayeredSettings& settings() { return *settings_; }
    [[nodiscard]] ProfileFile& profiles();
    [[nodiscard]] DateTime now() const;
    [[nodiscard]] FileRoles& files() { return files_; }
    [[nodiscard]] std::filesystem::path folder() const;  ///< of the application, which need not be there

    /// The session on the company of the application folder, with its database and accounting store open.
    /// @throws HostError saying what is missing or broken and where
    SessionState& company();
    /// The company's windows, opened when they are first asked for.
    /// @throws HostError where windows cannot be shown
    OpenWindows& windows();
    /// Returns when the last window is closed; at once without windows.
    void wait_for_windows();

    /// Told the rows that a report has read; empty for nobody.
    void watch_rows(std::function<void(size_t)> watcher) { on_rows_ = std::move(watcher); }
    /// Path and reason of the definition that could not be opened last, once; blank when all could.
    std::string take_refusal() { return std::exchange(refusal_, {}); }

    /// Whether a person watches the run and wants to see it.
    [[nodiscard]] bool is_watched() const { return around_.at_terminal && !options_.quiet; }
    /// Where answers to the person go: standard output, or the other stream when a document takes that.
    [[nodiscard]] std::ostream& answers() { return stdout_taken_ ? around_.err : around_.out; }
    void leave_standard_output() { stdout_taken_ = true; }
    /// A line for the person, unless the run is to be quiet.
    void say(const std::string& line);
    /// A message box of the host's own.
    void tell(const std::string& title, const std::string& text, Icon icon = Icon::Critical);
    /// Runs the work; what it throws becomes a message box. Wrong usage passes through.
    ExitStatus guard(const std::function<ExitStatus()>& work);

private:
    void make_engine();
    std::map<std::string, Value, std::less<>> house_parameters();
    void print(const PrintJob& job);
    void open_company();
    void read_files(const std::filesystem::path& place);
    std::shared_ptr<Connection> reader_of(const std::string& source);
    void require_free(const std::filesystem::path& target) const;

    CommonOptions options_;
    const Surroundings& around_;
    FileRoles files_;
    std::unique_ptr<Adapters> adapters_;
    std::unique_ptr<BoxWatch> user_;
    std::unique_ptr<LayeredSettings> settings_;
    HostConfig config_;
    std::unique_ptr<SessionState> company_;
    std::unique_ptr<OpenWindows> windows_;  ///< goes before the company does
    std::function<void(size_t)> on_rows_;
    std::string refusal_;
    bool stdout_taken_ = false;
};

}  // namespace velora
