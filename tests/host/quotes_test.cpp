#include "host/program.h"

#include <gmock/gmock.h>

using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using velora::testing::HostTest;
using velora::testing::Ran;

namespace {

std::vector<std::string> lines_of(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

}  // namespace

TEST_F(HostTest, QuotesAreListedTheNewestFirstInColumns)
{
    const Ran ran = run(in_company(company(), {"quotes"}));
    EXPECT_EQ(ran.status, 0);
    const auto lines = lines_of(ran.out);
    ASSERT_EQ(lines.size(), 60U);
    EXPECT_THAT(lines[0], StartsWith("ID  NUMBER"));
    const size_t date = lines[0].find("DATE");
    for (size_t at = 2; at < lines.size(); ++at) {
        EXPECT_LE(lines[at].substr(date, 10), lines[at - 1].substr(date, 10)) << lines[at];
    }
}

TEST_F(HostTest, QuotesAreFoundByNumberCustomerAndDescriptionAsTheyStand)
{
    for (const auto& [text, found] : {std::pair{"q-10001", "Q-10001"},
                                      {" kamloops ", "Q-10001"},
                                      {"AIR SYSTEM PARTS", "Q-10002"},
                                      {"1150", "Falls Bottling Company"}}) {
        const Ran ran = run(in_company(company(), {"quotes", text}));
        EXPECT_EQ(ran.status, 0) << text;
        EXPECT_THAT(ran.out, HasSubstr(found)) << text;
        EXPECT_LT(lines_of(ran.out).size(), 20U) << text;
    }
    for (const char* nothing : {"10001%", "Q_10001", "' OR '1' = '1", "1' --"}) {
        const Ran ran = run(in_company(company(), {"quotes", nothing}));
        EXPECT_EQ(ran.status, 3) << nothing;
        EXPECT_THAT(ran.err, HasSubstr(nothing));
    }
}
