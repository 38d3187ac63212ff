#include "adapters/engine/report_engine.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/painted_pages.h"
#include "values/fault.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

class Rows : public TableSource {
public:
    explicit Rows(std::vector<int> numbers) : numbers_(std::move(numbers)) {}
    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override
    {
        if (at_ == numbers_.size()) return false;
        cell_ = Value(numbers_[at_++]);
        return true;
    }
    void rewind() override { at_ = 0; }
    [[nodiscard]] const Value& cell(size_t) const override { return cell_; }

private:
    std::vector<Field> fields_{{"n", Value::Type::Integer}};
    std::vector<int> numbers_;
    size_t at_ = 0;
    Value cell_;
};

constexpr const char* kDefinition =
    R"(<jasperReport name="numbers" pageWidth="200" pageHeight="100" columnWidth="180" leftMargin="10" rightMargin="10"
        topMargin="10" bottomMargin="10">%HEAD%<field name="n" class="java.lang.Integer"/>
        <detail><band height="40"><element kind="textField" x="0" y="0" width="100" height="20">
        <expression>$F{n}</expression></element></band></detail></jasperReport>)";

class ReportEngineTest : public testing::Test {
protected:
    ReportEngineTest() : folder_(fs::path(VELORA_TEST_SCRATCH) / "report_engine") { fs::create_directories(folder_); }

    std::string definition(const std::string& head, const char* name = "numbers.rpt") const
    {
        std::string xml = kDefinition;
        xml.replace(xml.find("%HEAD%"), 6, head);
        std::ofstream(folder_ / name) << xml;
        return (folder_ / name).string();
    }
    static std::unique_ptr<ReportEngine> engine(EngineServices services = {})
    {
        return make_report_engine(fs::path(VELORA_SOURCE_DIR) / "fonts", std::move(services));
    }
    static std::string content(const fs::path& file)
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    fs::path folder_;
};

TEST_F(ReportEngineTest, WhatIsNoDefinitionIsTheFaultOfAReportThatCannotBeFound)
{
    std::ofstream(folder_ / "text.rpt") << "no definition";
    std::ofstream(folder_ / "expression.rpt")
        << "<jasperReport name=\"x\"><detail><band height=\"20\"><element kind=\"textField\" x=\"0\" y=\"0\" "
           "width=\"9\" "
           "height=\"9\"><expression>$F{gone}</expression></element></band></detail></jasperReport>";
    for (const char* name : {"gone.rpt", "text.rpt", "expression.rpt"}) {
        try {
            engine()->OpenReport((folder_ / name).string());
            ADD_FAILURE() << name << " was opened";
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.number(), fault::kReportFile) << name;
            EXPECT_FALSE(fault.where().empty()) << name << ": the reason is told";
        }
    }
}

TEST_F(ReportEngineTest, AllExpressionsOutsideTheLanguageAreToldAtOnceOrLeftOut)
{
    const auto field = [](const std::string& text, int y) {
        return "<element kind=\"textField\" x=\"0\" y=\"" + std::to_string(y) +
               "\" width=\"100\" height=\"12\"><expression>" + text + "</expression></element>";
    };
    const std::string path = definition(
        "<style name=\"s\"><conditionalStyle forecolor=\"#FF0000\"><conditionExpression>"
        "$F{n}.shade()</conditionExpression></conditionalStyle></style>\n<title height=\"40\">" +
        field("$F{n}.mine()", 0) + "\n" + field("\"kept\"", 12) + "\n" + field("$F{gone}", 24) + "</title>");
    const auto opened = engine();
    std::string reason;
    try {
        opened->OpenReport(path);
    } catch (const Fault& fault) {
        reason = fault.where();
    }
    for (const char* told : {"'shade' is outside", "'mine' is outside", "there is no field 'gone'"}) {
        EXPECT_NE(reason.find(told), std::string::npos) << told << " in\n" << reason;
    }
    EXPECT_EQ(std::ranges::count(reason, '\n'), 2) << reason;

    opened->Wish({.lenient = true, .parameters = {}});
    const auto report = opened->OpenReport(path);
    EXPECT_EQ(report->warnings().size(), 3u);
    report->SetDataSource(std::make_shared<Rows>(std::vector{7}));
    EXPECT_EQ(report->View()->page_text(0), "kept\n7") << "what was left out shows nothing";
}

TEST_F(ReportEngineTest, ParametersAreTakenAsTheClassThatTheDefinitionGivesThem)
{
    struct Case {
        const char *type, *typed, *shown;
    };
    for (const auto& c : {
             Case{"java.lang.Integer", "12", "13"},
             Case{"java.lang.String", "12", "121"},
             Case{"java.math.BigDecimal", "1.255", "2.2550"},
             Case{"java.lang.Integer", "twelve", "is of the class Integer, and \"twelve\" is none"},
             Case{"java.lang.Boolean", "yes", "is of the class Boolean, and \"yes\" is none"},
         }) {
        const std::string path = definition(
            "<parameter name=\"p\" class=\"" + std::string(c.type) +
            "\"/><title height=\"20\"><element kind=\"textField\" x=\"0\" y=\"0\" width=\"100\" height=\"20\">"
            "<expression>" +
            (std::string(c.type).ends_with("Boolean") ? "$P{p}" : "$P{p} + 1") + "</expression></element></title>");
        const auto opened = engine();
        opened->Wish({.lenient = false, .parameters = {{"p", c.typed}}});
        std::string shown;
        try {
            const auto report = opened->OpenReport(path);
            report->SetDataSource(std::make_shared<Rows>(std::vector<int>{1}));
            shown = report->View()->page_text(0);
            shown.resize(shown.find('\n'));
        } catch (const Fault& fault) {
            shown = fault.where().substr(std::string("the parameter 'p' ").size());
        }
        EXPECT_EQ(shown, c.shown) << c.type << " " << c.typed;
    }
    const auto opened = engine();
    opened->Wish({.lenient = false, .parameters = {{"q", "1"}}});
    try {
        opened->OpenReport(definition("<parameter name=\"p\"/>"));
        ADD_FAILURE() << "a parameter that is not there was taken";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.where(), "there is no parameter 'q'; it has 'p'");
    }
}

TEST_F(ReportEngineTest, EveryRunTellsOfTheFontsAndLettersThatAreMissing)
{
    const auto opened = engine();
    const std::string path = definition(
        "<title height=\"40\"><element kind=\"staticText\" fontName=\"No Such Face\" width=\"180\" height=\"20\"><text>"
        "a\U000F1234\U000F1234 \U000F1235\U000F1236\U000F1237\U000F1238</text></element></title>");
    for (int run = 0; run < 2; ++run) {
        const auto report = opened->OpenReport(path);
        report->SetDataSource(std::make_shared<Rows>(std::vector{1}));
        report->Export(ExportFormat::Pdf, (folder_ / "missing.pdf").string());
        EXPECT_EQ(report->warnings(), (std::vector<std::string>{
                                          "The font 'No Such Face' is missing; 'DejaVu Sans' stands in for it.",
                                          "No font has the character '\U000F1234' (U+F1234); a box stands for it.",
                                          "No font has the character '\U000F1235' (U+F1235); a box stands for it.",
                                          "No font has the character '\U000F1236' (U+F1236); a box stands for it.",
                                          "No font has some further characters; boxes stand for them.",
                                      }));
    }
}

TEST_F(ReportEngineTest, ExportsEveryFormatAndShowsPages)
{
    const auto opened = engine();
    const auto report = opened->OpenReport(definition(""));
    ASSERT_EQ(report->fields().size(), 1u);
    EXPECT_EQ(report->fields()[0].name, "n");
    EXPECT_EQ(report->fields()[0].type, Value::Type::Integer);
    report->SetDataSource(std::make_shared<Rows>(std::vector{7, 8, 9}));

    const auto view = report->View();
    ASSERT_EQ(view->page_count(), 2u);
    EXPECT_EQ(view->page_text(0), "7\n8");
    EXPECT_TRUE(view->page_png(1, 72).starts_with("\x89PNG"));
    EXPECT_THROW((void)view->page_text(2), Fault);

    struct Case {
        ExportFormat format;
        const char* name;
        const char* begins;
    };
    for (const auto& c :
         {Case{ExportFormat::Pdf, "o.pdf", "%PDF-"}, Case{ExportFormat::Html, "o.html", "<!DOCTYPE html>"},
          Case{ExportFormat::Xls, "o.xls", "\xd0\xcf\x11\xe0"}, Case{ExportFormat::Doc, "o.doc", "{\\rtf"},
          Case{ExportFormat::Rtf, "o.rtf", "{\\rtf"}, Case{ExportFormat::Txt, "o.txt", ""},
          Case{ExportFormat::Xml, "o.xml", "<?xml"}}) {
        report->Export(c.format, (folder_ / c.name).string());
        EXPECT_TRUE(content(folder_ / c.name).starts_with(c.begins)) << c.name;
        EXPECT_FALSE(content(folder_ / c.name).empty()) << c.name;
    }
}

TEST_F(ReportEngineTest, APageIsPaintedInPartsAndItsLettersStandWhereTheInkIs)
{
    const auto opened = engine();
    const auto report = opened->OpenReport(definition(""));
    report->SetDataSource(std::make_shared<Rows>(std::vector{7, 8, 9}));
    const auto view = report->View();
    const auto& pages = dynamic_cast<const PaintedPages&>(*view);
    const auto size = view->page_size();
    const int width = static_cast<int>(size.width), height = static_cast<int>(size.height);
    std::vector<uint32_t> whole(static_cast<size_t>(width) * static_cast<size_t>(height));
    pages.paint(0, 72, {0, 0, width, height, whole.data()});

    // A part is what stands there on the whole page; beyond the page it is white.
    constexpr int kSide = 90;
    std::vector<uint32_t> part(kSide * kSide);
    for (const auto& [x, y] : {std::pair{10, 10}, std::pair{0, 30}, std::pair{width - 20, 0}}) {
        pages.paint(0, 72, {x, y, kSide, kSide, part.data()});
        for (int row = 0; row < kSide && y + row < height; ++row) {
            for (int column = 0; column < kSide; ++column) {
                const bool on_page = x + column < width;
                const uint32_t expected =
                    on_page ? whole[static_cast<size_t>((y + row) * width + x + column)] : 0xffffffffU;
                ASSERT_EQ(part[static_cast<size_t>(row * kSide + column)] | 0xff000000U, expected | 0xff000000U)
                    << x + column << ',' << y + row;
            }
        }
    }

    const auto texts = pages.page_texts(0);
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[1].text, "8");
    size_t inside = 0, all = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if ((whole[static_cast<size_t>(y * width + x)] & 0xffU) > 200) continue;
            ++all;
            for (const auto& text : texts) {
                for (const auto& at : text.letters) {
                    const bool across = static_cast<float>(x) + 1 >= at.x && static_cast<float>(x) <= at.x + at.width;
                    const bool down = static_cast<float>(y) + 1 >= at.y && static_cast<float>(y) <= at.y + at.height;
                    if (across && down) ++inside;
                }
            }
        }
    }
    EXPECT_GT(all, 4u);
    EXPECT_EQ(inside, all) << "no ink outside a letter's box, and no box over another";
}

TEST_F(ReportEngineTest, AWindowIsToldOfPagesAsTheyAreMade)
{
    std::vector<std::string> told;
    std::weak_ptr<PageView> early;
    EngineServices services;
    services.on_first_page = [&](const std::shared_ptr<PageView>& pages) {
        early = pages;
        told.push_back("first of " + std::to_string(pages->page_count()));
    };
    services.on_page = [&] { told.push_back("page " + std::to_string(early.lock()->page_count())); };
    services.on_pages_end = [&](bool all_there) { told.emplace_back(all_there ? "all" : "failed"); };
    const auto opened = make_report_engine(fs::path(VELORA_SOURCE_DIR) / "fonts", services);
    const auto report = opened->OpenReport(definition(""));
    report->SetDataSource(std::make_shared<Rows>(std::vector{7, 8, 9}));
    const auto view = report->View();
    EXPECT_EQ(view, early.lock());
    EXPECT_EQ(told, (std::vector<std::string>{"first of 1", "page 2", "all"}));
}

TEST_F(ReportEngineTest, APageThatWaitsForTheEndIsThereBeforeAndChanges)
{
    const auto late = [](const std::string& text, const std::string& time) {
        return R"(<band height="20"><element kind="textField" x="0" y="0" width="100" height="20" evaluationGroup="G" )"
               "evaluationTime=\"" +
               time + "\"><expression>" + text + "</expression></element></band>";
    };
    const std::string path = definition("<group name=\"G\"><expression>$F{n} / 100</expression><groupHeader>" +
                                        late("\"Sum \" + $V{G_COUNT}", "Group") + "</groupHeader></group><pageFooter>" +
                                        late("\"of \" + $V{PAGE_NUMBER}", "Report") + "</pageFooter>");
    std::shared_ptr<PageView> early;
    std::vector<std::string> first_page;
    std::vector<uint32_t> revisions;
    EngineServices services;
    const auto look = [&] {
        if (const auto text = early->page_text(0); first_page.empty() || first_page.back() != text) {
            first_page.push_back(text);
            revisions.push_back(dynamic_cast<const PaintedPages&>(*early).revision(0));
        }
    };
    services.on_first_page = [&](const std::shared_ptr<PageView>& pages) {
        early = pages;
        look();
    };
    services.on_page = look;
    services.on_pages_end = [&](bool) { look(); };
    const auto opened = engine(services);
    const auto report = opened->OpenReport(path);
    std::vector<int> numbers{101, 102, 103, 200};
    for (int number = 300; number < 340; ++number) numbers.push_back(number);
    report->SetDataSource(std::make_shared<Rows>(numbers));
    const auto view = report->View();
    EXPECT_EQ(first_page, (std::vector<std::string>{"101", "Sum 3\n101", "Sum 3\n101\nof 44"}));
    EXPECT_EQ(revisions, (std::vector<uint32_t>{0, 1, 2}));
    ASSERT_EQ(view->outline().size(), 3u);
    EXPECT_EQ(view->outline()[0].text, "Sum 3");
    EXPECT_EQ(view->outline()[2].page, 3u) << "the header stands below the last row of the group before";

    const auto in_window = (folder_ / "window.xml").string(), direct = (folder_ / "direct.xml").string();
    view->Export(ExportFormat::Xml, in_window);
    report->SetDataSource(std::make_shared<Rows>(numbers));
    report->Export(ExportFormat::Xml, direct);
    EXPECT_EQ(content(in_window), content(direct)) << "what the window has is what a file has";
}

class BrokenRows : public Rows {
public:
    BrokenRows() : Rows({1, 2, 3}) {}
    bool next() override
    {
        if (++count_ == 3) throw fault::of(fault::kDatabase);
        return Rows::next();
    }

private:
    int count_ = 0;
};

TEST_F(ReportEngineTest, AFailureLeavesTheEarlierFileAsItWas)
{
    const auto opened = engine();
    const auto report = opened->OpenReport(definition(""));
    const fs::path target = folder_ / "kept.pdf";
    std::ofstream(target) << "earlier";
    report->SetDataSource(std::make_shared<BrokenRows>());
    EXPECT_THROW(report->Export(ExportFormat::Pdf, target.string()), Fault);
    EXPECT_EQ(content(target), "earlier");
    size_t beside = 0;
    for (const auto& file : fs::directory_iterator(folder_)) {
        beside += file.path().filename().string().find("kept") != std::string::npos;
    }
    EXPECT_EQ(beside, 1u) << "nothing half written is left";
}

TEST_F(ReportEngineTest, ADefinitionWithAQueryBringsItsOwnRowsWithItsParametersBound)
{
    std::string connection;
    Command ran;
    EngineServices services;
    services.run_query = [&](const std::string& on, const Command& command) {
        connection = on;
        ran = command;
        return std::make_shared<Rows>(std::vector{5});
    };
    const auto opened = engine(services);
    const auto report = opened->OpenReport(
        definition("<property name=\"velora.connection\" value=\"sqlite:own.db\"/><parameter name=\"low\" "
                   "class=\"java.lang.Integer\">"
                   "<defaultValueExpression>3</defaultValueExpression></parameter>"
                   "<query language=\"sql\"><![CDATA[SELECT n FROM t WHERE n > $P{low} AND n <> $P{low}]]></query>",
                   "query.rpt"));
    EXPECT_TRUE(report->brings_its_own_data());
    EXPECT_EQ(report->View()->page_text(0), "5");
    EXPECT_EQ(connection, "sqlite:own.db");
    EXPECT_EQ(ran.text, "SELECT n FROM t WHERE n > ? AND n <> ?");
    ASSERT_EQ(ran.parameters.size(), 2u);
    EXPECT_EQ(ran.parameters[1].value, Value(3));
}

TEST_F(ReportEngineTest, PrintsAPdfOnThePrinterThatWasChosen)
{
    const auto without = engine();
    EXPECT_THROW(without->OpenReport(definition(""))->PrintOut(), Fault);

    PrintJob printed;
    std::string bytes;
    EngineServices services;
    services.print = [&](const PrintJob& job) {
        printed = job;
        bytes = content(job.file);
    };
    const auto opened = engine(services);
    const auto report = opened->OpenReport(definition(""));
    report->SetDataSource(std::make_shared<Rows>(std::vector{1}));
    report->SelectPrinter("driver", "Office", "port");
    report->PaperOrientation(2);
    report->PrintOut();
    EXPECT_EQ(printed.device, "Office");
    EXPECT_EQ(printed.orientation, 2);
    EXPECT_TRUE(bytes.starts_with("%PDF-"));
    EXPECT_FALSE(fs::exists(printed.file)) << "the scratch file is gone";
}

TEST_F(ReportEngineTest, AWindowKeepsItsPagesWhenEverythingElseIsGone)
{
    std::shared_ptr<PageView> first, second;
    {
        const auto opened = engine();
        const auto report = opened->OpenReport(definition(""));
        report->SetDataSource(std::make_shared<Rows>(std::vector{1, 2, 3}));
        first = report->View();
        report->SetDataSource(std::make_shared<Rows>(std::vector{4}));
        second = report->View();
    }
    EXPECT_EQ(first->page_count(), 2u);
    EXPECT_EQ(first->page_text(1), "3");
    EXPECT_TRUE(first->page_png(0, 36).starts_with("\x89PNG"));
    EXPECT_EQ(second->page_text(0), "4") << "two windows of one report are independent";
}

TEST_F(ReportEngineTest, APictureOfAPageHasABoundedSize)
{
    const auto opened = engine();
    const auto report = opened->OpenReport(definition(""));
    report->SetDataSource(std::make_shared<Rows>(std::vector{1}));
    const auto pages = report->View();
    for (const double resolution : {0.0, -72.0, 1e9}) {
        EXPECT_THROW((void)pages->page_png(0, resolution), Fault) << resolution;
    }
}

TEST_F(ReportEngineTest, AReportGoesOutAsOftenAsItIsAskedTo)
{
    const auto opened = engine();
    const auto report = opened->OpenReport(definition(""));
    report->SetDataSource(std::make_shared<Rows>(std::vector{7, 8, 9}));
    std::string earlier;
    for (const char* name : {"once.pdf", "twice.pdf"}) {
        report->Export(ExportFormat::Pdf, (folder_ / name).string());
        const std::string bytes = content(folder_ / name);
        EXPECT_TRUE(earlier.empty() || bytes == earlier) << "the rows are read from the first one on";
        earlier = bytes;
        EXPECT_EQ(report->View()->page_count(), 2u);
    }
    EXPECT_TRUE(report->warnings().empty());
}

TEST_F(ReportEngineTest, AFaultWhilePrintingLeavesNoScratchFile)
{
    fs::path printed;
    EngineServices services;
    services.print = [&](const PrintJob& job) {
        printed = job.file;
        throw Fault(fault::kCannotCreate, "The printer is out of paper.", job.device);
    };
    const auto opened = engine(services);
    const auto report = opened->OpenReport(definition(""));
    report->SelectPrinter("driver", "Office", "port");
    report->SetDataSource(std::make_shared<Rows>(std::vector{1}));
    EXPECT_THROW(report->PrintOut(), Fault);
    EXPECT_FALSE(printed.empty());
    EXPECT_FALSE(fs::exists(printed));
    report->SetDataSource(std::make_shared<BrokenRows>());
    printed.clear();
    EXPECT_THROW(report->PrintOut(), Fault);
    EXPECT_TRUE(printed.empty()) << "nothing goes to the printer of a report that failed";
}

TEST(BoundQuery, ParametersBecomeMarksInTheirOrder)
{
    struct Case {
        const char *why, *statement, *text;
        std::vector<std::string> names;
    };
    for (const auto& c :
         {Case{"none", "SELECT 1", "SELECT 1", {}}, Case{"nothing", "", "", {}},
          Case{"side by side", "$P{a}$P{b}$P{a}", "???", {"a", "b", "a"}},
          Case{"a dollar alone", "SELECT '$', '$P' || $P{a}", "SELECT '$', '$P' || ?", {"a"}},
          Case{"one without an end is left to the database to refuse", "a = $P{b} or $P{c", "a = ? or $P{c", {"b"}},
          Case{"blanks belong to the name", "$P{ a }", "?", {" a "}}}) {
        const Command command = bound_query(c.statement, [](const std::string& name) { return Value(name); });
        EXPECT_EQ(command.text, c.text) << c.why;
        std::vector<std::string> names;
        for (const auto& parameter : command.parameters) {
            names.push_back(parameter.name);
            EXPECT_EQ(parameter.value, Value(parameter.name)) << c.why;
        }
        EXPECT_EQ(names, c.names) << c.why;
    }
}

}  // namespace
}  // namespace velora
