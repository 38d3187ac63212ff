#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include "adapters/sqlite/connection.h"
#include "forms/desk.h"
#include "forms/frm_add.h"
#include "forms/frm_report.h"
#include "forms/frm_viewer.h"
#include "host/host.h"
#include "host/open_windows.h"
#include "host/program.h"
#include "host/windows_module.h"
#include "windows/page_tiles.h"

namespace velora::testing {
namespace {

using namespace forms;

/// Boxes as text, pages in windows.
class TextAndPages final : public UserInterface {
public:
    TextAndPages(UserInterface& boxes, Desk& desk) : boxes_(boxes), desk_(desk) {}
    void show(const MessageBox& box) override { boxes_.show(box); }
    void show_pages(std::shared_ptr<PageView> pages, const std::string& caption) override
    {
        desk_.show_viewer(std::move(pages), caption);
    }
    void progress(size_t done, size_t total) override
    {
        if (on_progress) on_progress(done, total);
    }
    std::function<void(size_t, size_t)> on_progress;

private:
    UserInterface& boxes_;
    Desk& desk_;
};

/// The windows of a sample company, with real keys and clicks offscreen.
class Windows : public HostTest {
protected:
    static void SetUpTestSuite() { qputenv("QT_QPA_PLATFORM", "offscreen"); }

    void SetUp() override
    {
        HostTest::SetUp();
        fs::copy(company(), scratch("company"), fs::copy_options::recursive);
    }

    void open(const std::function<void(drive::HostCalls)>& call)
    {
        CommonOptions options;
        options.folder = scratch("company").string();
        options.settings = scratch("settings.ini").string();
        options.today = DateTime::from_iso("2026-06-15");
        options.region = "en-US";
        host_ = std::make_unique<Host>(options, around_);
        desk_ = std::make_unique<Desk>(host_->company());
        toolkit_ = open_toolkit(VELORA_WINDOWS_MODULE, *desk_, {.places = {}, .is_scripted = true});
        user_ = std::make_unique<TextAndPages>(host_->user(), *desk_);
        host_->company().ports.user = user_.get();
        host_->company().ports.windows = desk_.get();
        desk_->run_until_unloaded = [this](Form& form) {
            if (in_modal) in_modal(form);
            form.unload();
        };
        call(host_calls(host_->company()));
        QApplication::processEvents();
    }
    void open_selection()
    {
        open([](const drive::HostCalls& calls) { calls.open_reports(eRptQuote, 0); });
    }

    void TearDown() override
    {
        if (desk_) desk_->close_all();
        toolkit_.reset();
        if (host_) host_->company().ports.windows = nullptr;
        desk_.reset();
        host_.reset();
        HostTest::TearDown();
    }

    void open_preview()
    {
        open([](const drive::HostCalls& calls) { calls.open_reports(eRptQuote, 52); });
        desk_->report()->lstReports.choose(0);
        desk_->report()->tlbPreview.press();
        QApplication::processEvents();
    }

    static QWidget* window(const char* form)
    {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == form && top->isVisible()) return top;
        }
        return nullptr;
    }
    template <class Widget>
    static Widget* widget(const char* form, const char* control)
    {
        QWidget* top = window(form);
        return top != nullptr ? top->findChild<Widget*>(control) : nullptr;
    }
    static void click(QWidget* target)
    {
        QWidget* top = target->window();
        QTest::mouseClick(top->windowHandle(), Qt::LeftButton, {}, target->mapTo(top, target->rect().center()));
        QApplication::processEvents();
    }
    static std::string focused()
    {
        return QApplication::focusWidget() != nullptr ? QApplication::focusWidget()->objectName().toStdString() : "";
    }

    std::function<void(Form&)> in_modal;
    std::ostringstream out_, err_;
    Surroundings around_{out_, err_, [](const char*) { return std::string(); },
                         fs::path(VELORA_SOURCE_DIR) / "velora-report", false};
    std::unique_ptr<Host> host_;
    std::unique_ptr<Desk> desk_;
    std::unique_ptr<Toolkit> toolkit_;
    std::unique_ptr<TextAndPages> user_;
};

void collect_names(QAccessibleInterface* part, std::map<std::string, std::string>& names)
{
    if (part == nullptr) return;
    if (part->object() != nullptr && !part->object()->objectName().isEmpty()) {
        names[part->object()->objectName().toStdString()] = part->text(QAccessible::Name).toStdString();
    }
    for (int at = 0; at < part->childCount(); ++at) collect_names(part->child(at), names);
}

/// What a person can act on and a screen reader does not find, or finds without a name.
std::vector<std::string> nameless(const Form& form, QWidget& window)
{
    std::map<std::string, std::string> names;
    collect_names(QAccessible::queryAccessibleInterface(&window), names);
    std::vector<std::string> missing;
    for (const Control* control : form.controls()) {
        if (!control->takes_focus() || !control->is_usable()) continue;
        if (names[control->name()].empty()) missing.push_back(control->name());
    }
    return missing;
}

TEST_F(Windows, EveryControlHasANameForAScreenReader)
{
    std::vector<std::string> seen;
    in_modal = [&](Form& form) {
        QApplication::processEvents();
        seen.push_back(form.name());
        EXPECT_EQ(nameless(form, *window(form.name().c_str())), std::vector<std::string>()) << form.name();
    };
    open([](const drive::HostCalls& calls) {
        for (int pane = 0; pane < 10; ++pane) calls.show_printers(static_cast<WhichFrame>(pane));
    });
    host_calls(host_->company()).show_emailer();
    host_calls(host_->company()).open_reports(eRptQuote, 0);
    auto& selection = *desk_->report();
    selection.tlbPreview.press();  // of no quote: a box
    selection.mnuFileSub[5].press();
    selection.lvbQuote.press();
    for (Form* form : desk_->forms()) in_modal(*form);
    EXPECT_THAT(seen, ::testing::IsSupersetOf({"frmConfigure", "frmEmail", "frmReport", "frmAdd", "frmFinder"}));
    desk_->asks_for_printing = true;
    EXPECT_EQ(desk_->choose_printing(1), std::nullopt);
    EXPECT_EQ(seen.back(), "frmPrint");
}

TEST_F(Windows, EveryPartOfAViewerHasANameForAScreenReader)
{
    open_preview();
    QWidget* top = window("frmViewer 1");
    ASSERT_NE(top, nullptr);
    EXPECT_EQ(nameless(*desk_->find("frmViewer 1"), *top), std::vector<std::string>());
    int found = 0;
    for (const char* sort : {"QToolButton", "QAbstractItemView", "QAbstractScrollArea", "QLineEdit"}) {
        for (QWidget* part : top->findChildren<QWidget*>()) {
            if (!part->isVisibleTo(top) || !part->inherits(sort)) continue;
            if (part->objectName() == "qt_toolbar_ext_button") continue;  // the toolkit's own, for a narrow window
            const auto* read = QAccessible::queryAccessibleInterface(part);
            ASSERT_NE(read, nullptr);
            EXPECT_FALSE(read->text(QAccessible::Name).isEmpty()) << sort << " " << part->objectName().toStdString();
            ++found;
        }
    }
    EXPECT_GE(found, 13 + 3 + 2) << "buttons, boxes, pages and what is beside them";
}

TEST_F(Windows, TheKeyThatAcceptsPressesTheButtonThatHasTheFocus)
{
    open_selection();
    std::string told;
    in_modal = [&](Form& form) {
        auto& add = dynamic_cast<frmAdd&>(form);
        QApplication::processEvents();
        add.optCustom.press();
        add.enter(add.lvbCancel);
        QTest::keyClick(window("frmAdd")->windowHandle(), Qt::Key_Return);
        EXPECT_TRUE(form.is_unloaded());
        told = err_.str();
    };
    desk_->report()->mnuFileSub[5].press();
    EXPECT_EQ(told, "") << "OK would have said that there is no file";
}

TEST_F(Windows, TheDialogBeforePaperTakesPrinterPagesAndCopies)
{
    struct TwoPrinters final : Printers {
        [[nodiscard]] std::vector<Printer> list() const override { return {{"", "Laser", ""}, {"", "Office", ""}}; }
    };
    TwoPrinters printers;
    open_selection();
    host_->company().ports.printers = &printers;
    desk_->asks_for_printing = true;
    in_modal = [&](Form& form) {
        QApplication::processEvents();
        QWindow* dialog = window("frmPrint")->windowHandle();
        const auto type = [&](const char* box, const char* text) {
            auto* line = widget<QLineEdit>("frmPrint", box);
            click(line);
            line->selectAll();
            QTest::keyClicks(line, text);
        };
        QTest::keyClick(dialog, Qt::Key_Down);
        QTest::keyClick(dialog, Qt::Key_Down);
        EXPECT_FALSE(widget<QLineEdit>("frmPrint", "tbxPages")->isEnabled()) << "as long as all pages are chosen";
        click(widget<QWidget>("frmPrint", "optPages"));
        type("tbxPages", "2-x");
        type("tbxCopies", "3");
        QTest::keyClick(dialog, Qt::Key_Return);
        EXPECT_THAT(err_.str(), ::testing::HasSubstr("Pages are written as 1-3,7"));
        EXPECT_EQ(focused(), "tbxPages");
        ASSERT_FALSE(form.is_unloaded());
        type("tbxPages", "2-3,7");
        QTest::keyClick(dialog, Qt::Key_Return);
        EXPECT_TRUE(form.is_unloaded());
    };
    const auto wish = desk_->choose_printing(4);
    ASSERT_TRUE(wish);
    EXPECT_EQ(wish->device + " " + wish->pages + " " + std::to_string(wish->copies), "Office 2-3,7 3");
}

TEST_F(Windows, ARunningReportIsCancelledByItsButtonAndByEscapeAndTellsNothing)
{
    write_text(scratch("settings.ini"), "[DEMOCO_Report]\nFormat=0\n");
    open([](const drive::HostCalls& calls) { calls.open_reports(eRptCustomerList, 0); });
    host_->company().gConn->Execute(
        "INSERT INTO Customer (CustomerID, CustomerNumber, cuFullName, Exported) "
        "WITH RECURSIVE Many(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM Many WHERE n < 3000) "
        "SELECT 90000 + n, 'Z' || (10000 + n), 'Many', 0 FROM Many");
    auto& selection = *desk_->report();
    size_t most = 0;
    std::function<void()> person;
    user_->on_progress = [&](size_t done, size_t total) {
        most = std::max(most, done);
        if (person) QTimer::singleShot(0, person);
        toolkit_->user().progress(done, total);
    };
    const auto export_list = [&] {
        most = 0;
        selection.mnuFileSub[2].press();
        EXPECT_EQ(selection.pointer(), Pointer::Default);
        return fs::exists(scratch("company") / "20260615 - Customer List.pdf");
    };
    person = [] { click(widget<QWidget>("frmReport", "cancelRun")); };
    EXPECT_FALSE(export_list());
    EXPECT_EQ(most, 1000u) << "it ended there";
    person = [] { QTest::keyClick(window("frmReport")->windowHandle(), Qt::Key_Escape); };
    EXPECT_FALSE(export_list());
    EXPECT_EQ(most, 1000u);
    EXPECT_EQ(err_.str(), "");
    EXPECT_NE(desk_->find("frmReport"), nullptr) << "Escape closed nothing";
    auto* cancel = widget<QWidget>("frmReport", "cancelRun");
    ASSERT_NE(cancel, nullptr);
    EXPECT_FALSE(cancel->isVisible());
    person = [] { click(widget<QWidget>("frmReport", "lvbClose")); };
    EXPECT_TRUE(export_list()) << "a click elsewhere does nothing";
    EXPECT_NE(desk_->find("frmReport"), nullptr);
}

TEST_F(Windows, TheTabKeyGoesThroughWhatCanBeUsedInTheOrderOfTheForm)
{
    open_selection();
    std::vector<std::string> way{focused()};
    for (int step = 0; step < 5; ++step) {
        QTest::keyClick(window("frmReport")->windowHandle(), Qt::Key_Tab);
        way.push_back(focused());
    }
    EXPECT_THAT(way,
                ::testing::ElementsAre("lstReports", "tbxQuote", "lvbQuote", "lvwQuote", "lvbClose", "lstReports"));
    QTest::keyClick(window("frmReport")->windowHandle(), Qt::Key_Backtab);
    EXPECT_EQ(focused(), "lvbClose");
}

TEST_F(Windows, ABoxWithAWrongNumberKeepsTheFocusFromKeysAndClicks)
{
    open_selection();
    auto* box = widget<QLineEdit>("frmReport", "tbxQuote");
    click(box);
    QTest::keyClicks(box, "nonsense");
    EXPECT_EQ(desk_->report()->tbxQuote.text(), "nonsense");
    click(widget<QWidget>("frmReport", "lstReports"));
    EXPECT_EQ(focused(), "tbxQuote");
    EXPECT_EQ(box->text(), "") << "the form empties it";
    EXPECT_THAT(err_.str(), ::testing::HasSubstr("The Quote number that you entered cannot be found.")) << "told once";
    const std::string told = err_.str();
    QTest::keyClicks(box, "Q-10052");
    QTest::keyClick(window("frmReport")->windowHandle(), Qt::Key_Tab);
    EXPECT_NE(focused(), "tbxQuote");
    EXPECT_EQ(err_.str(), told);
    EXPECT_GT(widget<QTreeView>("frmReport", "lvwQuote")->model()->rowCount(), 0) << "what was found is shown";
}

TEST_F(Windows, KeysAloneFindAQuoteAndCloseTheForm)
{
    open_selection();
    bool found = false;
    in_modal = [&](Form& form) {
        if (form.name() != "frmFinder") return;
        QApplication::processEvents();
        auto* search = widget<QLineEdit>("frmFinder", "tbxSearch");
        QTest::keyClicks(search, "10052");
        QTest::keyClick(window("frmFinder")->windowHandle(), Qt::Key_Tab);
        QTest::keyClick(widget<QTreeView>("frmFinder", "lvwRows"), Qt::Key_Down);
        QTest::keyClick(window("frmFinder")->windowHandle(), Qt::Key_Return);
        found = form.is_unloaded();
    };
    QTest::keyClick(window("frmReport")->windowHandle(), Qt::Key_Tab);
    QTest::keyClick(widget<QLineEdit>("frmReport", "tbxQuote"), Qt::Key_F5);
    EXPECT_TRUE(found) << "Enter took the row";
    EXPECT_EQ(desk_->report()->tbxQuote.text(), "Q-10052");
    QTest::keyClick(window("frmReport")->windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(desk_->find("frmReport"), nullptr);
    EXPECT_EQ(window("frmReport"), nullptr);
}

/// What a new user does in a first hour, without a mouse.
TEST_F(Windows, AWholeVisitByKeysAlone)
{
    open_selection();
    const auto key = [](const char* form, Qt::Key pressed, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(window(form)->windowHandle(), pressed, with);
        QApplication::processEvents();
    };
    const auto menu = [&](Qt::Key letter, int rights, int downs) {
        key("frmReport", letter, Qt::AltModifier);
        for (int at = 0; at < rights; ++at) QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Right);
        QWidget* popup = QApplication::activePopupWidget();
        ASSERT_NE(popup, nullptr) << "no menu at Alt and that letter";
        for (int at = 0; at < downs; ++at) QTest::keyClick(popup, Qt::Key_Down);
        QTest::keyClick(popup, Qt::Key_Return);
        QApplication::processEvents();
    };
    auto& selection = *desk_->report();

    key("frmReport", Qt::Key_Down);
    EXPECT_EQ(selection.lstReports.selected(), 0);
    key("frmReport", Qt::Key_Tab);
    QTest::keyClicks(widget<QLineEdit>("frmReport", "tbxQuote"), "Q-10052");
    key("frmReport", Qt::Key_Tab);
    EXPECT_TRUE(selection.tlbPreview.enabled());

    menu(Qt::Key_F, 0, 1);  // the menu comes up on its first entry
    ASSERT_NE(window("frmViewer 1"), nullptr);
    key("frmViewer 1", Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(widget<QLineEdit>("frmViewer 1", "viewer/search"), "bearing");
    key("frmViewer 1", Qt::Key_Return);
    EXPECT_GT(dynamic_cast<frmViewer&>(*desk_->find("frmViewer 1")).matches(), 0u);
    key("frmViewer 1", Qt::Key_Backtab);
    while (focused() != "caxrViewer" && !focused().empty() && focused() != "viewer/search") {
        key("frmViewer 1", Qt::Key_Backtab);
    }
    ASSERT_EQ(focused(), "caxrViewer");
    key("frmViewer 1", Qt::Key_Escape);
    EXPECT_EQ(window("frmViewer 1"), nullptr);

    menu(Qt::Key_R, 1, 2);  // the next menu: export to file
    ASSERT_NE(window("frmConfigure"), nullptr);
    key("frmConfigure", Qt::Key_Tab);
    EXPECT_EQ(focused(), "cboExport");
    key("frmConfigure", Qt::Key_Down);
    key("frmConfigure", Qt::Key_Return);
    EXPECT_THAT(file_text(scratch("settings.ini")), ::testing::ContainsRegex("Format *= *0"));
    key("frmReport", Qt::Key_E, Qt::ControlModifier);
    EXPECT_THAT(err_.str(), ::testing::HasSubstr("The Report has been exported successfully."));

    const fs::path own = scratch("company") / "Reports" / "Customer List.rpt";
    in_modal = [&](Form&) {
        QApplication::processEvents();
        const auto on_to = [&](const char* control) {
            for (int at = 0; at < 8 && focused() != control; ++at) key("frmAdd", Qt::Key_Tab);
            EXPECT_EQ(focused(), control);
        };
        on_to("optCustom");
        key("frmAdd", Qt::Key_Space);
        on_to("txtFile");
        QTest::keyClicks(widget<QLineEdit>("frmAdd", "txtFile"), QString::fromStdString(own.string()));
        key("frmAdd", Qt::Key_Return);
    };
    menu(Qt::Key_F, 0, 4);  // separators are passed over
    EXPECT_EQ(selection.lstReports.count(), 3);
    EXPECT_THAT(file_text(scratch("company") / "Reports" / "DEMOCO_QuoteReports.ini"),
                ::testing::HasSubstr("Location=" + own.string()));
    key("frmReport", Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(window("frmReport"), nullptr);
}

TEST_F(Windows, AViewerPaintsItsPagesMarksWhatIsFoundAndCopiesWhatIsMarked)
{
    open_preview();
    auto* viewer = dynamic_cast<frmViewer*>(desk_->find("frmViewer 1"));
    ASSERT_NE(viewer, nullptr);
    auto* area = widget<QAbstractScrollArea>("frmViewer 1", "caxrViewer");
    ASSERT_NE(area, nullptr);
    const auto count = [&](auto is_one) {
        QApplication::processEvents();
        const QImage seen = area->viewport()->grab().toImage();
        int points = 0;
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x) points += is_one(seen.pixelColor(x, y)) ? 1 : 0;
        }
        return points;
    };
    const auto is_ink = [](const QColor& color) { return color.lightness() < 60; };
    const auto is_marked = [](const QColor& color) {
        return color.red() > 240 && color.green() > 200 && color.blue() < 120;
    };
    EXPECT_GT(count(is_ink), 500) << "there are letters";
    EXPECT_EQ(count(is_marked), 0);

    auto* search = widget<QLineEdit>("frmViewer 1", "viewer/search");
    search->setFocus(Qt::MouseFocusReason);
    QTest::keyClicks(search, "q-10052");
    EXPECT_EQ(viewer->matches(), 0u) << "not before Enter";
    QTest::keyClick(search, Qt::Key_Return);
    EXPECT_GT(viewer->matches(), 0u);
    EXPECT_GT(count(is_marked), 100);

    QTest::keyClick(search, Qt::Key_F3);
    EXPECT_EQ(viewer->page(), 2u) << "keys of the buttons work in the boxes too";
    QTest::keyClick(search, Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(viewer->page(), 1u);
    QTest::keyClick(search, Qt::Key_Escape);
    EXPECT_TRUE(area->hasFocus()) << "back to the pages";

    // From the upper left corner to the lower right one.
    QWidget& pages = *area->viewport();
    QTest::mousePress(&pages, Qt::LeftButton, {}, QPoint(2, 2));
    QTest::mouseMove(&pages, pages.rect().bottomRight() - QPoint(2, 2));
    QMouseEvent move(QEvent::MouseMove, pages.rect().bottomRight(), pages.mapToGlobal(pages.rect().bottomRight()),
                     Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&pages, &move);
    QTest::mouseRelease(&pages, Qt::LeftButton, {}, pages.rect().bottomRight());
    ASSERT_TRUE(viewer->marked_text);
    EXPECT_THAT(viewer->marked_text(), ::testing::HasSubstr("Q-10052"));

    viewer->first.press();
    area->verticalScrollBar()->triggerAction(QScrollBar::SliderToMaximum);
    EXPECT_EQ(viewer->page(), viewer->page_count()) << "scrolling tells the page";
    viewer->set_zoom(800);
    EXPECT_GT(count(is_ink) + count([](const QColor& color) { return color == Qt::white; }), 0);
}

TEST(PageTiles, KeepTheirBoundWhateverIsPainted)
{
    struct Grey final : PaintedPages {
        void paint(size_t page, double, const PixelArea& area) const override
        {
            std::fill_n(area.pixels, area.width * area.height, 0xff000000U + static_cast<uint32_t>(page));
        }
        [[nodiscard]] std::vector<PageText> page_texts(size_t) const override { return {}; }
    };
    windows::PageTiles tiles;
    const Grey pages;
    const QSize size(2 * windows::PageTiles::kSide - 100, 1000);
    for (size_t page = 0; page < 60; ++page) {
        const windows::PageTiles::Key key{page, 9600, 1, 0};
        EXPECT_TRUE(tiles.find(key).isNull());
        EXPECT_EQ(tiles.paint(pages, key, size).width(), windows::PageTiles::kSide - 100) << "the edge of the page";
        EXPECT_EQ(tiles.find(key).pixel(3, 3), 0xff000000U + page);
        EXPECT_LE(tiles.bytes(), windows::PageTiles::kMostBytes);
    }
    EXPECT_FALSE(tiles.find({58, 9600, 1, 0}).isNull()) << "what was painted last stays";
    EXPECT_TRUE(tiles.find({0, 9600, 1, 0}).isNull());
}

TEST_F(Windows, AFinderReadsMoreRowsOnlyWhenAPersonScrolls)
{
    open_selection();
    auto& database = *host_->company().gConn;
    database.Execute(
        "INSERT INTO Customer (CustomerID, CustomerNumber, cuFullName) "
        "WITH RECURSIVE Many(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM Many WHERE n < 500) "
        "SELECT 90000 + n, 'Z' || (10000 + n), 'Many' FROM Many");
    std::vector<int> counts;
    in_modal = [&](Form&) {
        QApplication::processEvents();
        auto* rows = widget<QTreeView>("frmFinder", "lvwRows");
        if (rows == nullptr) return;
        counts.push_back(rows->model()->rowCount());
        rows->scrollToBottom();
        counts.push_back(rows->model()->rowCount());
        rows->verticalScrollBar()->triggerAction(QScrollBar::SliderToMaximum);
        counts.push_back(rows->model()->rowCount());
    };
    auto& selection = *desk_->report();
    selection.mnuReportSub[5].press();
    selection.cboFrom[1].choose(2);
    selection.lvbCustomer[1].press();
    EXPECT_THAT(counts, ::testing::ElementsAre(200, 200, 400));
}

}  // namespace
}  // namespace velora::testing
