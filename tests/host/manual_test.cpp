#include "host/manual.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/tool_run.h"

namespace velora {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

/// A program with what is hard to write down in a manual page or for a shell.
class ManualTest : public ::testing::Test {
protected:
    ManualTest()
    {
        program_.footer("Exit status: 0 done.\n.x is no request\n");
        program_.add_option("--folder", text_, "The folder (it's here)")->type_name("DIR");
        auto* quote = program_.add_subcommand("quote", "A quote: print [it]");
        quote->add_option("ID", ids_, "Quote ids");
        quote->add_option("--export", text_, "Format, a \\ in it")->type_name("FORMAT");
        program_.add_subcommand("customers", "The customers")->add_option("--output", text_, "File")->type_name("FILE");
        program_.add_subcommand("secret", "Not for people")->group("");
    }

    CLI::App program_{"Documents of a company."};
    std::string text_;
    std::vector<std::string> ids_;
};

TEST_F(ManualTest, EveryFormNamesCommandsAndOptionsAndNothingThatIsHidden)
{
    const Manual manual(program_);
    EXPECT_THAT(manual.man_page(), AllOf(HasSubstr(".SS quote\nA quote: print [it]\n"), HasSubstr("\\fIID\\fR\nQuote"),
                                         HasSubstr("\\fB\\-\\-export\\fR \\fIFORMAT\\fR\nFormat, a \\e in it\n")));
    EXPECT_THAT(manual.zsh(), AllOf(HasSubstr("'quote:A quote: print [it]'"),
                                    HasSubstr("'--folder[The folder (it'\\''s here)]:DIR:_files'")));
    EXPECT_THAT(manual.fish(), AllOf(HasSubstr("-l folder -r -F -d 'The folder (it\\'s here)'"),
                                     HasSubstr("-n '__fish_seen_subcommand_from quote' -l export -r -d")));
    for (const std::string& form : {manual.man_page(), manual.bash(), manual.zsh(), manual.fish()}) {
        EXPECT_THAT(form, AllOf(HasSubstr("customers"), Not(HasSubstr("secret"))));
    }
}

TEST_F(ManualTest, NoTextOfTheManualPageIsTakenForARequest)
{
    std::istringstream page(Manual(program_).man_page());
    for (std::string line; std::getline(page, line);) {
        if (!line.starts_with('.') && !line.starts_with('\'')) continue;
        const std::string request = line.substr(0, line.find(' '));
        EXPECT_THAT((std::vector<std::string>{".TH", ".SH", ".SS", ".TP", ".B"}), ::testing::Contains(request)) << line;
    }
}

TEST_F(ManualTest, BashCompletesCommandsAndTheirOptions)
{
    const auto file = std::filesystem::temp_directory_path() / ("velora-completion-" + std::to_string(::getpid()));
    std::ofstream(file) << Manual(program_).bash();
    const auto completed = [&](const std::string& words) {
        const std::string script = "source " + file.string() + "; COMP_WORDS=(velora-report " + words +
                                   "); COMP_CWORD=$((${#COMP_WORDS[@]}-1)); _velora_report; echo \"${COMPREPLY[*]}\"";
        return engine::run_tool("bash -c " + engine::word(script)).output;
    };
    EXPECT_EQ(completed("cus"), "customers\n");
    EXPECT_EQ(completed("quote --ex"), "--export\n");
    EXPECT_EQ(completed("customers --ex"), "\n") << "an option of another command";
    EXPECT_EQ(completed("--folder x quote --fo"), "--folder\n") << "options of the program go everywhere";
    std::filesystem::remove(file);
}

}  // namespace
}  // namespace velora
