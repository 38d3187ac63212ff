#pragma once

#include <memory>

#include "forms/desk.h"
#include "forms/toolkit.h"
#include "host/drive/host_calls.h"

namespace velora {

class Host;

/// The application around the component: it keeps what it hands in, since the state holds what the latest call gave.
drive::HostCalls host_calls(SessionState& state);

/// The windows of one run of the program.
class OpenWindows {
public:
    /// @throws HostError where windows cannot be shown
    explicit OpenWindows(Host& host);
    OpenWindows(const OpenWindows&) = delete;
    OpenWindows& operator=(const OpenWindows&) = delete;
    ~OpenWindows();

    [[nodiscard]] UserInterface& user() { return toolkit_->user(); }
    /// Until the last window is closed.
    void run() { toolkit_->run(); }

private:
    SessionState& state_;
    forms::Desk desk_;
    std::unique_ptr<forms::Toolkit> toolkit_;
};

}  // namespace velora
