#include <cstdlib>

#include "forms_script.h"
#include "host/program.h"

namespace velora::testing {
namespace {

const fs::path kGolden = fs::path(VELORA_SOURCE_DIR) / "tests" / "golden" / "forms";

class EachScript : public HostTest, public ::testing::WithParamInterface<const char*> {};

/// VELORA_RENEW_GOLDEN=1 writes the answers anew.
TEST_P(EachScript, IsAnsweredAsWritten)
{
    const fs::path file = kGolden / (std::string(GetParam()) + ".txt");
    auto cases = read_script(file);
    const bool renew = std::getenv("VELORA_RENEW_GOLDEN") != nullptr;
    for (auto& each : cases) {
        const auto answers = play(each, company(), scratch("case"));
        for (size_t at = 0; at < each.steps.size(); ++at) {
            auto& step = each.steps[at];
            if (renew) {
                step.expected = answers[at];
            } else {
                EXPECT_EQ(answers[at], step.expected)
                    << "\"" << each.title << "\", step " << at + 1 << ": " << step.text;
            }
        }
    }
    if (renew) write_script(file, cases);
}

/// Acting on the widgets by keys and clicks tells the same.
TEST_P(EachScript, IsAnsweredAlikeByTheWindows)
{
    const fs::path windows = VELORA_WINDOWS_MODULE;
    if (windows.empty()) GTEST_SKIP() << "Qt is not here, so the windows are not built";
    for (auto& each : read_script(kGolden / (std::string(GetParam()) + ".txt"))) {
        const auto answers = play(each, company(), scratch("case"), windows);
        for (size_t at = 0; at < each.steps.size(); ++at) {
            const auto& step = each.steps[at];
            EXPECT_EQ(answers[at], step.expected) << "\"" << each.title << "\", step " << at + 1 << ": " << step.text;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Forms, EachScript,
                         ::testing::Values("driver", "selection", "quote", "criteria", "runs", "lists", "add",
                                           "options", "email", "viewer", "finders", "bad_input"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
}  // namespace velora::testing
