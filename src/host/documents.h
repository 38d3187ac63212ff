#pragma once

#include <functional>
#include <memory>
#include <string>

#include "host/host.h"
#include "host/host_error.h"
#include "host/kinds.h"
#include "host/pipe_file.h"

namespace velora {

/// What a builder is handed besides its selection.
struct Route {
    std::string definition;
    bool export_it;
    bool preview;
};

/// Delivers one or more documents of a kind as the command line says, and knows how each ended.
class Documents {
public:
    /// @param count  how many documents there will be
    /// @throws UsageError when several would go into one file, HostError when the place of the output is missing
    Documents(Host& host, const DeliveryOptions& options, const ReportKind& kind, size_t count);

    using Build = std::function<void(SessionState&, const Route&)>;
    /// Runs one document and says where it went.
    void deliver(const Build& build);
    /// Ends the run: the file of the pipe takes its name. The first document that failed decides.
    ExitStatus finish();

private:
    void place_output();
    void require_printer();
    void watch_pipe();
    void build_with_bar(const Build& build);
    [[nodiscard]] ExitStatus outcome() const;
    [[nodiscard]] bool delivered() const;
    void report_outcome(ExitStatus status);

    Host& host_;
    const DeliveryOptions& options_;
    const ReportKind& kind_;
    SessionState& state_;
    Route route_;
    std::unique_ptr<PipeFile> pipe_;
    bool pipe_filled_ = false;
    size_t count_;
    size_t rows_ = 0;  ///< of the pipe
    size_t done_ = 0;
    ExitStatus worst_ = ExitStatus::Delivered;
};

}  // namespace velora
