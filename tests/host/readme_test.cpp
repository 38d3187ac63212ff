#include <regex>

#include "program.h"

namespace velora::testing {
namespace {

/// The commands of the tour, as they stand in the README without their remarks.
std::vector<std::string> tour()
{
    std::istringstream readme(file_text(fs::path(VELORA_SOURCE_DIR) / "README.md"));
    std::vector<std::string> commands;
    bool in_tour = false;
    bool in_block = false;
    for (std::string line; std::getline(readme, line);) {
        if (line.starts_with("## ")) in_tour = line == "## A first tour";
        if (!in_tour) continue;
        if (line.starts_with("```")) {
            in_block = !in_block;
        } else if (in_block && !line.empty()) {
            commands.push_back(line.substr(0, line.find("  #")));
        }
    }
    return commands;
}

/// The words of a command; double quotes hold a word together.
std::vector<std::string> words_of(const std::string& command)
{
    std::vector<std::string> words;
    bool is_quoted = false;
    bool is_open = false;
    for (const char c : command) {
        if (c == '"') {
            is_quoted = !is_quoted;
        } else if (c == ' ' && !is_quoted) {
            is_open = false;
        } else {
            if (!is_open) words.emplace_back();
            is_open = true;
            words.back() += c;
        }
    }
    return words;
}

/// The folder that names count from, until the end of the scope.
class WorkingFolder {
public:
    explicit WorkingFolder(const fs::path& folder) { fs::current_path(folder); }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    ~WorkingFolder() { fs::current_path(before_); }

private:
    fs::path before_ = fs::current_path();
};

class Readme : public HostTest {};

TEST_F(Readme, EveryLineOfTheTourWorksAsItStands)
{
    const WorkingFolder here(scratch(""));
    const auto commands = tour();
    EXPECT_GT(commands.size(), 12U);
    size_t ran_here = 0;
    for (const std::string& command : commands) {
        if (command.starts_with("scripts/build") || command.starts_with("alias ")) continue;
        auto words = words_of(command);
        if (words.front() != "velora-report") {
            EXPECT_EQ(std::system(command.c_str()), 0) << command;
            continue;
        }
        words.front() = "2026-06-15";
        words.insert(words.begin(), "--today");
        const Ran ran = run(words);
        EXPECT_EQ(ran.status, 0) << command << '\n' << ran.err;
        ++ran_here;
    }
    EXPECT_GT(ran_here, 10U);
    for (const char* made : {"offer.xls", "offer.pdf", "devis.pdf", "values.json", "customers.pdf", "mine.pdf"}) {
        EXPECT_TRUE(fs::exists(scratch(made))) << made;
    }
}

/// Each command stands above the picture of what it prints.
TEST_F(Readme, TheGalleryShowsWhatItsCommandsPrint)
{
    const WorkingFolder here(scratch(""));
    const fs::path docs = fs::path(VELORA_SOURCE_DIR) / "docs";
    std::istringstream gallery(file_text(docs / "gallery.md"));
    const std::string company_folder = company_copy().string();
    const std::regex picture(R"(!\[[^\]]+\]\((gallery/(.+)\.png)\))");
    size_t pictures = 0;
    for (std::string line; std::getline(gallery, line);) {
        if (line.starts_with("velora-report ") && !line.starts_with("velora-report init")) {
            auto words = words_of(line);
            words.front() = "2026-06-15";
            words.insert(words.begin(), "--today");
            const Ran ran = run(words, company_folder);
            EXPECT_EQ(ran.status, 0) << line << '\n' << ran.err;
        }
        std::smatch found;
        if (!std::regex_search(line, found, picture)) continue;
        ++pictures;
        EXPECT_TRUE(fs::exists(scratch(found[2].str() + ".pdf"))) << line;
        EXPECT_GT(fs::file_size(docs / found[1].str()), 1000U) << line;
    }
    EXPECT_EQ(pictures, 12U);
}

}  // namespace
}  // namespace velora::testing
