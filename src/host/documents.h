#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/host.h"
#include "host/host_error.h"
#include "host/kinds.h"
#include "host/pipe_file.h"
#include "host/run_progress.h"
#include "host/run_summary.h"

namespace velora {

/// Delivers one or more documents of a kind as the command line says, and knows how each ended.
class Documents {
public:
    /// @param count  how many documents there will be
    /// @throws UsageError when several would go into one file, or over a file that the run reads; HostError when the
    ///         place of the output is missing
    /// @param pipe   where the data goes in place of the file of the options
    Documents(Host& host, const DeliveryOptions& options, const ReportKind& kind, size_t count,
              std::unique_ptr<PipeFile> pipe = nullptr);

    /// Runs one document and says where it went. What goes wrong is told and does not stop the next.
    /// @param label   as the person named it
    /// @param select  may throw HostError for what is not there
    ExitStatus deliver(const std::string& label, const std::function<Selection()>& select);
    /// Ends the run: the file of the pipe takes its name, and one line tells which documents had boxes.
    ExitStatus finish();
    /// The file of the pipe, for who writes it himself.
    [[nodiscard]] std::unique_ptr<PipeFile> take_pipe() { return std::move(pipe_); }

private:
    void place_output();
    void place_file(const std::string& output);
    void require_printer();
    void watch_pipe();
    ExitStatus print(const std::function<Selection()>& select);
    void report_outcome(ExitStatus status);
    /// Sends the document that was delivered just now, all its files in one mail.
    ExitStatus mail();

    Host& host_;
    const DeliveryOptions& options_;
    const ReportKind& kind_;
    SessionState& state_;
    Delivery delivery_;
    std::unique_ptr<PipeFile> pipe_;
    bool pipe_filled_ = false;
    std::exception_ptr pipe_failure_;
    RunProgress progress_;
    size_t rows_ = 0;  ///< of the pipe
    RunSummary summary_;
};

}  // namespace velora
