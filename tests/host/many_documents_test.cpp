#include <sqlite3.h>

#include <map>

#include "program.h"

namespace velora::testing {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

/// A company whose files a test may change, and what its runs leave.
class ManyDocuments : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        folder_ = company_copy();
        fs::create_directory(scratch("out"));
    }

    void change(const std::string& sql) const
    {
        sqlite3* opened = nullptr;
        ASSERT_EQ(sqlite3_open((folder_ / "velora.db").c_str(), &opened), SQLITE_OK);
        sqlite3_create_collation(opened, "VLDATE", SQLITE_UTF8, nullptr,
                                 [](void*, int, const void*, int, const void*) { return 0; });
        EXPECT_EQ(sqlite3_exec(opened, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(opened);
        sqlite3_close(opened);
    }

    /// The quotes that are marked as printed.
    [[nodiscard]] std::string marked() const
    {
        std::string ids;
        sqlite3* opened = nullptr;
        EXPECT_EQ(sqlite3_open((folder_ / "velora.db").c_str(), &opened), SQLITE_OK);
        const auto add = [](void* text, int, char** values, char**) {
            *static_cast<std::string*>(text) += std::string(values[0]) + " ";
            return 0;
        };
        const char* sql = "SELECT QuoteID FROM Quote WHERE quPrPickSlip <> 0 OR quPrConfirm <> 0 ORDER BY QuoteID";
        EXPECT_EQ(sqlite3_exec(opened, sql, add, &ids, nullptr), SQLITE_OK) << sqlite3_errmsg(opened);
        sqlite3_close(opened);
        return ids;
    }

    [[nodiscard]] Ran print(std::vector<std::string> command) const
    {
        command.insert(command.end(), {"--export", "txt", "--output", scratch("out/").string()});
        return run(in_company(folder_, command));
    }

    /// Names of the files, and each with its bytes.
    [[nodiscard]] std::map<std::string, std::string> files() const
    {
        std::map<std::string, std::string> found;
        for (const auto& file : fs::directory_iterator(scratch("out"))) {
            found[file.path().filename().string()] = file_text(file.path());
        }
        return found;
    }
    [[nodiscard]] std::vector<std::string> names() const
    {
        std::vector<std::string> found;
        for (const auto& [name, text] : files()) found.push_back(name);
        return found;
    }

    fs::path folder_;
};

TEST_F(ManyDocuments, AreChosenByTheirDatesAndStatus)
{
    change(
        "DELETE FROM Quote WHERE QuoteID NOT IN (50, 51, 52); UPDATE Quote SET QuoteStatusID = 2 WHERE QuoteID <> 51;"
        "UPDATE Quote SET quDateEnter = '2026-03-04' WHERE QuoteID = 50;"
        "UPDATE Quote SET quDateEnter = '2026-03-05T10:30:00' WHERE QuoteID = 51;"
        "UPDATE Quote SET quDateEnter = '2026-03-06' WHERE QuoteID = 52");
    struct Case {
        const char* why;
        std::vector<std::string> options;
        std::vector<std::string> numbers;
        const char* dialect = "SQLServer";
    };
    for (const auto& c : std::vector<Case>{
             {"all, in the order of their ids", {"--all"}, {"Q-10050", "Q-10051", "Q-10052"}},
             {"the end of a period is a whole day", {"--from", "2026-03-05", "--to", "2026-03-05"}, {"Q-10051"}},
             {"but not for the plain dialect",
              {"--from", "2026-03-04", "--to", "2026-03-05"},
              {"Q-10050"},
              "Pervasive"},
             {"both ends count", {"--from", "2026-03-04", "--to", "2026-03-06"}, {"Q-10050", "Q-10051", "Q-10052"}},
             {"a status", {"--status", "2"}, {"Q-10050", "Q-10052"}},
             {"a status in a period", {"--from", "2026-03-05", "--to", "2026-03-06", "--status", "2"}, {"Q-10052"}},
         }) {
        std::string config = file_text(folder_ / "velora.ini");
        const size_t at = config.find("Engine");
        write_text(folder_ / "velora.ini",
                   config.replace(at, config.find('\n', at) - at, std::string("Engine = ") + c.dialect));
        auto command = c.options;
        command.insert(command.begin(), "checklist");
        const Ran ran = print(command);
        EXPECT_EQ(ran.status, 0) << c.why << ran.err;
        std::vector<std::string> printed;
        std::istringstream lines(ran.out);
        for (std::string line; std::getline(lines, line);)
            printed.push_back(fs::path(line).filename().string().substr(0, 7));
        EXPECT_EQ(printed, c.numbers) << c.why;
    }
    const Ran none = print({"quote", "--from", "2030-01-01", "--to", "2030-01-02"});
    EXPECT_EQ(none.status, 3);
    EXPECT_EQ(none.err, "No quote fits.\n");
    for (const auto& wrong : std::vector<std::vector<std::string>>{{"quote"},
                                                                   {"quote", "50", "--all"},
                                                                   {"quote", "--all", "--jobs", "0"},
                                                                   {"quote", "--from", "2026-01-01"}}) {
        EXPECT_EQ(print(wrong).status, 2) << wrong.back();
    }
}

TEST_F(ManyDocuments, OnSeveralProcessesAreTheSameAsOnOne)
{
    change(
        "UPDATE QuoteStatus SET qsName = NULL WHERE QuoteStatusID = 4;"
        "UPDATE Quote SET QuoteStatusID = 4 WHERE QuoteID = 51");
    const std::vector<std::vector<std::string>> commands{
        {"quote", "52", "7777", "50", "51", "49", "52", "--explain"},
        {"picking-slip", "--number", "Q-10052", "Q-10050", "Q-10052", "none", "Q-10049"},
        {"confirmation", "52", "50", "50", "48", "--no-mark"},
        {"checklist", "--all"},
        {"picking-slip", "--all"},  // more than the processes' pipes hold, and each document marks
    };
    for (auto command : commands) {
        const std::string before = file_text(folder_ / "velora.db");
        struct Left {
            Ran ran;
            std::string boxes, pipe, marked;
            std::map<std::string, std::string> files;
        };
        std::vector<Left> left;
        const std::string pipe = scratch("pipe.json").string();
        command.insert(command.end(), {"--pipe", pipe, "--jobs", "1"});
        for (const char* jobs : {"1", "3"}) {
            command.back() = jobs;
            write_text(folder_ / "velora.db", before);
            fs::remove_all(scratch("out"));
            fs::create_directory(scratch("out"));
            const Ran ran = print(command);
            left.push_back({ran, messages(), file_text(pipe), marked(), files()});
        }
        EXPECT_EQ(left[1].ran.status, left[0].ran.status) << command[0];
        EXPECT_EQ(left[1].ran.out, left[0].ran.out) << command[0];
        EXPECT_EQ(left[1].ran.err, left[0].ran.err) << command[0];
        EXPECT_EQ(left[1].boxes, left[0].boxes) << command[0];
        EXPECT_EQ(left[1].pipe, left[0].pipe) << command[0];
        EXPECT_EQ(left[1].files, left[0].files) << command[0];
        EXPECT_EQ(left[1].marked, left[0].marked) << command[0];
        EXPECT_FALSE(left[0].files.empty()) << command[0];
        EXPECT_FALSE(left[0].pipe.empty()) << command[0];
    }
}

TEST_F(ManyDocuments, SlipsOfOneOrderGetAFileEachWhereThatIsAskedFor)
{
    EXPECT_EQ(print({"picking-slip", "52"}).status, 0);
    EXPECT_THAT(names(), ElementsAre("Q-10052 - Picking Slip.txt")) << "the last slip stays";
    const std::string last = files().begin()->second;
    const Ran each = print({"picking-slip", "52", "--each"});
    EXPECT_EQ(each.status, 0);
    EXPECT_THAT(names(), ElementsAre("Q-10052 - Picking Slip 1.txt", "Q-10052 - Picking Slip 2.txt",
                                     "Q-10052 - Picking Slip.txt"));
    EXPECT_THAT(each.out, AllOf(HasSubstr("Slip 1.txt\n"), HasSubstr("Slip 2.txt\n")));
    EXPECT_NE(files().at("Q-10052 - Picking Slip 1.txt"), files().at("Q-10052 - Picking Slip 2.txt"));

    fs::remove_all(scratch("out"));
    fs::create_directory(scratch("out"));
    change("UPDATE Details SET APItem = 'ZDEL1111' WHERE QuoteID = 52 AND deLocation = '20'");
    const Ran empty = print({"picking-slip", "52", "--each"});
    EXPECT_EQ(empty.status, 0) << empty.err;
    EXPECT_EQ(empty.err, "Slip 1 of 2 of quote Q-10052 has no lines and no file.\n");
    EXPECT_THAT(names(), ElementsAre("Q-10052 - Picking Slip 1.txt"));
    const Ran one_file = run(in_company(folder_, {"picking-slip", "52", "--each", "--output", "slip.pdf"}));
    EXPECT_EQ(one_file.status, 2);
    EXPECT_THAT(one_file.err, HasSubstr("slip.pdf"));
}

TEST_F(ManyDocuments, AreMarkedUnlessTheRunIsForALook)
{
    const auto shows_copy = [&] {
        EXPECT_EQ(print({"confirmation", "52", "--no-mark"}).status, 0);
        return files().at("Q-10052 - Order Confirmation.txt").find("COPY") != std::string::npos;
    };
    EXPECT_FALSE(shows_copy());
    EXPECT_FALSE(shows_copy());
    EXPECT_EQ(print({"confirmation", "52", "--definition", "nowhere.rpt"}).status, 1);
    EXPECT_FALSE(shows_copy()) << "nothing went out";
    EXPECT_EQ(print({"confirmation", "52"}).status, 0);
    EXPECT_TRUE(shows_copy());
}

}  // namespace
}  // namespace velora::testing
