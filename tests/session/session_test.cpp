#include "session/company.h"
#include "session/lists.h"
#include "session/settings.h"
#include "session/value_helpers.h"
#include "support/test_company.h"
#include "values/text.h"

namespace velora {
namespace {

using test::TestCompany;

class InBothDialects : public testing::TestWithParam<WhichEngine> {};
INSTANTIATE_TEST_SUITE_P(Session, InBothDialects, testing::Values(eDBSQLServer, eDBPervasive));

TEST_P(InBothDialects, ListsHoldTheActiveRowsAndLiveWithoutTheConnection)
{
    TestCompany company(GetParam());
    company.product(
        "INSERT INTO QuoteStatus (QuoteStatusID, qsCode, qsName, qsActive) VALUES (2,'LOST','',1),(1,'OPEN','Open',1),"
        "(3,'OLD','Old',0);"
        "INSERT INTO Reason (ReasonID, reCode, reDescription, reActive) VALUES (1,'PRICE','Too expensive',1)");
    auto& state = company.state();
    Get_QuoteStatus(state, false);
    Get_Reasons(state, false);
    state.gConn.reset();
    EXPECT_EQ(Return_ListValue(state, state.gQuoteStatus, 1, kListStatus), "Open");
    EXPECT_EQ(Return_ListValue(state, state.gQuoteStatus, 2, kListStatus), "LOST") << "no name: the code";
    EXPECT_EQ(Return_ListValue(state, state.gQuoteStatus, 3, kListStatus), "") << "not active";
    EXPECT_EQ(Return_ListValue(state, state.gReasons, 1, kListReason), "PRICE") << "a reason shows its code";
    Return_ListValue(state, state.gQuoteStatus, 2, kListStatus);
    EXPECT_FALSE(state.gQuoteStatus->at_eof()) << "the row of the answer stays current";
    EXPECT_EQ(Return_ListValue(state, state.gQuoteStatus, 1, 4), "") << "no such kind";
    EXPECT_TRUE(state.gQuoteStatus->at_eof()) << "but its rows were walked";
    std::vector<std::string> options;
    Load_Options(state, state.gQuoteStatus, kListStatus,
                 [&](const std::string& text, int32_t key) { options.push_back(text + std::to_string(key)); });
    EXPECT_EQ(options, (std::vector<std::string>{"Open1", "LOST2"}));
    EXPECT_TRUE(company.boxes().empty());
}

TEST_P(InBothDialects, DefaultsAreThoseOfTheCompany)
{
    TestCompany company(GetParam());
    company.product("INSERT INTO Defaults (Company, DefaultID, mdDefaultPL) VALUES ('OTHER', 2, 'X')");
    Get_Defaults(company.state());
    EXPECT_EQ(to_text(company_default(company.state(), "mddefaultpl")), "STD");
}

TEST(WithoutAnEngine, NoQueryIsOpenedAndEachLoaderSaysSo)
{
    TestCompany company(eDBNone);
    Get_QuoteStatus(company.state(), false);
    Get_Defaults(company.state());
    ASSERT_EQ(company.boxes().size(), 2U);
    EXPECT_THAT(company.box_text(0), testing::StartsWith("3704: Operation is not allowed when the object is closed."));
    EXPECT_THAT(company.box_text(1), testing::HasSubstr("modGeneral.Get_Defaults"));
}

TEST(Loaders, HoldANewRecordsetThatNothingOpenedAfterALoadThatFailed)
{
    TestCompany company;
    company.product("INSERT INTO QuoteStatus (QuoteStatusID, qsName, qsActive) VALUES (1, 'Open', 1)");
    auto& state = company.state();
    struct Case {
        const char* name;
        void (*load)(SessionState&, bool);
        std::shared_ptr<Recordset> SessionState::*rows;
    };
    const std::vector<Case> cases{
        {"Get_QuoteStatus", Get_QuoteStatus, &SessionState::gQuoteStatus},
        {"Get_QuoteType", Get_QuoteType, &SessionState::gQuoteType},
        {"Get_QuoteConfid", Get_QuoteConfid, &SessionState::gQuoteConfid},
        {"Get_Reasons", Get_Reasons, &SessionState::gReasons},
        {"Get_Defaults", [](SessionState& s, bool) { Get_Defaults(s); }, &SessionState::gDefaults}};
    for (const auto& c : cases) c.load(state, false);
    ASSERT_TRUE(company.boxes().empty());
    state.gConn.reset();
    for (const auto& c : cases) {
        company.user.boxes.clear();
        c.load(state, false);
        ASSERT_EQ(company.boxes().size(), 1U) << c.name;
        EXPECT_THAT(company.box_text(0), testing::HasSubstr(std::string("VL Report.modGeneral.ErrorADO."))) << c.name;
        ASSERT_TRUE(state.*c.rows) << c.name;
        EXPECT_THROW((void)(state.*c.rows)->is_empty(), Fault) << c.name << ": the rows of before are gone";
    }
    company.user.boxes.clear();
    EXPECT_EQ(Return_ListValue(state, state.gQuoteStatus, 1, kListStatus), "");
    EXPECT_THAT(company.box_text(0), testing::StartsWith("3704: "));
    try {
        (void)company_default(state, "mdUsePLDef");
        ADD_FAILURE();
    } catch (const Fault& caught) {
        EXPECT_EQ(caught.number(), fault::kNoSuchColumn);
    }
}

TEST(ModuleVersions, StayOnceTheyAreFilled)
{
    TestCompany company;
    auto& state = company.state();
    state.gVerIC = "61A";
    Get_ModuleVersions(state);
    EXPECT_EQ(state.gVerIC, "61A");
    EXPECT_EQ(state.gVerAR, "60A");
    EXPECT_EQ(state.gVerGL, "") << "a module that is not active";
}

TEST(DisplayDate, ShowsShortDatesFrom1900On)
{
    TestCompany company;
    struct Case {
        const char* why;
        Value value;
        const char* expected;
    };
    for (auto c : {Case{"null", Value(), ""}, Case{"blank", "  ", ""}, Case{"31 December 1899", DateTime(1, 0), ""},
                   Case{"the text of a midnight", "12:00.00 AM", ""}, Case{"the first day", "1/1/1900", "1/1/1900"},
                   Case{"ISO text", "2026-03-09", "3/9/2026"}, Case{"no date", "soon", ""}}) {
        EXPECT_EQ(Display_Date(company.state(), c.value), c.expected) << c.why;
    }
    Value stored(*DateTime::from_iso("2026-03-09T10:30:00"));
    EXPECT_EQ(Display_Date(company.state(), stored), "3/9/2026");
    EXPECT_EQ(stored, Value("3/9/2026 at 10:30")) << "the plain text of the region stays behind";
    stored = " 3/9/2026 ";
    Display_Date(company.state(), stored);
    EXPECT_EQ(stored, Value("3/9/2026"));
}

TEST(ReturnTbxDate, ReadsWhatTheRegionReadsAndTakesTodayForTheRest)
{
    TestCompany company;
    for (const auto& [typed, expected] :
         {std::pair{" nonsense ", "2026-03-13"}, std::pair{"", "2026-03-13"}, std::pair{"5/6/2025 ", "2025-05-06"},
          std::pair{" 2025-05-06", "2025-05-06"}, std::pair{"5/6", "2026-05-06"}}) {
        std::string text = typed;
        EXPECT_EQ(Return_TBXDate(company.state(), text).iso(), expected) << typed;
        EXPECT_EQ(text, trimmed(typed));
    }
}

TEST(FormatPhoneFax, MasksTenDigitsAndLeavesTheRest)
{
    for (auto [given, expected] : std::vector<std::pair<std::string, std::string>>{{" 9025551234 ", "(902) 555-1234"},
                                                                                   {"0025551234", "(002) 555-1234"},
                                                                                   {"902555123499", "(902) 555-123499"},
                                                                                   {"5551234", "5551234"},
                                                                                   {"", ""},
                                                                                   {"902-555-1234", "902-555-1234"}}) {
        const std::string original = given;
        EXPECT_EQ(Format_PhoneFax(given), expected) << original;
    }
}

TEST(IsValidEmail, StopsAtTheFirstBadPiece)
{
    TestCompany company;
    auto& state = company.state();
    for (const char* good :
         {"ann.lee@example.com; bo@ex-ample.co.uk", "a1@e9.com", "x_-.9@a.b.c.de", "ann@10.c..d", "A.B@C.D.EF"}) {
        EXPECT_TRUE(IsValid_Email(state, good)) << good;
    }
    EXPECT_FALSE(IsValid_Email(state, ""));
    EXPECT_TRUE(company.boxes().empty()) << "no pieces, no box";
    for (const char* bad :
         {"a@example.com", "ann@e.com", "ann@example.c", "ann@example.com;nobody", "ann@x.com;", "1nn@example.com",
          "ann-@example.com", "an n@example.com", "änn@example.com", "ann@-xample.com", "ann@example-.com",
          "ann@exa_mple@x.com", "ann@example.9om", "ann@example.co9", "ann@example.c-m", "ann@examplecom", "ann.com",
          "@example.com", "ann@.example.com"}) {
        company.user.boxes.clear();
        EXPECT_FALSE(IsValid_Email(state, bad)) << bad;
        ASSERT_EQ(company.boxes().size(), 1U) << bad;
        EXPECT_EQ(company.box_text(0),
                  "You have entered an invalid Email address.\r\nPlease re-enter the Email address.");
    }
}

TEST(Passwords, ComeBackAsTheyWentInAndForeignTextComesBackBlank)
{
    TestCompany company;
    auto& state = company.state();
    EXPECT_EQ(Decrypt(state, Encrypt(state, "p'ä;\"x")), "p'ä;\"x");
    EXPECT_EQ(Decrypt(state, ""), "");
    EXPECT_EQ(Decrypt(state, "foreign"), "");
    EXPECT_TRUE(company.boxes().empty());
}

}  // namespace
}  // namespace velora
