#include <sys/wait.h>

#include <csignal>

#include "program.h"
#include "support/small_disk.h"

namespace velora::testing {
namespace {

using test::SmallDisk;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr const char* kHostile = "a'b\"; DROP TABLE Quote; -- [x] = %s ..";

std::vector<std::string> names_in(const fs::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

class BadInput : public HostTest {
protected:
    [[nodiscard]] Ran in(const fs::path& folder, const std::vector<std::string>& command) const
    {
        return run(in_company(folder, command));
    }

    /// Runs all commands at once, each in a process of its own. Gives their exit statuses.
    [[nodiscard]] std::vector<int> run_at_once(const std::vector<std::vector<std::string>>& commands) const
    {
        std::vector<pid_t> children;
        for (const auto& command : commands) {
            const pid_t child = ::fork();
            if (child == 0) ::_exit(run(command).status);
            children.push_back(child);
        }
        std::vector<int> statuses;
        for (const pid_t child : children) {
            int status = 0;
            EXPECT_EQ(::waitpid(child, &status, 0), child);
            statuses.push_back(WIFEXITED(status) ? WEXITSTATUS(status) : -1);
        }
        return statuses;
    }

    /// A definition that prints one field of its rows.
    [[nodiscard]] std::string definition(const std::string& field) const
    {
        write_text(scratch("one.jrxml"), R"(<jasperReport name="one" pageWidth="400" pageHeight="200" columnWidth="360"
            leftMargin="20" rightMargin="20" topMargin="20" bottomMargin="20"><field name=")" +
                                             field + R"(" class="java.lang.String"/>
            <detail><band height="20"><element kind="textField" x="0" y="0" width="200" height="20">
            <expression>$F{)" + field + R"(}</expression></element></band></detail></jasperReport>)");
        return scratch("one.jrxml").string();
    }
};

TEST_F(BadInput, ADeviceInThePlaceOfAFileIsWrittenToAndStaysADevice)
{
    fs::create_symlink("/dev/full", scratch("full"));  // names of our own: nothing happens to the machine's
    fs::create_symlink("/dev/null", scratch("null"));
    const std::string file = scratch("q.pdf").string();
    for (const char* format : {"pdf", "xls", "txt"}) {
        const Ran full = in(company(), {"quote", "52", "--export", format, "--output", scratch("full").string()});
        EXPECT_EQ(full.status, 1) << format;
        EXPECT_THAT(full.err, AllOf(HasSubstr("No space left"), HasSubstr(scratch("full").string()))) << format;
        EXPECT_EQ(in(company(), {"quote", "52", "--export", format, "--output", scratch("null").string()}).status, 0);
    }
    const Ran pipe = in(company(), {"quote", "52", "--output", file, "--pipe", scratch("full").string()});
    EXPECT_EQ(pipe.status, 1);
    EXPECT_THAT(pipe.err, HasSubstr("--pipe"));
    EXPECT_EQ(in(company(), {"quote", "52", "--output", file, "--pipe", scratch("null").string()}).status, 0);
    for (const char* name : {"full", "null"}) {
        EXPECT_TRUE(fs::is_symlink(scratch(name))) << name;
        EXPECT_TRUE(fs::is_character_file(scratch(name))) << name;
    }
    EXPECT_THAT(names_in(scratch("")), Not(::testing::Contains(HasSubstr("full."))));
}

TEST_F(BadInput, AFullDiskKeepsTheEarlierFileAndLeavesNothing)
{
    fs::create_directory(scratch("out"));
    const std::string file = scratch("out/q.pdf").string();
    write_text(file, "earlier");
    ASSERT_TRUE(fs::exists(company()));  // made while there is room
    Ran ran;
    {
        const SmallDisk disk(8192);
        ran = in(company(), {"quote", "52", "--output", file});
    }
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("q.pdf"));
    EXPECT_EQ(file_text(file), "earlier");
    EXPECT_THAT(names_in(scratch("out")), ::testing::ElementsAre("q.pdf"));

    {
        const SmallDisk disk(200);
        ran = in(company(), {"quote", "52", "--export", "txt", "--output", scratch("null").string(), "--pipe",
                             scratch("out/p.json").string()});
    }
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(names_in(scratch("out")), ::testing::ElementsAre("q.pdf")) << "no half pipe";
}

TEST_F(BadInput, InitOnAFullDiskLeavesNoHalfFolder)
{
    fs::create_directory(scratch("place"));
    Ran ran;
    {
        const SmallDisk disk(100000);
        ran = run({"init", scratch("place/company").string()});
    }
    EXPECT_EQ(ran.status, 1) << ran.out;
    EXPECT_NE(ran.err, "");
    EXPECT_THAT(names_in(scratch("place")), IsEmpty());
    EXPECT_EQ(run({"init", scratch("place/company").string()}).status, 0) << "with room it goes well";
}

TEST_F(BadInput, QuotesAndSemicolonsInEveryTextAreText)
{
    const std::string name = kHostile;
    const std::string file = scratch("q.txt").string();
    const fs::path folder = company_copy();
    struct Case {
        const char* why;
        std::vector<std::string> arguments;
        int status;
    };
    write_text(scratch(name + ".rpt"), file_text(fs::path(VELORA_SOURCE_DIR) / "definitions" / "Quote.rpt"));
    for (const Case& c : {
             Case{"a number", {"quote", "--number", name, "--output", file}, 1},
             Case{"an id", {"quote", name, "--output", file}, 2},
             Case{"a file to write", {"quote", "52", "--export", "txt", "--output", scratch(name).string()}, 0},
             Case{"a file for the data",
                  {"quote", "52", "--output", file, "--pipe", scratch(name + ".json").string()},
                  0},
             Case{
                 "a definition", {"quote", "52", "--definition", scratch(name + ".rpt").string(), "--output", file}, 0},
             Case{"a definition that is not there", {"quote", "52", "--definition", name, "--output", file}, 1},
             Case{"a printer", {"quote", "52", "--print", name}, 1},
             Case{"a kind", {"lists", name}, 2},
             Case{"a report of the list", {"remove-report", "quote", name}, 1},
             Case{"a report for the list", {"add-report", "checklist", name, scratch(name + ".rpt").string()}, 0},
             Case{"a custom report", {"custom", name, "--name", name, "--output", file}, 1},
         }) {
        const Ran ran = in(folder, c.arguments);
        EXPECT_EQ(ran.status, c.status) << c.why << ": " << ran.err;
    }
    EXPECT_TRUE(fs::exists(scratch(name)));
    EXPECT_THAT(in(folder, {"lists", "checklist"}).out, HasSubstr(name + "\t" + scratch(name + ".rpt").string()));
    EXPECT_EQ(in(folder, {"remove-report", "checklist", name}).status, 0);
    EXPECT_EQ(in(folder, {"quote", "52", "--output", file}).status, 0) << "every table is still there";
}

TEST_F(BadInput, AQuoteWhoseCustomerIsCalledByItGoesOutUnderItsName)
{
    fs::create_directory(scratch("out"));
    const Ran made = in(company(), {"quote", "52", "--export", "txt", "--output", scratch("out").string() + "/"});
    ASSERT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(names_in(scratch("out")).size(), 1U);
    const fs::path moved = scratch("it's; a \"folder\"");
    fs::copy(company(), moved, fs::copy_options::recursive);
    const Ran ran = in(moved, {"quote", "52", "--export", "txt"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(names_in(moved / "Export"), names_in(scratch("out"))) << "the folder's name is a name";
}

TEST_F(BadInput, DefinitionsThatCannotBeReadAreNamed)
{
    const std::string whole = file_text(fs::path(VELORA_SOURCE_DIR) / "definitions" / "Quote.rpt");
    const std::string file = scratch("q.pdf").string();
    struct Case {
        const char* why;
        std::string text;
    };
    std::vector<Case> cases{{"nothing", ""},
                            {"a picture", std::string("\x89PNG\r\n\x1A\n\0\0", 10)},
                            {"another XML", "<html><body/></html>"},
                            {"zeros", std::string(5000, '\0')}};
    for (const size_t tenth : {1, 3, 5, 7, 9}) cases.push_back({"a part", whole.substr(0, whole.size() * tenth / 10)});
    for (const Case& c : cases) {
        write_text(scratch("bad.rpt"), c.text);
        for (const std::vector<std::string>& command :
             {std::vector<std::string>{"quote", "52", "--definition", scratch("bad.rpt").string(), "--output", file},
              std::vector<std::string>{"render", scratch("bad.rpt").string(), "--output", file},
              std::vector<std::string>{"fields", "quote", "--definition", scratch("bad.rpt").string()}}) {
            const Ran ran = in(company(), command);
            EXPECT_EQ(ran.status, 1) << c.why << ": " << command[0];
            EXPECT_THAT(ran.err, HasSubstr("bad.rpt")) << c.why << ": " << command[0];
            EXPECT_FALSE(fs::exists(file)) << c.why << ": " << command[0];
        }
    }
    for (const std::string& place : {scratch("").string(), std::string("/dev/null"), scratch("gone.rpt").string()}) {
        EXPECT_EQ(in(company(), {"render", place, "--output", file}).status, 1) << place;
        EXPECT_FALSE(fs::exists(file)) << place;
    }
}

TEST_F(BadInput, AFieldThatTheDataLackIsNamed)
{
    const std::string file = scratch("o.txt").string();
    write_text(scratch("data.json"), R"({"fields":[{"name":"A"}],"rows":[["x"],["y"]]})");
    write_text(scratch("data.csv"), "x\ny\n");
    for (const std::string data : {"json", "csv"}) {
        const Ran ran = run({"render", definition("Gone"), "--" + data, scratch("data." + data).string(), "--export",
                             "txt", "--output", file});
        EXPECT_THAT(ran.err, HasSubstr("'Gone'")) << data;
        EXPECT_EQ(ran.status, 0) << data << ": a designer sees the page all the same";
    }
    for (const char* kind : {"quote", "customers"}) {
        std::vector<std::string> command{kind};
        if (command[0] == "quote") command.emplace_back("52");
        command.insert(command.end(), {"--definition", definition("Gone"), "--output", scratch("some.pdf").string()});
        const Ran ran = in(company(), command);
        EXPECT_EQ(ran.status, 0) << kind << ": it is printed with the field empty";
        EXPECT_THAT(ran.err, HasSubstr("'Gone'")) << kind;
        EXPECT_EQ(run({"fields", kind, "--definition", definition("Gone")}).out, "lacking\tGone\n") << kind;
    }
}

TEST_F(BadInput, ALineOfNamesThatWasTakenForARowIsTold)
{
    write_text(scratch("one.jrxml"), R"(<jasperReport name="one" pageWidth="400" pageHeight="200" columnWidth="400"
        leftMargin="0" rightMargin="0" topMargin="0" bottomMargin="0"><field name="Item" class="java.lang.String"/>
        <detail><band height="20"/></detail></jasperReport>)");
    write_text(scratch("rows.csv"), "No,Item\n1,Nut\n");
    std::vector<std::string> command{"render",   scratch("one.jrxml").string(), "--csv", scratch("rows.csv").string(),
                                     "--output", scratch("o.txt").string()};
    EXPECT_THAT(run(command).err, AllOf(HasSubstr("names the field 'Item'"), HasSubstr("--csv-head")));
    command.emplace_back("--csv-head");
    EXPECT_EQ(run(command).err, "");
}

TEST_F(BadInput, DataThatAreBrokenInTheMiddleLeaveTheEarlierFile)
{
    const std::string file = scratch("o.txt").string();
    write_text(file, "earlier");
    std::string json = R"({"fields":[{"name":"A"}],"rows":[)", csv;
    for (int row = 0; row < 500; ++row) {
        json += R"(["text"],)";
        csv += "\"text\"\n";
    }
    struct Case {
        const char *why, *kind;
        std::string data;
        const char* says;
    };
    for (const Case& c : {Case{"no end", "json", json, "data.json"},
                          Case{"a row of another length", "json", json + R"(["a","b"],["c"]]})", "row 501"},
                          Case{"a bare word", "json", json + "[no]]}", "data.json"},
                          Case{"a quote that stays open", "csv", csv + "\"text\n\n", "line 501"},
                          Case{"text behind a quote", "csv", csv + "\"text\" more\n", "line 501"}}) {
        write_text(scratch(std::string("data.") + c.kind), c.data);
        const Ran ran =
            run({"render", definition(std::string_view(c.kind) == "csv" ? "COLUMN_0" : "A"), std::string("--") + c.kind,
                 scratch(std::string("data.") + c.kind).string(), "--output", file});
        EXPECT_EQ(ran.status, 1) << c.why;
        EXPECT_THAT(ran.err, HasSubstr(c.says)) << c.why;
        EXPECT_EQ(file_text(file), "earlier") << c.why;
    }
}

TEST_F(BadInput, RunsAtOnceOnOneFolderGiveWholeFiles)
{
    const fs::path folder = company_copy();
    const std::string shared = scratch("shared.txt").string();
    fs::create_directory(scratch("out"));
    ASSERT_EQ(in(folder, {"quote", "52", "--export", "txt", "--output", scratch("52.txt").string()}).status, 0);
    ASSERT_EQ(in(folder, {"quote", "51", "--export", "txt", "--output", scratch("51.txt").string()}).status, 0);
    std::vector<std::vector<std::string>> commands;
    for (int i = 0; i < 3; ++i) {
        for (const char* quote : {"51", "52"}) {
            commands.push_back(in_company(folder, {"quote", quote, "--export", "txt", "--output", shared}));
            commands.push_back(
                in_company(folder, {"quote", quote, "--export", "pdf", "--output", scratch("out").string()}));
        }
    }
    for (const int status : run_at_once(commands)) EXPECT_EQ(status, 0);
    const std::string last = file_text(shared);
    EXPECT_TRUE(last == file_text(scratch("51.txt")) || last == file_text(scratch("52.txt")))
        << "one of the documents, whole";
    EXPECT_EQ(names_in(scratch("out")).size(), 2U) << "and nothing of the making";
}

TEST_F(BadInput, OfSeveralWhoMakeOneFolderAtOnceOneDoes)
{
    fs::create_directory(scratch("place"));
    const std::vector<std::string> command{"init", "--empty", scratch("place/company").string()};
    const auto statuses = run_at_once({command, command, command, command});
    EXPECT_EQ(std::ranges::count(statuses, 0), 1);
    EXPECT_EQ(std::ranges::count(statuses, 1), 3) << "the others say that it is in use";
    EXPECT_THAT(names_in(scratch("place")), ::testing::ElementsAre("company"));
    EXPECT_TRUE(fs::exists(scratch("place/company/velora.ini")));
}

TEST_F(BadInput, ListsThatAreChangedAtOnceLoseNoEntry)
{
    const fs::path folder = company_copy();
    write_text(scratch("mine.rpt"), "<jasperReport/>");
    std::vector<std::vector<std::string>> commands;
    for (int i = 0; i < 6; ++i) {
        commands.push_back(
            in_company(folder, {"add-report", "quote", "Mine " + std::to_string(i), scratch("mine.rpt").string()}));
    }
    for (const int status : run_at_once(commands)) EXPECT_EQ(status, 0);
    const Ran listed = in(folder, {"lists", "quote"});
    EXPECT_EQ(listed.status, 0);
    EXPECT_THAT(listed.out, HasSubstr("Quote.rpt")) << "what was there stays there";
    for (int i = 0; i < 6; ++i) EXPECT_THAT(listed.out, HasSubstr("\tMine " + std::to_string(i) + "\t"));
    std::istringstream lines(listed.out);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(std::ranges::count(line, '\t'), 2) << line;
        EXPECT_FALSE(line.ends_with('\t')) << line << ": no entry is half written";
    }
}

}  // namespace
}  // namespace velora::testing
