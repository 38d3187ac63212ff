#include <sqlite3.h>

#include "program.h"

namespace velora::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

void change(const fs::path& database, const std::string& sql)
{
    sqlite3* opened = nullptr;
    ASSERT_EQ(sqlite3_open(database.c_str(), &opened), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(opened, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(opened);
    sqlite3_close(opened);
}

class RunOfSeveral : public HostTest {
protected:
    /// A company whose quote 51 is in a currency that nobody knows: its amounts are boxes, and it is delivered.
    [[nodiscard]] fs::path company_with_a_lost_currency() const
    {
        const fs::path folder = company_copy();
        change(folder / "velora.db", "UPDATE Quote SET quCurCode = 'XXQ' WHERE QuoteID = 51");
        return folder;
    }
};

TEST_F(RunOfSeveral, WhatIsDeliveredWithBoxesEndsWithFourAndTellsHowMany)
{
    const fs::path folder = company_with_a_lost_currency();
    const std::string file = scratch("q.txt").string();
    const Ran one = run(in_company(folder, {"quote", "51", "--output", file}));
    EXPECT_EQ(one.status, 4);
    EXPECT_TRUE(fs::exists(file));
    const std::string boxes = messages();
    const auto count = std::to_string(std::ranges::count(boxes, '\n'));
    EXPECT_THAT(one.err, HasSubstr("Message boxes by document: 51: " + count + "\n"));
    EXPECT_THAT(one.err, HasSubstr("Shown ")) << "the same box stands there once, with a count";
    EXPECT_LT(std::ranges::count(one.err, '\n'), std::ranges::count(boxes, '\n') * 4);
}

TEST_F(RunOfSeveral, TheWorstEndDecidesAndOneLineNamesEach)
{
    fs::create_directory(scratch("out"));
    const fs::path folder = company_with_a_lost_currency();
    const auto quotes = [&](std::vector<std::string> ids) {
        ids.insert(ids.begin(), {"quote", "--output", scratch("out/").string()});
        return run(in_company(folder, ids));
    };
    EXPECT_EQ(quotes({"52", "50"}).status, 0);
    EXPECT_EQ(quotes({"52", "51", "50"}).status, 4);
    const Ran lost = quotes({"51", "7777", "52"});
    EXPECT_EQ(lost.status, 1);
    EXPECT_THAT(lost.err, HasSubstr(", 7777: 1 (not delivered)\n"));
    EXPECT_THAT(lost.out, HasSubstr("Q-10052")) << "one that fails does not stop the next";
    const Ran none = quotes({"52", "7777x"});
    EXPECT_EQ(none.status, 2);
    EXPECT_EQ(none.out, "") << "wrong usage prints nothing";
    const Ran numbers = quotes({"--number", "Q-10052", "Q-7777", " Q-10050 "});
    EXPECT_EQ(numbers.status, 1);
    EXPECT_THAT(numbers.err, AllOf(HasSubstr("\"Q-7777\" cannot be found"), HasSubstr("Q-7777: 1 (not delivered)")));
    EXPECT_THAT(numbers.out, AllOf(HasSubstr("Q-10052"), HasSubstr("Q-10050")));
}

TEST_F(RunOfSeveral, AnInchMarkInAnItemNumberChangesNoFigure)
{
    const fs::path folder = company_copy();
    const auto pipe_of_the_quote = [&] {
        const Ran ran = run(in_company(
            folder, {"quote", "52", "--export", "txt", "--output", "/dev/null", "--pipe", scratch("pipe").string()}));
        EXPECT_EQ(ran.status, 0) << ran.err;
        return file_text(scratch("pipe"));
    };
    const std::string plain = pipe_of_the_quote();
    for (const char* table : {"IC0274", "IC0290", "IC0310", "IC0330", "IC0480", "IC0750"}) {
        change(folder / "accounting.db", "UPDATE " + std::string(table) + " SET ITEMNO = trim(ITEMNO) || '\"' " +
                                             "WHERE trim(ITEMNO) = 'MTR50HP184T'");
    }
    change(folder / "velora.db", "UPDATE Details SET APItem = 'MTR50HP184T\"' WHERE APItem = 'MTR50HP184T'");
    EXPECT_TRUE(pipe_of_the_quote() == plain);  // the number that is shown stands apart from the key
}

/// The percentages that a bar showed, in order.
std::vector<int> percents(const std::string& terminal)
{
    std::vector<int> shown;
    for (size_t at = terminal.find("] "); at != std::string::npos; at = terminal.find("] ", at + 1)) {
        shown.push_back(std::atoi(terminal.c_str() + at + 2));
    }
    return shown;
}

TEST_F(RunOfSeveral, ATerminalSeesHowFarItHasComeOverAllDocuments)
{
    fs::create_directory(scratch("out"));
    const std::vector<std::string> command{"quote", "52", "51", "50", "49", "--output", scratch("out/").string()};
    const Ran watched = run(in_company(company(), command), {}, true);
    EXPECT_EQ(watched.status, 0);
    EXPECT_THAT(percents(watched.err), ::testing::ElementsAre(0, 25, 50, 75)) << watched.err;
    EXPECT_TRUE(watched.err.ends_with("\r\x1b[K")) << "nothing of it stays";
    EXPECT_EQ(run(in_company(company(), command)).err, "");
    auto quiet = in_company(company(), command);
    quiet.insert(quiet.begin(), "--quiet");
    EXPECT_EQ(run(quiet, {}, true).err, "");
}

TEST_F(RunOfSeveral, ALargeTableShowsItsRows)
{
    std::string rows;
    for (int row = 0; row < 5000; ++row) rows += "a,b\n";
    write_text(scratch("rows.csv"), rows);
    write_text(scratch("one.jrxml"), R"(<jasperReport name="one" pageWidth="400" pageHeight="200" columnWidth="400"
        leftMargin="0" rightMargin="0" topMargin="0" bottomMargin="0"><field name="COLUMN_0" class="java.lang.String"/>
        <detail><band height="20"/></detail></jasperReport>)");
    const Ran ran = run({"render", scratch("one.jrxml").string(), "--csv", scratch("rows.csv").string(), "--output",
                         scratch("o.txt").string()},
                        {}, true);
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(percents(ran.err), ::testing::ElementsAre(20, 40, 60, 80, 100));
}

TEST_F(RunOfSeveral, TheOrderOfTheWorst)
{
    using enum ExitStatus;
    struct Case {
        ExitStatus a, b, worse;
    };
    for (const Case& c : {Case{Usage, Told, Usage}, Case{Told, DeliveredWithBoxes, Told},
                          Case{DeliveredWithBoxes, NoData, DeliveredWithBoxes}, Case{NoData, Delivered, NoData},
                          Case{Delivered, Delivered, Delivered}}) {
        EXPECT_EQ(worse_of(c.a, c.b), c.worse);
        EXPECT_EQ(worse_of(c.b, c.a), c.worse);
    }
}

}  // namespace
}  // namespace velora::testing
