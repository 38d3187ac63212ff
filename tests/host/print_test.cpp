#include <gmock/gmock.h>

#include <memory>

#include "forms/desk.h"
#include "forms/frm_print.h"
#include "forms/frm_report.h"
#include "forms/frm_viewer.h"
#include "host/host.h"
#include "host/open_windows.h"
#include "host/program.h"
#include "support/print_shop.h"

namespace velora::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

/// On a printer that is there, with everything between the command line and the paper.
class Printing : public HostTest {
protected:
    static void SetUpTestSuite() { shop_ = std::make_unique<test::PrintShop>(); }
    static void TearDownTestSuite() { shop_.reset(); }
    void SetUp() override
    {
        HostTest::SetUp();
        if (!shop_->missing().empty()) GTEST_SKIP() << "no printer here:" << shop_->missing();
        ASSERT_TRUE(shop_->is_open());
    }
    [[nodiscard]] Ran print(const std::string& printer) const
    {
        return run(in_company(company(), {"quote", "--number", "Q-10052", "--print", printer}));
    }

    static inline std::unique_ptr<test::PrintShop> shop_;
};

TEST_F(Printing, ThePagesArriveAsTheyAreExportedUnderTheDocumentsName)
{
    const fs::path exported = scratch("quote.pdf");
    ASSERT_EQ(run(in_company(company(), {"quote", "--number", "Q-10052", "--output", exported.string()})).status, 0);
    const Ran ran = print("ffic");
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, AllOf(HasSubstr("\"Q-10052 - Les Aciéries Beauharnois inc.\" went to the printer as job ")));
    const std::string pages = file_text(exported);
    EXPECT_TRUE(shop_->arrived("10052", pages.size()) == pages) << "other pages arrived";
    EXPECT_THAT(shop_->told("media"), ::testing::Not(::testing::IsEmpty()));
}

/// Pages into viewers, as windows do it.
class PagesInViewers final : public UserInterface {
public:
    explicit PagesInViewers(forms::Desk& desk) : desk_(desk) {}
    void show(const MessageBox& box) override { boxes += box.text; }
    void show_pages(std::shared_ptr<PageView> pages, const std::string& caption) override
    {
        desk_.show_viewer(std::move(pages), caption);
    }
    std::string boxes;

private:
    forms::Desk& desk_;
};

TEST_F(Printing, PagesAndCopiesOfTheDialogArrive)
{
    CommonOptions options;
    options.folder = company().string();
    options.settings = scratch("settings.ini").string();
    options.today = DateTime::from_iso("2026-06-15");
    std::ostringstream out;
    const Surroundings around{out, out, [](const char*) { return std::string(); },
                              fs::path(VELORA_SOURCE_DIR) / "velora-report", false};
    Host host(options, around);
    SessionState& state = host.company();
    forms::Desk desk(state);
    PagesInViewers user(desk);
    state.ports.user = &user;
    state.ports.windows = &desk;
    desk.asks_for_printing = true;
    desk.run_until_unloaded = [](forms::Form& form) {
        auto& dialog = dynamic_cast<forms::frmPrint&>(form);
        const auto& printers = dialog.cboPrinter.items();
        const auto office = std::ranges::find(printers, "Office", &forms::DropDown::Item::text);
        dialog.cboPrinter.choose(static_cast<int>(office - printers.begin()));
        dialog.optPages.press();
        dialog.tbxPages.type("2-3");
        dialog.tbxCopies.type("2");
        dialog.lvbOK.press();
    };
    const size_t before = shop_->count();
    host_calls(state).open_reports(eRptQuote, 52);
    desk.report()->lstReports.choose(0);
    desk.report()->tlbPreview.press();
    auto* viewer = dynamic_cast<forms::frmViewer*>(desk.find("frmViewer 1"));
    ASSERT_NE(viewer, nullptr) << user.boxes;
    viewer->print.press();
    EXPECT_THAT(shop_->arrived("quote", 1000), ::testing::StartsWith("%PDF-")) << user.boxes;
    EXPECT_THAT(shop_->told("page-ranges"), ::testing::Contains("(rangeOfInteger) 2-3"));
    EXPECT_THAT(shop_->told("copies"), ::testing::Contains("(integer) 2"));
    EXPECT_EQ(shop_->count(), before + 1);
    desk.close_all();
    state.ports.windows = nullptr;
}

TEST_F(Printing, APrinterThatDoesNotPrintIsABoxWithItsWords)
{
    const size_t before = shop_->count();
    const Ran ran = print("Stopped");
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, AllOf(HasSubstr("482"), HasSubstr("is stopped: Out of toner. Nothing was printed.")));
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(shop_->count(), before);
}

}  // namespace
}  // namespace velora::testing
