#include "session/error_messengers.h"

#include "support/test_company.h"

namespace velora {
namespace {

using test::TestCompany;

constexpr const char* kTail = "\r\n\nPlease contact Morvane if this error occurs frequently.";

TEST(ErrorMessenger, ShowsNumberTextAndProcedureAndNothingForZero)
{
    TestCompany company;
    ErrorMessenger(company.state(), 0, "nothing", "modGeneral.X");
    EXPECT_TRUE(company.boxes().empty());
    ErrorMessenger(company.state(), 13, "Type mismatch", "modGeneral.X");
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_EQ(company.boxes()[0].title, "Reporting Error");
    EXPECT_EQ(company.boxes()[0].icon, Icon::Exclamation);
    EXPECT_EQ(company.box_text(0), std::string("13: Type mismatch\r\n\nIn Procedure: VL Report.modGeneral.X.") + kTail);
}

TEST(ErrorAccpac, PassesOverTheMiddleOfALongStackAndClearsIt)
{
    struct Case {
        size_t errors;
        std::vector<size_t> shown;
    };
    for (const auto& c : {Case{6, {0, 1, 2, 4, 5}}, Case{2, {0, 1}}, Case{5, {0, 1, 2, 3, 4}}}) {
        TestCompany company;
        auto& errors = company.state().gSess->Errors();
        for (size_t at = 0; at < c.errors; ++at) errors.push_back({3, "error " + std::to_string(at)});
        ErrorACCPAC(company.state(), 13, "not shown", "modGeneral.X");
        ASSERT_EQ(company.boxes().size(), c.shown.size());
        for (size_t at = 0; at < c.shown.size(); ++at) {
            EXPECT_EQ(company.boxes()[at].title, "Sage Accpac Error");
            EXPECT_EQ(company.box_text(at), "3: error " + std::to_string(c.shown[at]) +
                                                "\r\n\nIn Procedure: VL Report.modGeneral.X." + kTail);
        }
        EXPECT_TRUE(errors.empty());
    }
}

TEST(ErrorAdo, GivesEachBracketedPrefixALineAndKeepsTheMessageRunning)
{
    TestCompany company;
    auto& errors = company.state().gConn->Errors();
    errors.push_back({"[Driver][Server]Bad thing", "Provider", "42000", 7});
    errors.push_back({"[Driver]", "Provider", "S0001", -2});
    ErrorADO(company.state(), 1, "not shown", "modGeneral.X");
    ASSERT_EQ(company.boxes().size(), 2U) << "the last box holds all errors";
    const std::string first =
        "[Driver]\r\n\t   [Server]\r\n\t   Bad thing\r\n\t   \r\n\t   (Source\t\t: Provider)\r\n\t   "
        "(SQL State\t: 42000)\r\n\t   (NativeError\t: 7)";
    const std::string second =
        "[Driver]\r\n\t   \r\n\t   \r\n\t   (Source\t\t: Provider)\r\n\t   (SQL State\t: S0001)\r\n\t   "
        "(NativeError\t: -2)";
    const std::string tail =
        "\r\n\nIn Procedure: modGeneral.X.\r\nPlease contact Morvane if this error occurs frequently.";
    EXPECT_EQ(company.boxes()[0].title, "ADO Database Error");
    EXPECT_EQ(company.box_text(0), first + tail);
    EXPECT_EQ(company.box_text(1), first + second + tail);
    EXPECT_TRUE(errors.empty());
}

TEST(ErrorMessengers, FallBackToTheFaultItselfAndReportTheirOwn)
{
    TestCompany company;
    ErrorADO(company.state(), 94, "Invalid use of Null", "modGeneral.X");
    EXPECT_EQ(company.box_text(0).substr(0, 24), "94: Invalid use of Null\r");
    company.state().gConn.reset();
    ErrorADO(company.state(), 94, "Invalid use of Null", "modGeneral.X");
    EXPECT_THAT(company.box_text(1), testing::StartsWith("91: Object variable"));
    EXPECT_THAT(company.box_text(1), testing::HasSubstr("VL Report.modGeneral.ErrorADO."));
}

TEST(ErrorAdo, GivesAnErrorWithoutADescriptionNoLineForIt)
{
    TestCompany company;
    company.state().gConn->Errors().push_back({"", "Provider", "42000", 7});
    ErrorADO(company.state(), 1, "not shown", "modGeneral.X");
    EXPECT_THAT(company.box_text(0), testing::StartsWith("\r\n\t   (Source"));
}

/// A user interface that fails once.
class FailingUser final : public UserInterface {
public:
    explicit FailingUser(test::RecordingUser& user) : user_(user) {}
    void show(const MessageBox& box) override
    {
        if (!failed_) {
            failed_ = true;
            throw Fault(75, "Path/File access error");
        }
        user_.show(box);
    }
    void show_pages(std::shared_ptr<PageView>, const std::string&) override {}

private:
    test::RecordingUser& user_;
    bool failed_ = false;
};

TEST(ErrorMessenger, ShowsItsOwnFaultUnderItsOwnName)
{
    TestCompany company;
    FailingUser failing(company.user);
    company.state().ports.user = &failing;
    ErrorMessenger(company.state(), 13, "Type mismatch", "modGeneral.X");
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_EQ(company.boxes()[0].title, "Reporting Error");
    EXPECT_EQ(company.box_text(0), std::string("75: Path/File access error\r\n\nIn Procedure: VL "
                                               "Report.modGeneral.ErrorMessenger.") +
                                       kTail);
}

TEST(FailurePath, TakesWhateverIsRaisedAndAnswersBlank)
{
    TestCompany company;
    const auto run = [&](auto work) {
        return with_failure_path(company.state(), ErrorMessenger, "modGeneral.X", work);
    };
    EXPECT_EQ(run([] { return 7; }), 7);
    EXPECT_EQ(run([]() -> int { throw fault::overflow(); }), 0);
    EXPECT_EQ(run([]() -> std::string { throw std::runtime_error("the driver's words"); }), "");
    EXPECT_FALSE(run([]() -> bool { throw std::bad_alloc(); }));
    ASSERT_EQ(company.boxes().size(), 3U);
    EXPECT_THAT(company.box_text(0), testing::StartsWith("6: Overflow\r"));
    EXPECT_THAT(company.box_text(1), testing::StartsWith("440: Automation error: the driver's words\r"));
    EXPECT_THAT(company.box_text(2), testing::StartsWith("7: Out of memory\r"));
}

}  // namespace
}  // namespace velora
