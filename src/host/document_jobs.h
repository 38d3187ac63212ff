#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/documents.h"

namespace velora {

/// One document of a run.
struct DocumentTask {
    std::string label;
    std::string key;  ///< documents of one key come one after the other: their files or marks may meet
};

/// Several documents to work out on several processes over the same stores.
struct DocumentJobs {
    const std::vector<DocumentTask>& tasks;
    size_t count;  ///< of processes
    const DeliveryOptions& options;
    const ReportKind& kind;
    std::unique_ptr<PipeFile> pipe;  ///< none where nobody asked for one
    /// What a document is about, asked in the process that works it out.
    std::function<Selection(SessionState& state, size_t task)> select;
    bool marks = true;
};

/// Works the documents out. What they say, show and write into the pipe comes in the order of the tasks, as from one
/// process. A process that ends before its time fails its own documents alone. No store may be open meanwhile, since
/// a database must not go over into another process. @throws HostError when no further process can be started
ExitStatus run_jobs(Host& host, DocumentJobs& jobs);

}  // namespace velora
