#pragma once

#include "adapters/terminal/progress_bar.h"

namespace velora {

/// How far a run of one or more documents has come, as one bar on a terminal.
class RunProgress {
public:
    RunProgress(std::ostream& out, bool is_watched, size_t documents)
        : bar_(out, is_watched, documents > 1 ? "Documents" : "Report"), documents_(documents)
    {
    }

    void document_begins() { show(0, 1); }
    void document_ends()
    {
        ++done_;
        show(0, 1);
    }
    /// Of the document in hand. @param total  0 while nobody knows it
    void rows(size_t done, size_t total)
    {
        if (total == 0) {
            bar_.count(done);
        } else {
            show(done, total);
        }
    }
    /// Takes the line away, so that something else can be written.
    void clear() { bar_.clear(); }

private:
    void show(size_t part, size_t whole)
    {
        if (done_ < documents_) bar_.show(done_ * whole + std::min(part, whole), documents_ * whole);
    }

    ProgressBar bar_;
    size_t documents_;
    size_t done_ = 0;
};

}  // namespace velora
