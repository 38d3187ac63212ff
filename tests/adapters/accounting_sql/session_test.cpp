#include "adapters/accounting_sql/session.h"

#include <sqlite3.h>

#include "adapters/accounting_sql/schema.h"
#include "adapters/scratch.h"

using namespace velora;
using test::fault_of;
using test::Scratch;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class AccountingStore : public testing::Test {
protected:
    AccountingStore() : path_(scratch_.path("accounting.db")) { create_accounting_schema(path_); }

    /// Writes as an outside program does, without the product's collation.
    void write(const std::string& sql)
    {
        sqlite3* database = nullptr;
        sqlite3_open(path_.c_str(), &database);
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(database) << ": " << sql;
        sqlite3_close(database);
    }

    AccountingSession& session()
    {
        if (!session_) session_ = open_accounting_store(path_);
        return *session_;
    }

    std::unique_ptr<View> view(const std::string& id) { return session().OpenView(id, id.substr(0, 2)); }

    /// The field of all rows that a filter finds.
    std::vector<std::string> found(const std::string& id, const std::string& field, const std::string& filter,
                                   bool ascending = true)
    {
        std::vector<std::string> texts;
        const auto rows = view(id);
        rows->Init();
        rows->Order(0);
        rows->Browse(filter, ascending);
        while (rows->Fetch()) texts.push_back(to_text(rows->field(field)));
        return texts;
    }

    Scratch scratch_;
    std::string path_;
    std::unique_ptr<AccountingSession> session_;
};

}  // namespace

TEST_F(AccountingStore, RowsComeInKeyOrderWhateverTheOrderOfWriting)
{
    write(
        "INSERT INTO IC0750 (ITEMNO, UNIT, FACTOR) VALUES ('B', 'EA', 4), ('a', 'DOZ', 1), ('A', 'EA', 2), (' B', "
        "'BOX', 3)");
    EXPECT_THAT(found("IC0750", "FACTOR", ""), ElementsAre("1", "2", "3", "4"));
    EXPECT_THAT(found("IC0750", "FACTOR", "", false), ElementsAre("4", "3", "2", "1"));
    EXPECT_THAT(found("IC0750", "FACTOR", "ITEMNO = \"b\""), ElementsAre("3", "4"));
    EXPECT_THAT(found("IC0750", "FACTOR", "UNIT = EA"), ElementsAre("2", "4"));
}

TEST_F(AccountingStore, TextIsComparedTrimmedAndWithoutCase)
{
    struct Case {
        const char* why;
        const char* filter;
        std::vector<std::string> expected;
    };
    write(
        "INSERT INTO AR0024 (IDCUST, NAMECUST, IDGRP) VALUES ('1100', 'plain', 'G'), (' 1200 ', 'padded', NULL),"
        " ('AbC', 'mixed', ''), ('O''Brien; --', 'marks', 'G'), (NULL, 'null', 'H')");
    for (const auto& c : {
             Case{"plain", "IDCUST = 1100", {"plain"}},
             Case{"blanks around the stored value", "IDCUST = 1200", {"padded"}},
             Case{"blanks around the asked value", "IDCUST = \"  1200\"", {"padded"}},
             Case{"no case", "IDCUST = aBC", {"mixed"}},
             Case{"text of digits is no number", "IDCUST = 01100", {}},
             Case{"marks of SQL are only characters", "IDCUST = O'Brien; --", {"marks"}},
             Case{"a condition in a value finds nothing", "IDCUST = ' OR 1=1 --", {}},
             Case{"a null is the empty text", "IDCUST = ", {"null"}},
             Case{"empty text and null are one", "IDGRP = \"\"", {"padded", "mixed"}},
             Case{"not equal counts nulls", "IDGRP <> G", {"null", "padded", "mixed"}},
             Case{"greater by text", "IDCUST > 1150 AND IDCUST < b", {"padded", "mixed"}},
             Case{"field names have no case", "idcust = 1100", {"plain"}},
         }) {
        EXPECT_EQ(found("AR0024", "NAMECUST", c.filter), c.expected) << c.why;
    }
}

TEST_F(AccountingStore, NumbersAreComparedAsNumbers)
{
    struct Case {
        const char* why;
        const char* filter;
        std::vector<std::string> expected;
    };
    write(
        "INSERT INTO TX0004 (AUTHORITY, TTYPE, BUYERCLASS, ITEMRATE1) VALUES ('GST', 1, 2, 22), ('GST', 1, 10, 210),"
        " ('GST', 2, 1, 12), ('GST', '1', '1', 11), ('GST', NULL, 1, 0)");
    for (const auto& c : {
             Case{"by number, in key order", "AUTHORITY = GST AND TTYPE = 1", {"11", "22", "210"}},
             Case{"other ways to write it", "AUTHORITY = GST AND TTYPE = 1.0 AND BUYERCLASS = 010", {"210"}},
             Case{"ten is more than two", "TTYPE = 1 AND BUYERCLASS > 2", {"210"}},
             Case{"text is no number", "TTYPE = one", {}},
             Case{"a blank finds the null", "TTYPE = ", {"0"}},
             Case{"a null is not one", "TTYPE <> 1", {"0", "12"}},
         }) {
        EXPECT_EQ(found("TX0004", "ITEMRATE1", c.filter), c.expected) << c.why;
    }
}

TEST_F(AccountingStore, ASqlViewServesAsWellAndItsValuesTellTheirClass)
{
    write(
        "DROP TABLE MW0200; CREATE TABLE matrix (kind, code, cell);"
        "INSERT INTO matrix VALUES (1, ' X ', 7), ('1', 'Y', 8), (2, 'x', 9);"
        "CREATE VIEW MW0200 AS SELECT kind || '' AS CTYPE, code AS CCODE, cell + 0 AS MANF1 FROM matrix");
    EXPECT_THAT(found("MW0200", "MANF1", "CTYPE = 1"), ElementsAre("7", "8"));
    EXPECT_THAT(found("MW0200", "MANF1", "CCODE = \"X\""), ElementsAre("7", "9"));
    EXPECT_THAT(found("MW0200", "MANF1", "MANF1 >= 8.0"), ElementsAre("8", "9"));
}

TEST_F(AccountingStore, ARowIsReadByTheKeyThatWasPut)
{
    write(
        "INSERT INTO AR0023 (IDCUST, IDCUSTSHPT, NAMELOCN, TEXTSTRE1) VALUES ('1100', 'EAST', 'East side', NULL),"
        " ('1100', '', 'No code', 'x'); INSERT INTO IC0380 (WEIGHTUNIT, HYHEN) VALUES ('lbs', 1)");
    const auto places = view("AR0023");
    EXPECT_EQ(places->field("NAMELOCN"), Value("")) << "blank before the first row";
    places->PutWithoutVerification("IDCUST", "1100");
    places->PutWithoutVerification("IDCUSTSHPT", "east ");
    EXPECT_EQ(places->field("IDCUST"), Value("1100")) << "what was put can be read";
    ASSERT_TRUE(places->Read());
    EXPECT_EQ(places->field("NAMELOCN"), Value("East side"));
    EXPECT_EQ(places->field("TEXTSTRE1"), Value("")) << "a null reads as the empty text";
    places->Cancel();
    EXPECT_EQ(places->field("NAMELOCN"), Value(""));
    places->PutWithoutVerification("IDCUST", 1100);
    ASSERT_TRUE(places->Read()) << "a key that was not put is blank";
    EXPECT_EQ(places->field("NAMELOCN"), Value("No code"));
    places->PutWithoutVerification("IDCUST", "nobody");
    EXPECT_FALSE(places->Read());

    const auto options = view("IC0380");
    EXPECT_TRUE(options->Read()) << "the one row needs no key";
    options->Init();
    EXPECT_TRUE(options->Fetch()) << "nor a browse";
    EXPECT_EQ(options->field("HYHEN"), Value(1));
    EXPECT_FALSE(options->Fetch());
    EXPECT_FALSE(options->Fetch()) << "the end stays the end";
}

TEST_F(AccountingStore, OneViewServesSeveralBrowsesAndSeveralViewsOneRelation)
{
    write(
        "INSERT INTO OE0440 (CURRENCY, MISCCHARGE, DESC) VALUES ('USD', 'FRT', 'Freight'), ('USD', 'HDL', 'Handling')");
    const auto charges = view("OE0440");
    const auto details = view("OE0460");
    const std::array<View*, 1> partner{details.get()};
    charges->Compose(partner);
    const auto other = view("OE0440");
    other->Browse("CURRENCY = USD", true);
    ASSERT_TRUE(other->Fetch());
    for (const auto& [code, text] :
         {std::pair{"HDL", "Handling"}, std::pair{"FRT", "Freight"}, std::pair{"NONE", ""}}) {
        charges->Init();
        charges->Order(0);
        charges->Browse(std::string("CURRENCY = USD AND MISCCHARGE = ") + code, true);
        EXPECT_EQ(charges->Fetch(), *text != '\0');
        EXPECT_EQ(charges->field("DESC"), Value(text));
        charges->Cancel();
    }
    EXPECT_EQ(other->field("DESC"), Value("Freight"));
    EXPECT_TRUE(other->Fetch());
    EXPECT_EQ(other->field("DESC"), Value("Handling"));
}

TEST_F(AccountingStore, ABrowseHoldsTheFileOnlyWhileItsRowsAreFetched)
{
    write("INSERT INTO IC0370 (LOCATION, DESC) VALUES ('1', 'One'), ('2', 'Two')");
    const auto locations = view("IC0370");
    locations->Browse("", true);
    write("UPDATE IC0370 SET DESC = 'Before' WHERE LOCATION = '2'");
    ASSERT_TRUE(locations->Fetch());
    ASSERT_TRUE(locations->Fetch());
    EXPECT_EQ(locations->field("DESC"), Value("Before")) << "nothing is read before it is fetched";
    locations->Close();
    write("UPDATE IC0370 SET DESC = 'After'");
    EXPECT_THAT(found("IC0370", "DESC", ""), ElementsAre("After", "After"));
}

TEST_F(AccountingStore, FailuresAreFaultsWithAnEntryInTheErrors)
{
    const auto customers = view("AR0024");
    const auto closed = view("AR0024");
    closed->Close();
    struct Case {
        const char* mention;
        std::function<void()> action;
    };
    for (const auto& c : std::vector<Case>{
             {"AR9999", [&] { view("AR9999"); }},
             {"x\"; DROP", [&] { session().OpenView("x\"; DROP TABLE AR0024; --", "AR"); }},
             {"WRONG", [&] { customers->Browse("WRONG = 5", true); }},
             {"WRONG", [&] { (void)customers->field("WRONG"); }},
             {"WRONG", [&] { customers->PutWithoutVerification("WRONG", 5); }},
             {"not closed", [&] { customers->Browse("IDCUST = \"open", true); }},
             {"no key 3", [&] { customers->Order(3); }},
             {"closed", [&] { closed->Fetch(); }},
             {"no company", [&] { (void)session().Company(); }},
             {"\"XXX\"", [&] { (void)session().GetCurrency("XXX"); }},
         }) {
        session().Errors().clear();
        const auto fault = fault_of(c.action);
        EXPECT_EQ(fault.number(), fault::kAccounting) << c.mention;
        EXPECT_THAT(fault.description(), HasSubstr(c.mention));
        ASSERT_EQ(session().Errors().size(), 1u) << c.mention;
        EXPECT_EQ(session().Errors()[0].Description, fault.description());
        EXPECT_GT(session().Errors()[0].Priority, 0);
    }
    customers->Browse("IDCUST = 5", true);
    EXPECT_FALSE(customers->Fetch()) << "the view goes on after a failure";
}

TEST_F(AccountingStore, CompanyCurrenciesAndModulesAreRead)
{
    write(
        "INSERT INTO CompanyInfo (CompanyID, Name, City, HomeCurrency, Multicurrency) VALUES"
        " ('DEMOCO', 'Demo', NULL, 'CAD', 1);"
        "INSERT INTO CurrencyInfo VALUES ('CAD', '$', ',', '.', 2, 1, 3), ('JPY ', '¥', NULL, '.', 0, 2, 1),"
        " ('EUR', '€', '.', ',', NULL, NULL, NULL);"
        "INSERT INTO ActiveApplications VALUES (3, 'IC', '56A'), (1, 'AR', '54A'), (2, 'IC', '61A')");
    EXPECT_EQ(session().Company().CompanyID, "DEMOCO");
    EXPECT_EQ(session().Company().City, "");
    EXPECT_TRUE(session().Company().Multicurrency);
    EXPECT_FALSE(session().Company().PhoneFormat);
    const auto& canadian = session().GetCurrency("CAD");
    EXPECT_EQ(canadian.NegativeDisplay, 3);
    EXPECT_EQ(session().GetCurrency(" jpy").Decimals, 0);
    EXPECT_EQ(session().GetCurrency("EUR").Decimals, 2);
    EXPECT_EQ(&session().GetCurrency("CAD"), &canadian) << "read once and kept";
    std::vector<std::string> modules;
    for (const auto& module : session().ActiveApplications()) modules.push_back(module.AppID + module.AppVersion);
    EXPECT_THAT(modules, ElementsAre("AR54A", "IC61A", "IC56A"));
}

TEST_F(AccountingStore, AMissingOrBrokenStoreIsRefusedWithItsPath)
{
    for (const auto& path : {scratch_.path("missing.db"), scratch_.write("text.db", "no database at all"),
                             scratch_.write("empty.db", "")}) {
        EXPECT_THAT(fault_of([&] { open_accounting_store(path); }).description(), HasSubstr(path));
    }
}
