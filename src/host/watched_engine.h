#pragma once

#include <functional>
#include <string>

#include "platform/report_engine.h"

namespace velora {

/// Passes everything on to the engine, keeps why a definition could not be opened, and counts the rows that a report
/// reads. It has to outlive its reports.
class WatchedEngine final : public ReportEngine {
public:
    using RowCounter = std::function<void(size_t)>;

    explicit WatchedEngine(ReportEngine& engine) : engine_(engine) {}

    std::shared_ptr<OpenedReport> OpenReport(const std::string& path) override;

    /// Called with the number of rows read so far, each thousand rows; empty for nobody.
    void count_rows(RowCounter counter) { counter_ = std::move(counter); }
    void count(size_t rows) const
    {
        if (counter_) counter_(rows);
    }

    /// Path and reason of the definition that could not be opened last; blank when all could.
    [[nodiscard]] const std::string& reason() const { return reason_; }
    void forget() { reason_.clear(); }

private:
    ReportEngine& engine_;
    RowCounter counter_;
    std::string reason_;
};

}  // namespace velora
