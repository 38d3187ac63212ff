#include "gateway/accounting_lookups.h"
#include "gateway/database_lookups.h"
#include "platform/recordset.h"
#include "support/test_company.h"

namespace velora {
namespace {

using test::TestCompany;

class LookupsInBothDialects : public testing::TestWithParam<WhichEngine> {};
INSTANTIATE_TEST_SUITE_P(Gateway, LookupsInBothDialects, testing::Values(eDBSQLServer, eDBPervasive));

TEST(AccountingLookups, AnswerTheTrimmedFieldOfTheFirstRow)
{
    TestCompany company;
    company.accounting(
        "INSERT INTO IC0370 VALUES ('1', ' Main '); INSERT INTO IC0390 VALUES ('STD', 'Standard');"
        "INSERT INTO IC0210 VALUES ('A1', 'Pumps'); INSERT INTO TX0003 (GROUPID, DESC) VALUES ('NS', 'Nova Scotia');"
        "INSERT INTO AR0016 VALUES ('N30', 'Net 30'); INSERT INTO AR0018 VALUES ('JS', 'Jo Shaw');"
        "INSERT INTO AR0024 (IDCUST, NAMECUST, CODECURN) VALUES ('1200', 'Bay Works', 'USD');"
        "INSERT INTO IC0310 (ITEMNO, COMMODIM) VALUES ('P\"1', 'C7')");
    auto& state = company.state();
    EXPECT_EQ(Return_LocationName(state, " 1 "), "Main");
    EXPECT_EQ(Return_PriceListDesc(state, "STD"), "Standard");
    EXPECT_EQ(Return_CategoryDesc(state, "A1"), "Pumps");
    EXPECT_EQ(Return_TaxGroupDesc(state, "NS"), "Nova Scotia");
    EXPECT_EQ(Return_TermsCodeDesc(state, "N30"), "Net 30");
    EXPECT_EQ(Return_SalesPersonName(state, "JS"), "Jo Shaw");
    EXPECT_EQ(Return_AccPacName(state, "1200"), "Bay Works");
    EXPECT_EQ(Return_CustCurCode(state, "1200"), "USD");
    EXPECT_EQ(Return_ItemCommCode(state, "P\"1"), "C7") << "a key is put, not filtered";
    EXPECT_TRUE(Check_APCustNumber(state, "1200"));
    EXPECT_FALSE(Check_APCustNumber(state, "12000"));
    EXPECT_EQ(Return_LocationName(state, "9"), "");
    EXPECT_TRUE(company.boxes().empty());
}

TEST(AccountingLookups, DoNotTouchTheSessionForABlankCode)
{
    TestCompany company;
    auto& state = company.state();
    state.gSess.reset();
    EXPECT_EQ(Return_LocationName(state, "  "), "");
    EXPECT_EQ(Return_SalesPersonName(state, ""), "");
    EXPECT_EQ(Return_DefaultLocation(state, ""), "");
    EXPECT_TRUE(company.boxes().empty());
    Return_AccPacName(state, "");
    ASSERT_EQ(company.boxes().size(), 1U) << "this one asks for a blank code too";
    EXPECT_THAT(company.box_text(0), testing::StartsWith("91: "));
}

TEST(AccountingLookups, ReportASessionThatCannotAnswer)
{
    TestCompany company;
    company.accounting("DROP TABLE AR0018");
    EXPECT_EQ(Return_SalesPersonName(company.state(), "JS"), "");
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_EQ(company.boxes()[0].title, "Sage Accpac Error");
    EXPECT_THAT(company.box_text(0), testing::HasSubstr("VL Report.frmMain.Return_SalesPersonName."))
        << "the name that users know";
}

TEST(DefaultLocation, IsTheFirstWhoseCodeIsANumber)
{
    TestCompany company;
    company.accounting(
        "INSERT INTO IC0290 (ITEMNO, LOCATION) VALUES ('X', '+7'), ('X', '-5'), ('X', '.5'), ('X', '00'), ('X', '10'), "
        "('X','20'), ('Y', 'A1')");
    EXPECT_EQ(Return_DefaultLocation(company.state(), " X "), "10");
    EXPECT_EQ(Return_DefaultLocation(company.state(), "Y"), "");
}

TEST_P(LookupsInBothDialects, ReadTheProductsOwnTables)
{
    TestCompany company(GetParam());
    company
        .product(
            "INSERT INTO Customer (CustomerID, CustomerNumber, cuFullName, cuCurCode, cuAccountSet) VALUES "
            "(1, 'O''NEIL', ' O''Neil Ltd ', 'USD', 'X'), (2, 'B', 'Bee', ' ', 'TRADE');"
            "INSERT INTO DLocRange (DLRID, RType, RName) VALUES (2, 0, 'b'), (1, 0, 'a'), (3, 1, 'c');"
            "UPDATE Defaults SET Company = Company")
        .accounting("INSERT INTO AR0013 VALUES ('TRADE', 'CAD')");
    auto& state = company.state();
    EXPECT_EQ(Return_VLCustomerName(state, 1), "O'Neil Ltd");
    EXPECT_EQ(Return_VLCustomer(state, 1), "O'NEIL");
    EXPECT_EQ(Return_VLCustomer(state, 9), "");
    EXPECT_TRUE(Check_VLCustNumber(state, "O'NEIL"));
    EXPECT_FALSE(Check_VLCustNumber(state, "x' OR '1'='1"));
    EXPECT_EQ(Return_VLCustCurCode(state, 1), "USD");
    EXPECT_EQ(Return_VLCustCurCode(state, 2), "CAD") << "that of its account set";
    for (const auto& [number, uses] : {std::pair{"2", false}, {"1", true}, {"NULL", false}}) {
        company.product(std::string("UPDATE Defaults SET anUseQuoteNum = ") + number);
        EXPECT_EQ(Use_VLNumber(state), uses) << number;
    }
    std::shared_ptr<Recordset> ranges;
    Get_LocationRange(state, ranges, 0);
    ASSERT_EQ(ranges->RecordCount(), 2U);
    EXPECT_EQ(to_text(ranges->value("RName")), "a");
    EXPECT_TRUE(company.boxes().empty());
}

/// A server whose two language batches answer as told.
class LanguageServer final : public Connection {
public:
    LanguageServer(Value language, std::vector<std::vector<Value>> languages)
        : language_(std::move(language)), languages_(std::move(languages))
    {
    }
    std::unique_ptr<Recordset> Open(const Command&) override { throw fault::closed_object(); }
    std::unique_ptr<Rows> Stream(const Command&) override { throw fault::closed_object(); }
    std::unique_ptr<Rows> Execute(std::string_view text) override
    {
        if (text == "sp_helplanguage") {
            return std::make_unique<Recordset>(std::vector<std::string>{"langid", "dateformat"}, languages_);
        }
        return std::make_unique<Recordset>(std::vector<std::string>{"config_value"},
                                           std::vector<std::vector<Value>>{{language_}});
    }
    std::vector<DatabaseError>& Errors() override { return errors_; }
    std::unique_ptr<Connection> open_reader(const QueryLimits&) override { throw fault::closed_object(); }

private:
    Value language_;
    std::vector<std::vector<Value>> languages_;
    std::vector<DatabaseError> errors_;
};

TEST(DateLiterals, FollowTheServersDefaultLanguage)
{
    struct Case {
        const char* why;
        Value language;
        std::vector<std::vector<Value>> languages;
        bool end_of_day;
        const char* expected;
    };
    const std::vector<std::vector<Value>> known{{Value(), "dmy"}, {0, "mdy"}, {1, "dmy"},  {2, "ymd"},
                                                {3, "ydm"},       {4, ""},    {5, Value()}};
    for (const auto& c :
         {Case{"day first, no leading zeros", 1, known, false, "13/3/2006"},
          Case{"the end of the day", 1, known, true, "13/3/2006 23:59:59.999"},
          Case{"month first", 0, known, false, "3/13/2006"}, Case{"year first", 2, known, false, "2006/3/13"},
          Case{"another order: the date's plain text", 3, known, false, "3/13/2006"},
          Case{"a blank order is another one", 4, known, false, "3/13/2006"},
          Case{"and so is a null", 5, known, true, "3/13/2006 23:59:59.999"},
          Case{"a language that is not listed", 9, known, false, ""},
          Case{"nor is a null", Value(), known, true, " 23:59:59.999"},
          Case{"no languages at all: the date's plain text", 0, {}, false, "3/13/2006"}}) {
        TestCompany company;
        company.state().gConn = std::make_shared<LanguageServer>(c.language, c.languages);
        EXPECT_EQ(SQLServer_DateFormat(company.state(), "2006-03-13", c.end_of_day), c.expected) << c.why;
        EXPECT_EQ(SQLServer_DateFormat(company.state(), "3/13/2006", c.end_of_day), c.expected) << "the region's own";
        EXPECT_EQ(SQLServer_DateFormat(company.state(), "no date", c.end_of_day), "");
        EXPECT_TRUE(company.boxes().empty()) << company.box_text(0);
    }
}

TEST(DateLiterals, KeepTheTimeOfDayInPlainText)
{
    TestCompany company;
    company.state().gConn = std::make_shared<LanguageServer>(0, std::vector<std::vector<Value>>{});
    EXPECT_EQ(SQLServer_DateFormat(company.state(), *DateTime::from_iso("2006-03-13T10:30:00"), false),
              "3/13/2006 at 10:30");
}

}  // namespace
}  // namespace velora
