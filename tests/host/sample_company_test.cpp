#include <sqlite3.h>

#include <memory>

#include "adapters/sqlite/schema.h"
#include "adapters/store_schema/tables.h"
#include "host/sample_company.h"
#include "program.h"
#include "values/date_time.h"

namespace velora::testing {
namespace {

/// Asks a database for one number.
class Counter {
public:
    explicit Counter(const fs::path& file)
    {
        sqlite3* opened = nullptr;
        EXPECT_EQ(sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
        database_.reset(opened);
        sqlite3_create_collation(opened, "VLDATE", SQLITE_UTF8, nullptr,
                                 [](void*, int left_size, const void* left, int right_size, const void* right) {
                                     return std::string_view(static_cast<const char*>(left), left_size)
                                         .compare({static_cast<const char*>(right), size_t(right_size)});
                                 });
    }

    int operator()(const std::string& sql) const
    {
        int answer = -1;
        char* error = nullptr;
        sqlite3_exec(
            database_.get(), sql.c_str(),
            [](void* into, int, char** cells, char**) {
                *static_cast<int*>(into) = std::atoi(cells[0]);
                return 0;
            },
            &answer, &error);
        EXPECT_EQ(error, nullptr) << sql << ": " << (error != nullptr ? error : "");
        return answer;
    }

private:
    struct Close {
        void operator()(sqlite3* database) const { sqlite3_close(database); }
    };
    std::unique_ptr<sqlite3, Close> database_;
};

struct Fact {
    const char* what;
    const char* sql;
    int at_least;
};

class SampleCompany : public HostTest {};

TEST_F(SampleCompany, OffersWhatTheReportsNeed)
{
    const Counter product(company() / "velora.db");
    for (const Fact& fact : {
             Fact{"quotes and orders", "SELECT count(*) FROM Quote", 40},
             Fact{"months with quotes", "SELECT count(DISTINCT substr(quDateEnter,1,7)) FROM Quote", 12},
             Fact{"customers of its own", "SELECT count(*) FROM Customer", 12},
             Fact{"of them not yet exported", "SELECT count(*) FROM Customer WHERE Exported=0", 8},
             Fact{"items of its own", "SELECT count(*) FROM Items", 20},
             Fact{"quotes of its own customers", "SELECT count(*) FROM Quote WHERE CustFrom<>0 AND CustomerID>0", 5},
             Fact{"quotes in dollars", "SELECT count(*) FROM Quote WHERE quCurCode='USD'", 3},
             Fact{"lost quotes with a reason",
                  "SELECT count(*) FROM Quote q JOIN LostDetail USING (QuoteID) JOIN Reason USING (ReasonID) "
                  "WHERE QuoteStatusID=(SELECT qdStatusLost FROM Defaults)",
                  10},
             Fact{"reasons of the lost quotes", "SELECT count(DISTINCT ReasonID) FROM LostDetail", 6},
             Fact{"months with a loss", "SELECT count(DISTINCT substr(ldDateLost,1,7)) FROM LostDetail", 8},
             Fact{"a lost status under its fixed number",
                  "SELECT count(*) FROM QuoteStatus WHERE QuoteStatusID=3 AND qsName='Lost'", 1},
             Fact{"lost quotes that the reasons can list",
                  "SELECT sum(CustFrom=0)=count(*) FROM Quote WHERE QuoteStatusID=(SELECT qdStatusLost FROM Defaults)",
                  1},
             Fact{"orders with a confirmation in print",
                  "SELECT count(*) FROM Quote WHERE QuoteStatusID=4 AND quPrConfirm=1", 3},
             Fact{"locations of one order",
                  "SELECT max(n) FROM (SELECT count(DISTINCT deLocation) n FROM Quote JOIN Details USING (QuoteID) "
                  "WHERE QuoteStatusID=4 AND deLocation>'' GROUP BY QuoteID)",
                  4},
             Fact{"customers with a back order",
                  "SELECT count(DISTINCT CustName) FROM Quote JOIN Details USING (QuoteID) WHERE quComplete=0 AND "
                  "deDType=20 AND quDateTransfer IS NOT NULL AND deQuantity>deQtyTransfer",
                  8},
             Fact{"lines on back order",
                  "SELECT count(*) FROM Quote JOIN Details USING (QuoteID) WHERE quComplete=0 AND deDType=20 AND "
                  "quDateTransfer IS NOT NULL AND deQuantity>deQtyTransfer",
                  10},
             Fact{"a quote for a back order",
                  "SELECT count(*) FROM Quote b JOIN Quote o ON b.quBOfor=o.QuoteID AND o.quComplete=0", 1},
             Fact{"open quotes that expire within a week",
                  "SELECT count(*) FROM Quote WHERE QuoteStatusID=1 AND quDateExpire BETWEEN '2026-06-15' AND "
                  "'2026-06-22'",
                  3},
             Fact{"days of the week on which one expires",
                  "SELECT sum(quDateExpire='2026-06-15')>0 AND sum(quDateExpire='2026-06-16')>0 FROM Quote WHERE "
                  "QuoteStatusID=1",
                  1},
             Fact{"open quotes that have expired",
                  "SELECT count(*) FROM Quote WHERE QuoteStatusID=1 AND quDateExpire<'2026-06-15'", 3},
             Fact{"comment lines", "SELECT count(*) FROM Details WHERE deDType<>20", 10},
             Fact{"lines with a comment and an instruction",
                  "SELECT count(*) FROM (SELECT 1 FROM CommIns GROUP BY QuoteID,Line HAVING count(*)=2)", 1},
             Fact{"charges without a text of their own", "SELECT count(*) FROM DMiscCharge WHERE ChDesc=''", 5},
             Fact{"lines with an included tax", "SELECT count(*) FROM Details WHERE deTaxIncl1='1'", 5},
             Fact{"saved addresses", "SELECT min((SELECT count(*) FROM BillTo),(SELECT count(*) FROM ShipTo))", 3},
             Fact{"lines of the longest quote", "SELECT max(n) FROM (SELECT count(*) n FROM Details GROUP BY QuoteID)",
                  60},
             Fact{"ranges of both kinds", "SELECT min(n) FROM (SELECT count(*) n FROM DLocRange GROUP BY RType)", 3},
             Fact{"statuses shown by their code", "SELECT count(*) FROM QuoteStatus WHERE qsName='' AND qsActive=1", 1},
         }) {
        EXPECT_GE(product(fact.sql), fact.at_least) << fact.what;
    }
    EXPECT_EQ(product("SELECT min(n) FROM (SELECT count(*) n FROM Details GROUP BY QuoteID)"), 1) << "shortest quote";
}

TEST_F(SampleCompany, HasAnAccountingSideOfEveryKind)
{
    const Counter accounting(company() / "accounting.db");
    for (const Fact& fact : {
             Fact{"customers", "SELECT count(*) FROM AR0024", 25},
             Fact{"items", "SELECT count(*) FROM IC0310", 120},
             Fact{"items with a description", "SELECT count(*) FROM IC0310 WHERE length(\"DESC\")>10", 120},
             Fact{"kinds of price rows",
                  "SELECT count(*) FROM (SELECT DISTINCT PRICETYPE,PRICEBASE,PRICEFMT FROM IC0480)", 8},
             Fact{"items that fall back on the standard list",
                  "SELECT count(*) FROM IC0310 WHERE ITEMNO NOT IN (SELECT ITEMNO FROM IC0480 WHERE PRICELIST='OEM')",
                  5},
             Fact{"price lists", "SELECT count(*) FROM IC0390", 2},
             Fact{"currencies", "SELECT count(*) FROM CurrencyInfo", 2},
             Fact{"price types of contracts", "SELECT count(DISTINCT PRICETYPE) FROM IC0274", 6},
             Fact{"cost methods of contracts", "SELECT count(DISTINCT COSTMETHOD) FROM IC0274 WHERE PRICETYPE IN (4,5)",
                  7},
             Fact{"a sale that runs",
                  "SELECT count(*) FROM IC0480 WHERE DSALESTART<='2026-06-15' AND DSALEEND>='2026-06-15' AND "
                  "DSALEPRICE<DBASEPRICE",
                  5},
             Fact{"a sale that is over", "SELECT count(*) FROM IC0480 WHERE DSALEEND>'' AND DSALEEND<'2026-06-15'", 5},
             Fact{"tax groups of one authority", "SELECT count(*) FROM TX0003 WHERE AUTHORITY2='' AND AUTHORITY3=''",
                  2},
             Fact{"tax groups of two", "SELECT count(*) FROM TX0003 WHERE AUTHORITY2>''", 2},
             Fact{"tax groups with a gap", "SELECT count(*) FROM TX0003 WHERE AUTHORITY2='' AND AUTHORITY3>''", 1},
             Fact{"units with a factor", "SELECT count(*) FROM IC0750 WHERE FACTOR>1", 30},
             Fact{"locations without a number", "SELECT count(*) FROM IC0290 WHERE LOCATION='SERV'", 1},
         }) {
        EXPECT_GE(accounting(fact.sql), fact.at_least) << fact.what;
    }
    EXPECT_EQ(accounting("SELECT count(*) FROM IC0480 WHERE BASEPRICE<=0 OR DBASEPRICE<=0 OR MARKUPCOST<=0"), 0);
}

TEST_F(SampleCompany, EveryKeyThatAQuoteNamesIsThere)
{
    const Counter product(company() / "velora.db");
    for (const char* dangling :
         {"SELECT count(*) FROM Quote WHERE BillToID<>0 AND BillToID NOT IN (SELECT BillToID FROM BillTo)",
          "SELECT count(*) FROM Quote WHERE ShipToID<>0 AND ShipToID NOT IN (SELECT ShipToID FROM ShipTo)",
          "SELECT count(*) FROM Quote WHERE CustFrom<>0 AND CustomerID NOT IN (SELECT CustomerID FROM Customer)",
          "SELECT count(*) FROM Quote WHERE QuoteStatusID NOT IN (SELECT QuoteStatusID FROM QuoteStatus)",
          "SELECT count(*) FROM Quote WHERE quLines<>(SELECT count(*) FROM Details d WHERE d.QuoteID=Quote.QuoteID)",
          "SELECT count(*) FROM Details WHERE deHasItemCom<>EXISTS (SELECT 1 FROM CommIns c WHERE "
          "c.QuoteID=Details.QuoteID AND c.Line=Details.Line)",
          "SELECT count(*) FROM Details WHERE ItemID<>0 AND ItemID NOT IN (SELECT ItemID FROM Items)"}) {
        EXPECT_EQ(product(dangling), 0) << dangling;
    }
}

TEST_F(SampleCompany, IsTheSameBytesEachTime)
{
    ASSERT_EQ(run({"init", scratch("again").string()}).status, 0);
    for (const char* file : {"velora.db", "accounting.db", "velora.ini"}) {
        EXPECT_EQ(file_text(company() / file), file_text(scratch("again") / file)) << file;
    }
}

TEST_F(SampleCompany, CellsGoInAsTheirColumnsHoldThem)
{
    create_product_schema(scratch("v.db").string());
    fs::create_directory(scratch("rows"));
    write_text(scratch("rows/Details.csv"),
               "\xEF\xBB\xBFQuoteID,deQuantity,deDesc,deCost,deShipDate,deComment\r\n"
               "7,2.5,\"1/2\"\" bolt, long\",0.1,2026-06-15,NULL\r\n"
               "8,,,,,\r\n");
    write_text(scratch("rows/notes.txt"), "not of the company");
    fill_from_csv(scratch("v.db"), stores::product_tables(), scratch("rows"));
    const Counter product(scratch("v.db"));
    for (const char* holds : {
             "QuoteID=7 AND deQuantity=2.5 AND deDesc='1/2\" bolt, long' AND deCost=0.1 AND typeof(deCost)='real'",
             "QuoteID=7 AND deShipDate='2026-06-15' AND deComment IS NULL AND deWeight IS NULL",
             "QuoteID=8 AND deQuantity IS NULL AND deDesc='' AND deCost IS NULL AND deShipDate IS NULL AND "
             "deComment=''",
         }) {
        EXPECT_EQ(product(std::string("SELECT count(*) FROM Details WHERE ") + holds), 1) << holds;
    }
}

TEST_F(SampleCompany, WhatIsNoRowOfTheTableIsNamedWithItsLine)
{
    struct Case {
        const char *why, *file, *text, *says;
    };
    for (const Case& c : {
             Case{"no head", "Reason.csv", "", "line 1: the first line has to name the columns"},
             Case{"a column that is none", "Reason.csv", "ReasonID,reColour\n", "no column \"reColour\""},
             Case{"a row too short", "Reason.csv", "ReasonID,reCode\n1,A\n2\n", "line 3: there are 1 values for 2"},
             Case{"a number that is none", "Reason.csv", "ReasonID,reCode\n\"1\n\",A\n", "is no number"},
             Case{"half a number", "Details.csv", "deQuantity\n1.5x\n", "line 2: \"1.5x\" is no number"},
             Case{"a fraction as a key", "Reason.csv", "ReasonID\n1.5\n",
                  "\"1.5\" is no number for the column ReasonID"},
             Case{"a quote that stays open", "Reason.csv", "ReasonID,reCode\n1,\"A\n", "line 2"},
             Case{"a table that is none", "Reasons.csv", "ReasonID\n1\n", "is of no table"},
         }) {
        fs::remove_all(scratch("rows"));
        fs::remove(scratch("v.db"));
        create_product_schema(scratch("v.db").string());
        fs::create_directory(scratch("rows"));
        write_text(scratch("rows/Defaults.csv"), "Company\nDEMOCO\n");
        write_text(scratch("rows") / c.file, c.text);
        try {
            fill_from_csv(scratch("v.db"), stores::product_tables(), scratch("rows"));
            ADD_FAILURE() << c.why;
        } catch (const HostError& error) {
            EXPECT_THAT(error.what(), ::testing::AllOf(::testing::HasSubstr(c.file), ::testing::HasSubstr(c.says)));
        }
        EXPECT_EQ(Counter(scratch("v.db"))("SELECT count(*) FROM Defaults"), 0) << c.why << ": all rows or none";
    }
}

}  // namespace
}  // namespace velora::testing
