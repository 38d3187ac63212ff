#include "host/watched_engine.h"

#include "values/fault.h"

namespace velora {
namespace {

/// Counts the rows on their way to the report.
class CountedTable final : public TableSource {
public:
    CountedTable(std::shared_ptr<TableSource> table, WatchedEngine& engine) : table_(std::move(table)), engine_(engine)
    {
    }

    [[nodiscard]] const std::vector<Field>& fields() const override { return table_->fields(); }
    bool next() override
    {
        constexpr size_t kOften = 1000;
        if (++count_ % kOften == 0) engine_.count(count_);
        return table_->next();
    }
    void rewind() override { table_->rewind(); }
    [[nodiscard]] const Value& cell(size_t field) const override { return table_->cell(field); }

private:
    std::shared_ptr<TableSource> table_;
    WatchedEngine& engine_;
    size_t count_ = 0;
};

class WatchedReport final : public OpenedReport {
public:
    WatchedReport(std::shared_ptr<OpenedReport> report, WatchedEngine& engine)
        : report_(std::move(report)), engine_(engine)
    {
    }

    [[nodiscard]] const std::vector<TableSource::Field>& fields() const override { return report_->fields(); }
    [[nodiscard]] bool brings_its_own_data() const override { return report_->brings_its_own_data(); }
    void SetDataSource(std::shared_ptr<TableSource> data) override
    {
        report_->SetDataSource(std::make_shared<CountedTable>(std::move(data), engine_));
    }
    void SelectPrinter(const std::string& driver, const std::string& device, const std::string& port) override
    {
        report_->SelectPrinter(driver, device, port);
    }
    void PaperOrientation(int orientation) override { report_->PaperOrientation(orientation); }
    void PaperSource(int source) override { report_->PaperSource(source); }
    void PrintOut() override { report_->PrintOut(); }
    void Export(ExportFormat format, const std::string& path) override { report_->Export(format, path); }
    std::shared_ptr<PageView> View() override { return report_->View(); }
    [[nodiscard]] const std::vector<std::string>& warnings() const override { return report_->warnings(); }

private:
    std::shared_ptr<OpenedReport> report_;
    WatchedEngine& engine_;
};

}  // namespace

std::shared_ptr<OpenedReport> WatchedEngine::OpenReport(const std::string& path)
{
    try {
        return std::make_shared<WatchedReport>(engine_.OpenReport(path), *this);
    } catch (const Fault& caught) {
        reason_ = path;
        if (!caught.where().empty()) reason_ += ": " + caught.where();
        throw;
    }
}

}  // namespace velora
