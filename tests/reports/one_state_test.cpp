#include "adapters/sqlite_core/database.h"
#include "adapters/sqlite_core/statement.h"
#include "reports/confirmation.h"
#include "reports/order_company.h"
#include "reports/picking_slip.h"
#include "reports/win_loss.h"

// While a report is read nobody changes what it reads, in either store; while it goes out everybody may again.

namespace velora {
namespace {

using test::OrderCompany;

/// Asks, when it goes out, who may write.
class WatchedReport final : public OpenedReport {
public:
    explicit WatchedReport(std::function<void()> goes_out) : goes_out_(std::move(goes_out)) {}

    [[nodiscard]] const std::vector<TableSource::Field>& fields() const override { return none_; }
    [[nodiscard]] bool brings_its_own_data() const override { return false; }
    void SetDataSource(std::shared_ptr<TableSource>) override {}
    void SetParameter(const std::string&, Value) override {}
    void SelectPrinter(const std::string&, const std::string&, const std::string&) override {}
    void PaperOrientation(int) override {}
    void PaperSource(int) override {}
    void PrintOut() override { goes_out_(); }
    void Export(ExportFormat, const std::string&) override { goes_out_(); }
    std::shared_ptr<PageView> View() override { return nullptr; }
    [[nodiscard]] const std::vector<std::string>& warnings() const override { return warnings_; }

private:
    std::function<void()> goes_out_;
    std::vector<TableSource::Field> none_;
    std::vector<std::string> warnings_;
};

class WatchingEngine final : public ReportEngine {
public:
    explicit WatchingEngine(std::function<void()> goes_out) : goes_out_(std::move(goes_out)) {}
    std::shared_ptr<OpenedReport> OpenReport(const std::string&) override
    {
        return std::make_shared<WatchedReport>(goes_out_);
    }

private:
    std::function<void()> goes_out_;
};

class WatchedCompany : public OrderCompany {
public:
    WatchedCompany() : OrderCompany(eDBSQLServer)
    {
        lines(
            {"Line = 1, deDType = 20, APItem = 'ITEM', deLocation = 'A', deQuantity = 1, deQuotedPrice = 1, "
             "deConvFactor = 1, deDiscount = 0, dePriceList = 'STD', deIType = 30",
             "Line = 2, deDType = 20, APItem = 'ITEM', deLocation = 'B', deQuantity = 1, deQuotedPrice = 1, "
             "deConvFactor = 1, deDiscount = 0, dePriceList = 'STD', deIType = 30"});
        product("UPDATE Defaults SET mdUseDLRange = 1, mdEachLoc = 0, mdLocDetail = 1");
    }

    /// Who may write after each step: "read" when the data is complete, "out" when the report goes out.
    std::string watch(const std::function<RunEnd(SessionState&)>& print)
    {
        SessionState& it = loaded();
        const auto file = it.gConn->Execute("PRAGMA database_list");
        folder_ = std::filesystem::path(to_text(file->value("file"))).parent_path();
        WatchingEngine watching([&] { note("out"); });
        it.ports.engine = &watching;
        it.ports.on_pipe = [&](const DataPipeRecordset&) { note("read"); };
        EXPECT_EQ(print(it), RunEnd::Delivered) << box_text(0);
        note("end");
        it.ports.engine = &engine;
        return log_;
    }

private:
    void note(const std::string& step)
    {
        log_ += (log_.empty() ? "" : ", ") + step;
        for (const char* store : {"velora.db", "accounting.db"}) {
            try {
                sqlite::Database::open((folder_ / store).string(), {.busy_milliseconds = 1})
                    .run("BEGIN EXCLUSIVE; COMMIT");
                log_ += std::string(" ") + store;
            } catch (const sqlite::DriverError&) {  // somebody reads
            }
        }
    }

    std::filesystem::path folder_;
    std::string log_;
};

TEST(OneState, OfBothStoresIsReadUntilTheReportGoesOut)
{
    const std::string both = " velora.db accounting.db";
    WatchedCompany confirmed;
    EXPECT_EQ(confirmed.watch([](auto& s) { return Print_Confirmation(s, 1, "any.rpt", false, true); }),
              "read, out" + both + ", end" + both);
    WatchedCompany picked;
    EXPECT_EQ(picked.watch([](auto& s) { return Print_PickingSlip(s, 1, "any.rpt", false, true, false); }),
              "read, out, read, out, end" + both)
        << "slips of one order are read in one piece";
}

}  // namespace
}  // namespace velora
