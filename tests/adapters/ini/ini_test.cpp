#include <thread>

#include "adapters/ini/stores.h"
#include "adapters/scratch.h"

using namespace velora;
using test::content_of;
using test::fault_of;
using test::Scratch;

namespace {

constexpr const char* kApplication = "Morvane\\Velora";

}  // namespace

TEST(IniSettings, AnyValueComesBackAsItWasSet)
{
    const Scratch scratch;
    const auto path = scratch.path("Morvane/Velora.ini");
    const auto settings = ini_settings(path);
    for (const char* value :
         {"True", "", "0", " blanks ", "\"quoted\"", "\"", "\"\"", "a;b#c", "; no comment", "[no section]", "a=b=c",
          "C:\\Program Files\\x.rpt", "O'Brien \"x\" GmbH", "naïve €漢字", "<<<END", "\ttab"}) {
        settings->set(kApplication, "DEMOCO_Report", "Name", value);
        EXPECT_EQ(settings->get(kApplication, "DEMOCO_Report", "Name", "?"), value);
        EXPECT_EQ(ini_settings(path)->get(kApplication, "DEMOCO_Report", "Name", "?"), value);
    }
    settings->set(kApplication, "DEMOCO_Report", "Name", "two\r\nSMTP=lines");
    EXPECT_EQ(settings->get(kApplication, "DEMOCO_Report", "Name", "?"), "two  SMTP=lines");
    EXPECT_EQ(settings->get(kApplication, "DEMOCO_Report", "SMTP", "none"), "none") << "a value never makes a key";
}

TEST(IniSettings, WhatIsMissingGivesTheDefaultAndMakesNoFile)
{
    const Scratch scratch;
    const auto settings = ini_settings(scratch.path("none.ini"));
    EXPECT_EQ(settings->get(kApplication, "A_Report", "Format", "-1"), "-1");
    EXPECT_FALSE(std::filesystem::exists(scratch.path("none.ini")));
    settings->set(kApplication, "A_Report", "Format", "2");
    EXPECT_EQ(settings->get(kApplication, "B_Report", "Format", "-1"), "-1");
    EXPECT_EQ(settings->get(kApplication, "a_report", "FORMAT", "-1"), "2") << "names compare without case";
}

TEST(IniSettings, AFileWrittenByHandKeepsItsOrderAndComments)
{
    const Scratch scratch;
    const auto path = scratch.write(
        "Velora.ini",
        "\xEF\xBB\xBF; mine\n[Z_Report]\nPort = 25\n; the printer\nName = \" LP 1 \"\n\n[A_Report]\nName=x\n");
    const auto settings = ini_settings(path);
    EXPECT_EQ(settings->get(kApplication, "Z_Report", "Name", ""), " LP 1 ");
    settings->set(kApplication, "Z_Report", "Driver", "new");
    const auto text = content_of(path);
    size_t position = 0;
    for (const char* part :
         {"; mine", "[Z_Report]", "Port=25", "; the printer", "Name=", "Driver=new", "[A_Report]", "Name=x"}) {
        position = text.find(part, position);
        EXPECT_NE(position, std::string::npos) << part << " in\n" << text;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(std::filesystem::path(path).parent_path()), {}), 1)
        << "no temporary file stays";
}

TEST(IniProfiles, AReportListIsWrittenReadAndShortened)
{
    const Scratch scratch;
    const auto path = scratch.path("DEMOCO_QuoteReports.ini");
    const auto lists = ini_profiles();
    EXPECT_FALSE(lists->exists(path));
    EXPECT_EQ(lists->read(path, "Reports", "Number"), "");
    lists->delete_section(path, "Report #1");
    EXPECT_FALSE(lists->exists(path));
    lists->write(path, "Reports", "Number", "2");
    lists->write(path, "Report #1", "Name", "Quote");
    lists->write(path, "Report #2", "Name", "Taxes; each \"apart\"");
    lists->delete_section(path, "Report #1");
    EXPECT_TRUE(lists->exists(path));
    EXPECT_EQ(lists->read(path, "Report #1", "Name"), "");
    EXPECT_EQ(lists->read(path, "Report #2", "Name"), "Taxes; each \"apart\"");
    EXPECT_EQ(content_of(path).find("Report #1"), std::string::npos);
}

TEST(IniProfiles, AChangeIsMadeAsAWhole)
{
    const Scratch scratch;
    const auto path = scratch.write("list.ini", "[Reports]\nNumber=2\n[A]\nk=1\nold=1\n[B]\nk=2\n");
    const auto lists = ini_profiles();
    lists->change(path, {{"A", "B"}, {{"Reports", "Number", "1"}, {"A", "k", "3"}}});
    EXPECT_EQ(lists->read(path, "Reports", "Number"), "1");
    EXPECT_EQ(lists->read(path, "A", "k"), "3") << "what goes, goes first";
    EXPECT_EQ(lists->read(path, "A", "old"), "");
    EXPECT_EQ(lists->read(path, "B", "k"), "");
    scratch.write("list.ini", "[Reports]\nNumber=2\n?\n");
    EXPECT_EQ(fault_of([&] { lists->change(path, {{"Reports"}, {{"A", "k", "3"}}}); }).number(), fault::kPathAccess);
    EXPECT_EQ(content_of(path), "[Reports]\nNumber=2\n?\n");
    const auto settings = ini_settings(scratch.path("made/Velora.ini"));
    const std::vector<NamedText> values{{"SMTP", "mail"}, {"Format", "3"}};
    settings->set_all(kApplication, "A_Report", values);
    EXPECT_EQ(settings->get(kApplication, "A_Report", "SMTP", ""), "mail");
    EXPECT_EQ(settings->get(kApplication, "A_Report", "Format", ""), "3");
}

TEST(IniProfiles, AnotherProgramsChangeIsSeenAtOnce)
{
    const Scratch scratch;
    const auto path = scratch.path("list.ini");
    const auto reader = ini_profiles();
    for (const char* value : {"1", "2", "3"}) {
        ini_profiles()->write(path, "A", "k", value);
        EXPECT_EQ(reader->read(path, "A", "k"), value);
    }
    std::filesystem::remove(path);
    EXPECT_EQ(reader->read(path, "A", "k"), "");
}

TEST(IniProfiles, LongValuesAreCutOnAWholeCharacter)
{
    struct Case {
        const char* why;
        size_t fill;  // one-byte characters in front
        const char* tail;
        size_t length;  // in bytes
    };
    const Scratch scratch;
    const auto lists = ini_profiles();
    for (const auto& c :
         {Case{"fits", 256, "", 256}, Case{"one too many", 256, "a", 256},
          Case{"characters count, not bytes", 255, "éb", 257}, Case{"nor three of them", 254, "漢bc", 258},
          Case{"one that ends behind the cut", 256, "漢", 256}}) {
        const std::string value = std::string(c.fill, 'a') + c.tail;
        lists->write(scratch.path("l.ini"), "S", "K", value);
        EXPECT_EQ(lists->read(scratch.path("l.ini"), "S", "K"), value.substr(0, c.length)) << c.why;
    }
}

TEST(IniProfiles, FilesThatCannotBeUsedAreFaultsWithPath)
{
    const Scratch scratch;
    const auto lists = ini_profiles();
    std::filesystem::create_directory(scratch.path("folder.ini"));
    const auto missing = scratch.path("no folder/list.ini");
    const auto settings = ini_settings(scratch.write("file", "") + "/below/Velora.ini");
    for (const auto& fault : {
             fault_of([&] { (void)lists->read(scratch.path("folder.ini"), "S", "K"); }),
             fault_of([&] { lists->write(scratch.path("folder.ini"), "S", "K", "V"); }),
             fault_of([&] { lists->write(missing, "S", "K", "V"); }),
             fault_of([&] { settings->set(kApplication, "S", "K", "V"); }),
         }) {
        EXPECT_EQ(fault.number(), fault::kPathAccess);
        EXPECT_THAT(fault.description(), testing::HasSubstr(fault.where()));
    }
}

TEST(IniProfiles, WritersAtTheSameTimeLoseNothing)
{
    const Scratch scratch;
    const auto path = scratch.path("shared.ini");
    const auto writer = [&](const std::string& section) {
        for (int key = 0; key < 25; ++key) ini_profiles()->write(path, section, std::to_string(key), "v");
    };
    std::thread other(writer, "A");
    writer("B");
    other.join();
    for (int key = 0; key < 25; ++key) {
        EXPECT_EQ(ini_profiles()->read(path, "A", std::to_string(key)), "v");
        EXPECT_EQ(ini_profiles()->read(path, "B", std::to_string(key)), "v");
    }
}
