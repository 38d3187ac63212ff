#include "program.h"

namespace velora::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

struct Case {
    const char* why;
    std::vector<std::string> arguments;
    const char* says;
};

class CommandLine : public HostTest {};

TEST_F(CommandLine, WrongUsageEndsWithTwoAndSaysWhatIsWrong)
{
    for (const Case& c : {
             Case{"no command", {}, "Usage: velora-report"},
             Case{"unknown command",
                  {"--quiet", "invoice", "1"},
                  "no command \"invoice\". The commands are: init, schema, transfer, quote,"},
             Case{"help with what is no command",
                  {"help", "invoice"},
                  "no command \"invoice\". The commands are: init,"},
             Case{"no quote", {"quote"}, "ID"},
             Case{"a date that is none", {"--today", "2026-02-30", "customers"}, "2026-02-30"},
             Case{"a date in another order", {"--today", "15/06/2026", "customers"}, "15/06/2026"},
             Case{"unknown format",
                  {"quote", "1", "--export", "odt"},
                  "\"odt\" is no format. The formats are: pdf, html,"},
             Case{"two ways of delivery", {"quote", "1", "--preview", "--print"}, "--pr"},
             Case{"preview into a file", {"quote", "1", "--preview", "--output", "x.pdf"}, "--"},
             Case{"two sources of data", {"render", "x.jrxml", "--rows", "1", "--csv", "x.csv"}, "--"},
             Case{"a row count that is none", {"render", "x.jrxml", "--rows", "-1"}, "\"-1\" is no number of rows"},
             Case{"a parameter without a value", {"render", "x.jrxml", "--parameter", "p"}, "\"p\" is no NAME=VALUE"},
             Case{"a row count beyond all", {"render", "x.jrxml", "--rows", "1000000000000"}, "no number of rows"},
             Case{"an ending that is no format",
                  {"render", "x.jrxml", "--output", "x.odt"},
                  "\".odt\", which is no format"},
             Case{"unknown kind", {"fields", "invoice"}, "There is no report kind \"invoice\""},
             Case{"a range with one end", {"overview", "--from", "2026-01-01"}, "--to"},
             Case{"a status that no list can have", {"overview", "--status", "70000"}, "--status"},
             Case{"two kinds of customer", {"win-loss", "--customer", "1", "--accounting-customer", "1200"}, "--"},
             Case{"unknown pane", {"options", "colours"}, "colours"},
         }) {
        const Ran ran = run(c.arguments);
        EXPECT_EQ(ran.status, 2) << c.why;
        EXPECT_THAT(ran.err, HasSubstr(c.says)) << c.why;
        EXPECT_EQ(ran.out, "") << c.why;
    }
}

TEST_F(CommandLine, HelpNamesEveryCommandAndTheExitStatus)
{
    const Ran ran = run({"--help"});
    EXPECT_EQ(ran.status, 0);
    for (const char* name : {"init", "quote", "confirmation", "picking-slip", "checklist", "customers", "custom",
                             "render", "fields", "lists", "add-report", "remove-report", "email", "Exit status"}) {
        EXPECT_THAT(ran.out, HasSubstr(name));
    }
    EXPECT_EQ(run({"help"}).out, ran.out);
    EXPECT_EQ(run({"help", "lists"}).out, run({"lists", "--help"}).out);
    for (const char* command : {"lists", "add-report", "remove-report", "fields"}) {
        EXPECT_THAT(run({command, "--help"}).out, HasSubstr("quote, ")) << command << " names the kinds";
    }
}

TEST_F(CommandLine, AnInstallationWithoutWindowsSaysSoAndRunsTheRest)
{
    const std::vector<std::vector<std::string>> commands{
        {"open", "quote"}, {"open"},          {"options", "export"},
        {"email"},         {"drive", "--qt"}, {"quote", "--number", "Q-10052", "--preview"}};
    for (const auto& command : commands) {
        const Ran ran = run(in_company(company(), command));
        EXPECT_EQ(ran.status, 1) << command.front();
        EXPECT_THAT(ran.err, HasSubstr("This installation has no windows")) << command.front();
    }
    EXPECT_EQ(run(in_company(company(), {"options", "nowhere"})).status, 2);
    EXPECT_EQ(run(in_company(company(), {"open", "nowhere"})).status, 2);
}

TEST_F(CommandLine, ARegionThatIsNoneIsWrongUsage)
{
    const Ran ran = run({"--region", "nowhere!", "lists"});
    EXPECT_EQ(ran.status, 2);
    EXPECT_THAT(ran.err, HasSubstr("nowhere!"));
    for (const char* region : {"de_DE", "de_DE.UTF-8@euro", "de-DE"}) {
        EXPECT_EQ(run({"--region", region, "fields", "quote"}).status, 0) << region;
    }
}

TEST_F(CommandLine, TheFolderComesFromTheOptionElseTheEnvironment)
{
    const Ran named = run({"--folder", company().string(), "lists", "quote"}, "/no/such/folder");
    EXPECT_EQ(named.status, 0) << named.err;
    const Ran set = run({"lists", "quote"}, company().string());
    EXPECT_EQ(set.status, 0) << set.err;
    EXPECT_EQ(set.out, named.out);
}

TEST_F(CommandLine, ABrokenFolderIsNamedWithTheWayToMendIt)
{
    const std::string good = file_text(company() / "velora.ini");
    struct Broken {
        const char* why;
        const char* from;
        const char* to;
        const char* says;
    };
    const fs::path folder = company_copy();
    for (const Broken& c : {
             Broken{"no company", "Company = DEMOCO\n", "", "\"Company\""},
             Broken{"company id too long", "DEMOCO", "DEMOCOMPANY1", "10 characters"},
             Broken{"another company's store", "DEMOCO", "OTHER", "\"DEMOCO\""},
             Broken{"unknown engine", "SQLServer\n", "Oracle\n", "SQLServer or Pervasive"},
             Broken{"no scheme", "sqlite:velora.db", "velora.db", "sqlite:PATH"},
             Broken{"a source that nobody knows", "sqlite:velora.db", "odbc:DSN=velora-nowhere;PWD=hidden", "PWD=***"},
             Broken{"a password that is not there", "sqlite:velora.db", "odbc:PWD=${VELORA_NO_SUCH}", "VELORA_NO_SUCH"},
             Broken{"missing database", "velora.db", "gone.db", "gone.db"},
             Broken{"missing accounting store", "accounting.db", "gone.db", "accounting store"},
             Broken{"answer that is none", "User =", "MultiCurrency = maybe\nUser =", "yes, no"},
             Broken{"no section", "[Host]", "[Guest]", "[Host]"},
         }) {
        std::string text = good;
        const auto at = text.find(c.from);
        ASSERT_NE(at, std::string::npos) << c.why;
        text.replace(at, std::string_view(c.from).size(), c.to);
        write_text(folder / "velora.ini", text);
        const Ran ran = run(in_company(folder, {"lists", "quote"}));
        EXPECT_EQ(ran.status, 1) << c.why;
        EXPECT_THAT(ran.err, HasSubstr(c.says)) << c.why;
        EXPECT_THAT(messages(), HasSubstr(R"("icon":"critical")")) << c.why;
    }
}

TEST_F(CommandLine, ABrokenDatabaseIsNamed)
{
    const fs::path folder = company_copy();
    for (const char* file : {"velora.db", "accounting.db"}) {
        const std::string whole = file_text(folder / file);
        for (const std::string& broken : {whole.substr(0, 5000), std::string("no database at all, just text")}) {
            write_text(folder / file, broken);
            const Ran ran = run(in_company(folder, {"quote", "52", "--output", scratch("q.pdf").string()}));
            EXPECT_EQ(ran.status, 1) << file;
            EXPECT_THAT(ran.err, HasSubstr(file));
            EXPECT_FALSE(fs::exists(scratch("q.pdf"))) << file;
        }
        write_text(folder / file, whole);
    }
}

TEST_F(CommandLine, NoFolderNamesTheCommandThatMakesOne)
{
    for (const auto& folder : {scratch("missing"), scratch("")}) {
        const Ran ran = run(in_company(folder, {"customers"}));
        EXPECT_EQ(ran.status, 1);
        EXPECT_THAT(ran.err, HasSubstr("velora-report init"));
        EXPECT_THAT(messages(), HasSubstr("Application Folder"));
    }
}

class InitCommand : public HostTest {};

TEST_F(InitCommand, MakesTheFolderAsDocumented)
{
    for (const char* inside :
         {"velora.ini", "velora.db", "accounting.db", "Reports", "Export", "Log File",
          "Reports/DEMOCO_QuoteReports.ini", "Reports/DEMOCO_CustomReports.ini", "Reports/DEMOCO_OrderReports.ini"}) {
        EXPECT_TRUE(fs::exists(company() / inside)) << inside;
    }
    for (const auto& definition : fs::directory_iterator(fs::path(VELORA_SOURCE_DIR) / "definitions")) {
        EXPECT_TRUE(fs::exists(company() / "Reports" / definition.path().filename())) << definition.path();
    }
}

TEST_F(InitCommand, ReportListsNameTheDefinitionsOfTheFinishedFolder)
{
    const Ran ran = run(in_company(company(), {"lists", "quote"}));
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr((company() / "Reports" / "Quote.rpt").string()));
    EXPECT_THAT(ran.out, Not(HasSubstr(".making")));
}

TEST_F(InitCommand, LeavesAFolderAloneThatIsInUse)
{
    write_text(scratch("file"), "a file");
    fs::create_directory(scratch("full"));
    write_text(scratch("full/letter.txt"), "keep me");
    for (const char* name : {"file", "full"}) {
        const Ran ran = run({"init", scratch(name).string()});
        EXPECT_EQ(ran.status, 1) << name;
        EXPECT_THAT(ran.err, HasSubstr(scratch(name).string())) << name;
    }
    EXPECT_EQ(file_text(scratch("full/letter.txt")), "keep me");
    const auto left = std::distance(fs::directory_iterator(scratch("")), fs::directory_iterator());
    EXPECT_EQ(left, 2) << "nothing half made stays";
}

TEST_F(InitCommand, TakesAnEmptyFolderAndMakesMissingParents)
{
    fs::create_directory(scratch("empty"));
    EXPECT_EQ(run({"init", scratch("empty").string()}).status, 0);
    EXPECT_EQ(run({"init", scratch("a/b/c/").string(), "--empty"}).status, 0);
    EXPECT_TRUE(fs::exists(scratch("a/b/c/velora.db")));
}

TEST_F(InitCommand, AnEmptyStoreSaysWhatItNeeds)
{
    ASSERT_EQ(run({"init", "--empty", scratch("bare").string()}).status, 0);
    const Ran ran = run(in_company(scratch("bare"), {"customers"}));
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("CompanyInfo"));
}

class ReportLists : public HostTest {};

TEST_F(ReportLists, AReportIsAddedAndRemovedByName)
{
    const fs::path folder = company_copy();
    const std::string file = scratch("mine.rpt").string();
    write_text(file, "<jasperReport/>");
    EXPECT_EQ(run(in_company(folder, {"add-report", "checklist", "Mine, short", file})).status, 0);
    EXPECT_THAT(run(in_company(folder, {"lists", "checklist"})).out, HasSubstr("checklist\tMine, short\t" + file));
    EXPECT_THAT(run(in_company(folder, {"lists", "picking-slip"})).out, Not(HasSubstr("Mine"))) << "same file";
    EXPECT_EQ(run(in_company(folder, {"add-report", "checklist", "Mine, short", file})).status, 1) << "name is taken";
    EXPECT_EQ(run(in_company(folder, {"remove-report", "checklist", "Mine, short"})).status, 0);
    EXPECT_THAT(run(in_company(folder, {"lists"})).out, Not(HasSubstr("Mine")));
    EXPECT_EQ(run(in_company(folder, {"remove-report", "checklist", "Mine, short"})).status, 1) << "gone already";
    EXPECT_EQ(run(in_company(folder, {"add-report", "quote", "None", "/no/such.rpt"})).status, 1) << "no such file";
    EXPECT_TRUE(fs::exists(file)) << "the definition itself stays";
}

/// A list as an editor, another program or an attacker left it.
TEST_F(ReportLists, AListThatIsNotUnderstoodIsNamedAndStaysAsItIs)
{
    const fs::path folder = company_copy();
    const std::string file = scratch("mine.rpt").string();
    write_text(file, "<jasperReport/>");
    const fs::path list = folder / "Reports" / "DEMOCO_QuoteReports.ini";
    ASSERT_TRUE(fs::exists(list));
    for (const std::string& text : {std::string("Number=1\nName=Quote\n"), std::string("[\0R\0]\0", 6),
                                    std::string("[Reports]\nNumber=0\nabcd\n")}) {
        write_text(list, text);
        const Ran ran = run(in_company(folder, {"add-report", "quote", "Mine", file}));
        EXPECT_EQ(ran.status, 1);
        EXPECT_THAT(ran.err, HasSubstr(list.filename().string())) << text;
        EXPECT_EQ(file_text(list), text);
    }
    write_text(list, "[Reports]\nNumber=1\n[Report #1]\nName=Endless\nLocation=/dev/zero\nType=1\n");
    const Ran ran = run(in_company(folder, {"quote", "51", "--definition", "Endless"}));
    EXPECT_NE(ran.status, 0);
    EXPECT_NE(ran.err, "");
}

}  // namespace
}  // namespace velora::testing
