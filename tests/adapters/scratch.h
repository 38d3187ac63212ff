#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "values/fault.h"

namespace velora::test {

/// A folder of its own for one test, emptied when the test begins.
class Scratch {
public:
    Scratch()
    {
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        folder_ = std::filesystem::path(VELORA_TEST_SCRATCH) / test->test_suite_name() / test->name();
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
    }

    [[nodiscard]] std::string path(const std::string& name) const { return (folder_ / name).string(); }

    std::string write(const std::string& name, const std::string& content) const
    {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }

private:
    std::filesystem::path folder_;
};

inline std::string content_of(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// The fault that an action ends with; a test failure and fault 0 when it ends well.
template <class Action>
Fault fault_of(Action action)
{
    try {
        action();
    } catch (const Fault& fault) {
        return fault;
    }
    ADD_FAILURE() << "no fault was raised";
    return {0, ""};
}

}  // namespace velora::test
