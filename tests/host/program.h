#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "host/command_line.h"

namespace velora::testing {

namespace fs = std::filesystem;

struct Ran {
    int status = 0;
    std::string out;
    std::string err;
};

inline std::string file_text(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void write_text(const fs::path& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

/// Gone when the test program ends.
struct FolderOfTheProcess {
    fs::path path = fs::path(VELORA_TEST_SCRATCH) / ("company-" + std::to_string(::getpid()));
    FolderOfTheProcess() = default;
    FolderOfTheProcess(const FolderOfTheProcess&) = delete;
    FolderOfTheProcess& operator=(const FolderOfTheProcess&) = delete;
    ~FolderOfTheProcess() { fs::remove_all(path); }
};

/// A folder of the test's own, and the program run in it with the checkout's definitions and fonts.
class HostTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        scratch_ = fs::path(VELORA_TEST_SCRATCH) / (std::string(test->test_suite_name()) + "." + test->name());
        fs::remove_all(scratch_);
        fs::create_directories(scratch_);
    }
    void TearDown() override { fs::remove_all(scratch_); }

    [[nodiscard]] fs::path scratch(const std::string& name) const { return scratch_ / name; }

    /// @param watched  as on a terminal
    [[nodiscard]] Ran run(std::vector<std::string> arguments, const std::string& folder_variable = {},
                          bool watched = false) const
    {
        std::ostringstream out;
        std::ostringstream err;
        const Surroundings around{out, err,
                                  [&](const char* name) {
                                      const std::string_view asked = name;
                                      if (asked == "VELORA_FOLDER") return folder_variable;
                                      return asked == "XDG_CONFIG_HOME" ? (scratch_ / "config").string() : "";
                                  },
                                  fs::path(VELORA_SOURCE_DIR) / "velora-report", watched};
        const auto status = run_command_line(arguments, around);
        return {static_cast<int>(status), out.str(), err.str()};
    }

    /// The sample company, made once for all tests that only read it.
    [[nodiscard]] fs::path company() const
    {
        static const FolderOfTheProcess folder;
        if (!fs::exists(folder.path)) {
            const Ran made = run({"init", folder.path.string()});
            EXPECT_EQ(made.status, 0) << made.err;
        }
        return folder.path;
    }

    /// A copy of the sample company that a test may break.
    [[nodiscard]] fs::path company_copy() const
    {
        fs::copy(company(), scratch("copy"), fs::copy_options::recursive);
        return scratch("copy");
    }

    /// Options that make a run repeatable, before the command.
    [[nodiscard]] std::vector<std::string> in_company(const fs::path& folder, std::vector<std::string> command) const
    {
        std::vector<std::string> all{
            "--folder", folder.string(), "--settings", scratch("settings.ini").string(), "--today", "2026-06-15",
            "--region", "en-US",         "--messages", scratch("messages").string()};
        all.insert(all.end(), command.begin(), command.end());
        return all;
    }

    [[nodiscard]] std::string messages() const { return file_text(scratch("messages")); }

private:
    fs::path scratch_;
};

}  // namespace velora::testing
