#include <nlohmann/json.hpp>

#include "program.h"

namespace velora::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class Targets : public HostTest {
protected:
    [[nodiscard]] Ran in(const fs::path& folder, const std::vector<std::string>& command) const
    {
        return run(in_company(folder, command));
    }
};

TEST_F(Targets, AFileThatTheRunReadsIsNotWrittenOver)
{
    const fs::path folder = company_copy();
    fs::copy_file(folder / "Reports/Quote.rpt", scratch("own.rpt"));
    fs::create_hard_link(folder / "velora.db", scratch("second name"));
    fs::create_symlink(folder / "accounting.db", scratch("link.pdf"));
    write_text(scratch("settings.ini"), "[DEMOCO_Report]\nName =\n");
    write_text(scratch("rows.csv"), "a,b\n");
    const std::string out = scratch("out.pdf").string();
    struct Case {
        const char* why;
        std::vector<std::string> command;
        fs::path file;
    };
    const std::string own = scratch("own.rpt").string();
    for (const Case& c : {
             Case{"the database",
                  {"quote", "52", "--export", "pdf", "--output", (folder / "velora.db").string()},
                  folder / "velora.db"},
             Case{"by another name",
                  {"quote", "52", "--export", "pdf", "--output", scratch("second name").string()},
                  folder / "velora.db"},
             Case{
                 "through a link", {"quote", "52", "--output", scratch("link.pdf").string()}, folder / "accounting.db"},
             Case{"the configuration",
                  {"quote", "52", "--output", out, "--pipe", (folder / "velora.ini").string()},
                  folder / "velora.ini"},
             Case{"the settings",
                  {"customers", "--output", out, "--pipe", scratch("settings.ini").string()},
                  scratch("settings.ini")},
             Case{"the definition", {"quote", "52", "--definition", own, "--output", out, "--pipe", own}, own},
             Case{"a definition of its own", {"custom", own, "--export", "pdf", "--output", own}, own},
             Case{"what is rendered", {"render", own, "--export", "pdf", "--output", own}, own},
             Case{"the rows",
                  {"render", own, "--csv", scratch("rows.csv").string(), "--export", "txt", "--output",
                   scratch("rows.csv").string()},
                  scratch("rows.csv")},
             Case{"two outputs", {"quote", "52", "--output", out, "--pipe", scratch("./out.pdf").string()}, own},
             Case{"standard output twice", {"quote", "52", "--output", "-", "--pipe", "-"}, own},
         }) {
        const std::string before = file_text(c.file);
        const Ran ran = in(folder, c.command);
        EXPECT_EQ(ran.status, 2) << c.why << ran.err;
        EXPECT_THAT(ran.err, HasSubstr("Name another file.")) << c.why;
        EXPECT_EQ(file_text(c.file), before) << c.why;
        EXPECT_FALSE(fs::exists(out)) << c.why;
    }
    const Ran device = in(folder, {"quote", "52", "--export", "txt", "--output", "/dev/null", "--pipe", "/dev/null"});
    EXPECT_EQ(device.status, 0) << device.err;
}

TEST_F(Targets, MessagesGoOverNothingButMessages)
{
    const fs::path folder = company_copy();
    for (const char* name : {"velora.db", "velora.ini", "Reports/Quote.rpt", "Reports/DEMOCO_QuoteReports.ini"}) {
        const std::string before = file_text(folder / name);
        const Ran ran = run({"--folder", folder.string(), "--messages", (folder / name).string(), "lists"});
        EXPECT_EQ(ran.status, 2) << name;
        EXPECT_THAT(ran.err, HasSubstr("something other than messages")) << name;
        EXPECT_EQ(file_text(folder / name), before) << name;
    }
    const std::string log = scratch("log").string();
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(run({"--folder", folder.string(), "--messages", log, "quote", "7777"}).status, 1);
        const std::string written = file_text(log);
        EXPECT_EQ(std::ranges::count(written, '\n'), 1) << "it begins anew each time";
    }
    const Ran same =
        run({"--folder", folder.string(), "--messages", log, "quote", "52", "--export", "txt", "--output", log});
    EXPECT_EQ(same.status, 2);
}

TEST_F(Targets, TheFormatIsThatOfTheOptionElseOfTheEndingElseOfTheSettings)
{
    struct Case {
        const char* why;
        const char* settings;  // the key Format
        std::vector<std::string> options;
        const char* file;
        const char* opening;
    };
    fs::create_directory(scratch("out"));
    for (const Case& c : {
             Case{"the ending", "", {"--output", "out/a.xls"}, "out/a.xls", "\xD0\xCF\x11\xE0"},
             Case{"in capitals", "", {"--output", "out/a.RTF"}, "out/a.RTF", "{\\rtf"},
             Case{"htm", "", {"--output", "out/a.htm"}, "out/a.htm", "<!DOCTYPE html"},
             Case{"html", "", {"--output", "out/a.html"}, "out/a.html", "<!DOCTYPE html"},
             Case{"the option wins", "", {"--export", "xml", "--output", "out/a.txt"}, "out/a.txt", "<?xml"},
             Case{"a name without an ending", "", {"--output", "out/a"}, "out/a", "%PDF-"},
             Case{"the settings", "6", {"--output", "out/a"}, "out/a", "<?xml"},
             Case{"the ending before the settings", "6", {"--output", "out/a.pdf"}, "out/a.pdf", "%PDF-"},
             Case{"settings that are none", "12", {"--output", "out/a"}, "out/a", "%PDF-"},
             Case{"in a folder, by the settings",
                  "1",
                  {"--output", "out"},
                  "out/Q-10052 - Les Aciéries Beauharnois inc..htm",
                  "<!DOCTYPE html"},
         }) {
        write_text(scratch("settings.ini"), std::string("[DEMOCO_Report]\nFormat = ") + c.settings + "\n");
        std::vector<std::string> command{"quote", "52"};
        for (const std::string& option : c.options) {
            command.push_back(option.starts_with("out") ? scratch(option).string() : option);
        }
        const Ran ran = in(company(), command);
        EXPECT_EQ(ran.status, 0) << c.why << ran.err;
        EXPECT_THAT(file_text(scratch(c.file)), StartsWith(c.opening)) << c.why;
        fs::remove(scratch(c.file));
    }
    const Ran unknown = in(company(), {"quote", "52", "--output", scratch("out/a.odt").string()});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_THAT(unknown.err, HasSubstr("\".odt\", which is no format"));
}

TEST_F(Targets, ADefinitionIsNamedByItsFileOrItsNameInTheList)
{
    const std::string file = scratch("a.txt").string();
    const auto titled = [&](const std::string& name) {
        const Ran ran = in(company(), {"quote", "52", "--definition", name, "--output", file});
        EXPECT_EQ(ran.status, 0) << ran.err;
        return file_text(file);
    };
    const std::string plain = titled("Quote");
    const std::string taxes = titled("quote, taxes");
    EXPECT_NE(plain, taxes);
    EXPECT_EQ(titled((company() / "Reports/Quote, Taxes.rpt").string()), taxes);
    const Ran none = in(company(), {"quote", "52", "--definition", "Customer List", "--output", file});
    EXPECT_EQ(none.status, 1) << "a name of another kind's list";
}

TEST_F(Targets, ACopyOfAFolderPrintsWithItsOwnDefinitions)
{
    const fs::path folder = company_copy();
    const fs::path quote = folder / "Reports" / "Quote.rpt";
    write_text(quote, R"(<jasperReport name="t" pageWidth="200" pageHeight="100" columnWidth="200" leftMargin="0"
        rightMargin="0" topMargin="0" bottomMargin="0"><title><band height="20"><element kind="staticText" x="0" y="0"
        width="100" height="20"><text>Tender</text></element></band></title></jasperReport>)");
    const std::string list = (folder / "Reports/DEMOCO_QuoteReports.ini").string();
    const std::string full = (company() / "Reports" / "Quote.rpt").string();
    const std::string copied = file_text(list);
    ASSERT_THAT(copied, HasSubstr("Location=" + full));
    const std::string relative = std::string(copied).replace(copied.find(full), full.size(), "Quote.rpt");
    for (const auto& list_text : {copied, relative}) {
        write_text(list, list_text);
        const std::string file = scratch("a.txt").string();
        ASSERT_EQ(in(folder, {"quote", "52", "--output", file}).status, 0);
        EXPECT_THAT(file_text(file), HasSubstr("Tender"));
    }
    EXPECT_THAT(in(folder, {"lists", "quote"}).out, HasSubstr(quote.string()));
}

}  // namespace
}  // namespace velora::testing
