#include <sqlite3.h>

#include <nlohmann/json.hpp>

#include "program.h"
#include "values/text.h"

namespace velora::testing {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::StartsWith;

size_t files_in(const fs::path& folder)
{
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

void change(const fs::path& database, const char* sql)
{
    sqlite3* opened = nullptr;
    ASSERT_EQ(sqlite3_open(database.c_str(), &opened), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(opened, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(opened);
    sqlite3_close(opened);
}

class Delivery : public HostTest {
protected:
    [[nodiscard]] Ran quote(std::vector<std::string> arguments, const fs::path& folder) const
    {
        arguments.insert(arguments.begin(), "quote");
        return run(in_company(folder, arguments));
    }
    [[nodiscard]] Ran quote(std::vector<std::string> arguments) const { return quote(std::move(arguments), company()); }
};

TEST_F(Delivery, AQuoteGoesToTheFileThatIsNamed)
{
    const std::string file = scratch("q.pdf").string();
    const Ran ran = quote({"--number", "Q-10052", "--output", file});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ran.out, file + "\n");
    EXPECT_EQ(ran.err, "");
    EXPECT_THAT(file_text(file), StartsWith("%PDF-"));
    EXPECT_EQ(messages(), "");
}

TEST_F(Delivery, InAFolderTheFileIsCalledByNumberAndName)
{
    fs::create_directory(scratch("out"));
    EXPECT_EQ(quote({"52", "51", "--output", scratch("out").string(), "--export", "xml"}).status, 0);
    EXPECT_TRUE(fs::exists(scratch("out/Q-10052 - Les Aciéries Beauharnois inc..xml")));
    EXPECT_EQ(files_in(scratch("out")), 2U);
}

TEST_F(Delivery, WithoutAPlaceItGoesToTheExportFolder)
{
    const fs::path folder = company_copy();
    EXPECT_EQ(quote({"52", "--export", "txt"}, folder).status, 0);
    EXPECT_EQ(files_in(folder / "Export"), 1U);
}

TEST_F(Delivery, WhatCannotBeDeliveredSaysWhyAndLeavesNothing)
{
    struct Case {
        const char* why;
        std::vector<std::string> arguments;
        int status;
        const char* says;
    };
    write_text(scratch("broken.rpt"), "<jasperReport><nonsense");
    const std::string file = scratch("never.pdf").string();
    for (const Case& c : {
             Case{"unknown id", {"7777", "--output", file}, 1, "The selected Quote information could not be found."},
             Case{"unknown number", {"--number", "Q-7777", "--output", file}, 1, "Q-7777"},
             Case{"a number with quotes", {"--number", "'; DROP TABLE Quote; --", "--output", file}, 1, "DROP TABLE"},
             Case{"an id that is none", {"Q-10052", "--output", file}, 2, "--number"},
             Case{"an id too large", {"99999999999", "--output", file}, 2, "99999999999"},
             Case{"several into one file", {"51", "52", "--output", file}, 2, "Several documents"},
             Case{"no such folder", {"52", "--output", "/no/such/folder/q.pdf"}, 1, "/no/such/folder"},
             Case{"no definition", {"52", "--definition", "/no/such.rpt", "--output", file}, 1, "/no/such.rpt"},
             Case{"a broken definition",
                  {"52", "--definition", scratch("broken.rpt").string(), "--output", file},
                  1,
                  "broken.rpt"},
             Case{"no printer", {"52", "--print"}, 1, "No printer is set up"},
             Case{"a printer that is none", {"52", "--print", "Laser"}, 1, "No printer is set up"},
             Case{"no window", {"52", "--preview"}, 1, "This installation has no windows"},
             Case{"a pipe without a folder",
                  {"52", "--pipe", "/no/such/p.json", "--output", file},
                  1,
                  "/no/such/p.json"},
         }) {
        const Ran ran = quote(c.arguments);
        EXPECT_EQ(ran.status, c.status) << c.why;
        EXPECT_THAT(ran.err, HasSubstr(c.says)) << c.why;
        EXPECT_FALSE(fs::exists(file)) << c.why;
    }
    EXPECT_EQ(quote({"52", "--output", file}).status, 0) << "the database is as it was";
}

TEST_F(Delivery, ThePipeIsOneObjectForEachDocument)
{
    const fs::path pipe = scratch("pipe.json");
    fs::create_directory(scratch("out"));
    ASSERT_EQ(quote({"52", "51", "--output", scratch("out").string(), "--pipe", pipe.string()}).status, 0);
    std::istringstream lines(file_text(pipe));
    json first;
    json second;
    lines >> first >> second;
    EXPECT_EQ(first["kind"], "quote");
    ASSERT_EQ(first["fields"].size(), 157U);
    EXPECT_EQ(first["fields"][17], json::parse(R"({"name":"Quote Number","type":200,"size":30})"));
    EXPECT_EQ(first["rows"][0].size(), 157U);
    EXPECT_EQ(first["rows"][0][17], "Q-10052");
    EXPECT_EQ(first["rows"][0][22], "2026-06-08");
    EXPECT_EQ(second["rows"][0][17], "Q-10051");
    EXPECT_EQ(files_in(scratch("out")), 2U);
}

TEST_F(Delivery, ExplainListsQueriesAndFilters)
{
    const Ran ran = quote({"52", "--output", scratch("q.pdf").string(), "--explain"});
    for (const char* part :
         {"Statements that fell away", "Texts that were cut", "Queries", "View filters", "sprQuoteOneID", "IC0480"}) {
        EXPECT_THAT(ran.out, HasSubstr(part));
    }
}

TEST_F(Delivery, QuietSaysNothing)
{
    const Ran ran = quote({"52", "--output", scratch("q.pdf").string(), "--quiet"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out + ran.err, "");
}

TEST_F(Delivery, NoCustomersIsNoData)
{
    const fs::path folder = company_copy();
    change(folder / "velora.db", "UPDATE Customer SET Exported=1");
    const Ran ran = run(in_company(folder, {"customers", "--output", scratch("c.pdf").string()}));
    EXPECT_EQ(ran.status, 3) << ran.err;
    EXPECT_EQ(messages(),
              R"({"title":"No Data Found","text":"There are no Customers in the database to place on the report.",)"
              R"("icon":"information"})"
              "\n");
    EXPECT_FALSE(fs::exists(scratch("c.pdf")));
}

TEST_F(Delivery, CustomersGoOutUnderTheDateOfTheRun)
{
    fs::create_directory(scratch("out"));
    const Ran ran = run(in_company(company(), {"customers", "--output", scratch("out/").string()}));
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_TRUE(fs::exists(scratch("out/20260615 - Customer List.pdf")));
}

TEST_F(Delivery, ADefinitionThatAsksForTooMuchIsPrintedAndTold)
{
    std::string text = file_text(fs::path(VELORA_SOURCE_DIR) / "definitions" / "Quote.rpt");
    text = replaced(text, "\"Quote Number\"", "\"Quote Nummer\"");
    write_text(scratch("wrong.rpt"), replaced(text, "$F{Quote Number}", "$F{Quote Nummer}"));
    const Ran ran = quote({"52", "--definition", scratch("wrong.rpt").string(), "--output", scratch("q.pdf").string()});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.err, HasSubstr("'Quote Nummer'"));
    EXPECT_EQ(run({"fields", "quote", "--definition", scratch("wrong.rpt").string()}).out, "lacking\tQuote Nummer\n");
}

TEST_F(Delivery, AReportThatBringsItsOwnDataRunsOnTheCompany)
{
    const char* definition = R"(<jasperReport name="own" pageWidth="400" pageHeight="200" columnWidth="360"
        leftMargin="20" rightMargin="20" topMargin="20" bottomMargin="20">
        <query language="sql">SELECT CustomerNumber FROM Customer ORDER BY CustomerNumber</query>
        <field name="CustomerNumber" class="java.lang.String"/>
        <detail><band height="20"><element kind="textField" x="0" y="0" width="200" height="20">
        <expression>$F{CustomerNumber}</expression></element></band></detail></jasperReport>)";
    write_text(scratch("own.jrxml"), definition);
    const std::string file = scratch("own.txt").string();
    const Ran ran =
        run(in_company(company(), {"custom", scratch("own.jrxml").string(), "--export", "txt", "--output", file}));
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(file_text(file), HasSubstr("P-2001"));
    EXPECT_THAT(file_text(file), HasSubstr("P-2013"));
    EXPECT_EQ(run({"render", scratch("own.jrxml").string(), "--output", file}).status, 1) << "no company is open";
    EXPECT_EQ(run(in_company(company(), {"custom", "/no/such.jrxml"})).status, 1);
    EXPECT_THAT(messages(), HasSubstr("Report Not Found"));
}

TEST_F(Delivery, FieldsAreTheContractOfTheKind)
{
    const Ran ran = run(in_company(company(), {"fields", "quote"}));
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.out, HasSubstr("157\tTax Amount5\tsingle\t4\t0\n"));
    EXPECT_EQ(run({"fields", "custom"}).status, 1);
    for (const char* definition : {"Quote.rpt", "Quote, Taxes.rpt"}) {
        const auto file = (fs::path(VELORA_SOURCE_DIR) / "definitions" / definition).string();
        const Ran compared = run({"fields", "quote", "--definition", file});
        EXPECT_EQ(compared.status, 0) << definition << compared.out << compared.err;
    }
}

}  // namespace
}  // namespace velora::testing
