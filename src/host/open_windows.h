#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include "forms/desk.h"
#include "forms/toolkit.h"
#include "host/drive/host_calls.h"

namespace velora {

/// The application around the component: it keeps what it hands in, since the state holds what the latest call gave.
drive::HostCalls host_calls(SessionState& state);

/// The windows of one run of the program.
class OpenWindows {
public:
    /// @param module  the file of the toolkit's module
    /// @param places  the file that keeps the windows' places; blank for none
    /// @throws HostError where windows cannot be shown
    OpenWindows(SessionState& state, const std::filesystem::path& module, const std::string& places);
    OpenWindows(const OpenWindows&) = delete;
    OpenWindows& operator=(const OpenWindows&) = delete;
    ~OpenWindows();

    [[nodiscard]] UserInterface& user() { return toolkit_->user(); }
    /// Until the last window is closed.
    void run() { toolkit_->run(); }

    // Pages that are still being made are shown from the first on.
    void begin_pages(const std::shared_ptr<PageView>& pages);
    void more_pages();
    void end_pages(bool all_there);

private:
    SessionState& state_;
    forms::Desk desk_;
    std::unique_ptr<forms::Toolkit> toolkit_;
    forms::frmViewer* growing_ = nullptr;
    std::chrono::steady_clock::time_point painted_;
};

}  // namespace velora
