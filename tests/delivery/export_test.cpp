#include "delivery/export.h"

#include "support/test_company.h"

namespace velora {
namespace {

using test::TestCompany;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ExportReport : public testing::Test {
protected:
    ExportReport()
    {
        company.state().gCrReport = company.engine.report;
        set("Export", "/out");
        set("Format", "0");
    }

    void set(std::string_view key, std::string_view value)
    {
        company.settings.set("Morvane\\Velora", "TESTCO_Report", key, value);
    }
    std::vector<std::string>& calls() { return company.engine.report->calls; }

    TestCompany company;
    SessionState& state = company.state();
};

TEST_F(ExportReport, TheSettingNamesTheFormatByItsPlaceInTheList)
{
    struct Case {
        const char* number;
        const char* list_text;
        ExportFormat format;
        const char* path;
    };
    // The list texts and the numbers are what the settings of installed companies hold.
    for (const auto& c :
         {Case{"0", "Acrobat Format (PDF)", ExportFormat::Pdf, "/out/Q-1.pdf"},
          Case{"1", "HTML 4.0", ExportFormat::Html, "/out/Q-1.htm"},
          Case{"2", "MS Excel 97-2000", ExportFormat::Xls, "/out/Q-1.xls"},
          Case{"3", "MS Word", ExportFormat::Doc, "/out/Q-1.doc"},
          Case{"4", "Rich Text Format", ExportFormat::Rtf, "/out/Q-1.rtf"},
          Case{"5", "Text", ExportFormat::Txt, "/out/Q-1.txt"}, Case{"6", "XML", ExportFormat::Xml, "/out/Q-1.xml"}}) {
        set("Format", c.number);
        calls().clear();
        Export_Report(state, "Q-1");
        EXPECT_THAT(calls(), ElementsAre("export " + std::to_string(static_cast<int>(c.format)) + " " + c.path));
        EXPECT_TRUE(state.gExportOK) << c.list_text;
        EXPECT_EQ(state.gExportFile, c.path);
        EXPECT_EQ(kExportFormats.at(static_cast<size_t>(c.number[0] - '0')).list_text, c.list_text);
    }
    EXPECT_THAT(company.boxes(), IsEmpty());
}

TEST_F(ExportReport, ANumberThatIsNoneWritesNothingAndSaysNothing)
{
    for (const char* number : {"", "-1", "7", "00", " 1", "1 ", "+1", "pdf", "0x0", "1.0"}) {
        set("Format", number);
        state.gExportOK = true;
        state.gExportFile = "/out/earlier.pdf";
        Export_Report(state, "Q-1");
        EXPECT_FALSE(state.gExportOK) << "\"" << number << "\"";
        EXPECT_EQ(state.gExportFile, "/out/earlier.pdf") << "\"" << number << "\"";
    }
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(company.boxes(), IsEmpty());
}

TEST_F(ExportReport, WithoutSettingsTheFolderIsTheApplicationsAndThereIsNoFormat)
{
    state.gReportSection = "FRESH_Report";
    Export_Report(state, "Q-1");
    EXPECT_THAT(calls(), IsEmpty());
    company.settings.set("Morvane\\Velora", "FRESH_Report", "Format", "0");
    Export_Report(state, "Q-1");
    EXPECT_EQ(state.gExportFile, state.ports.application_folder + "/Q-1.pdf");
}

TEST_F(ExportReport, FolderAndNameAreJoinedAsTheyStand)
{
    struct Case {
        const char *why, *folder, *name, *path;
    };
    for (const auto& c :
         {Case{"a separator at the end is doubled", "/out/", "Q-1", "/out//Q-1.pdf"},
          Case{"an empty folder is taken as it stands", "", "Q-1", "/Q-1.pdf"},
          Case{"slashes of both kinds", "/out", "Q/20\\11", "/out/Q_20_11.pdf"},
          Case{"slashes alone", "/out", "//", "/out/__.pdf"}, Case{"blanks around it", "/out", " Q-1 ", "/out/Q-1.pdf"},
          Case{"blanks only", "/out", "   ", "/out/.pdf"},
          Case{"nothing else is cleaned", "/out", "a:b?*\"<>|", "/out/a:b?*\"<>|.pdf"},
          Case{"no way out of the folder", "/out", "../../etc/x", "/out/.._.._etc_x.pdf"},
          Case{"letters of several bytes", "/out", "Łódź/中", "/out/Łódź_中.pdf"}}) {
        set("Export", c.folder);
        Export_Report(state, c.name);
        EXPECT_EQ(state.gExportFile, c.path) << c.why;
    }
}

TEST_F(ExportReport, AFailureKeepsTheFileOfTheExportBefore)
{
    Export_Report(state, "first");
    company.engine.report->refuses = Fault(fault::kPathAccess, "The file cannot be written: /out/second.pdf");
    Export_Report(state, "second");
    EXPECT_FALSE(state.gExportOK);
    EXPECT_EQ(state.gExportFile, "/out/first.pdf");
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_THAT(company.box_text(0), HasSubstr("75: The file cannot be written: /out/second.pdf"));
    EXPECT_THAT(company.box_text(0), HasSubstr("modPrint.Export_Report"));

    company.engine.report->refuses.reset();
    Export_Report(state, "third");
    EXPECT_TRUE(state.gExportOK) << "the next one is not held up";
    EXPECT_EQ(state.gExportFile, "/out/third.pdf");
}

TEST_F(ExportReport, WhatIsMissingIsToldUnderTheProceduresName)
{
    state.gCrReport = nullptr;
    set("Format", "none");
    Export_Report(state, "Q-1");
    state.ports.settings = nullptr;
    Export_Report(state, "Q-1");
    ASSERT_EQ(company.boxes().size(), 2U);
    for (const auto& box : company.boxes()) {
        EXPECT_THAT(box.text, HasSubstr("91: "));
        EXPECT_THAT(box.text, HasSubstr("modPrint.Export_Report"));
    }
    EXPECT_FALSE(state.gExportOK);
}

TEST_F(ExportReport, AHostThatNamesTheFileGetsExactlyThat)
{
    state.ports.export_file = "/elsewhere/of my own.out";
    set("Format", "2");
    Export_Report(state, "Q/1");
    EXPECT_THAT(calls(), ElementsAre("export 2 /elsewhere/of my own.out"));
    EXPECT_EQ(state.gExportFile, "/elsewhere/of my own.out");
}

TEST_F(ExportReport, ReplacingSlashesNeedsNothingOfTheCompany)
{
    SessionState bare;
    EXPECT_EQ(Replace_Slashes(bare, ""), "");
    EXPECT_EQ(Replace_Slashes(bare, " \\a/ "), "_a_");
    EXPECT_EQ(Replace_Slashes(bare, std::string(5000, '/')), std::string(5000, '_'));
}

}  // namespace
}  // namespace velora
