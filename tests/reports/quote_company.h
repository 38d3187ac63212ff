#pragma once

#include <string>
#include <vector>

#include "reports/quote_report.h"
#include "session/company.h"
#include "session/lists.h"
#include "support/test_company.h"

namespace velora::test {

/// A detail line; members that a case does not name make a plain accounting item of 10.00 each.
struct Line {
    int number = 1;
    std::string quantity = "1";
    std::string price = "10";
    std::string discount = "0";
    std::string cost = "4";
    std::string factor = "1";
    int item_kind = 30;
    int detail_kind = 20;
    std::string item = "'ITEM'";
    std::string price_list = "'STD'";
    std::string classes[2] = {"'1'", "'1'"};
    std::string included[2] = {"'0'", "'0'"};
    std::string more = "Line = Line";  ///< further assignments
};

/// A company with one price list, a tax group of two authorities at 5 and 7 percent, and quote 1.
class QuoteCompany : public TestCompany {
public:
    explicit QuoteCompany(WhichEngine engine_in_use = eDBSQLServer) : TestCompany(engine_in_use)
    {
        product(
            "INSERT INTO Quote (QuoteID, QuoteNumber, CustFrom, AccPacID, quDateEnter, quDateShip, quDateExpire, "
            "quCurCode, quTaxGroup, quPriceList, quTaxClass1, quTaxClass2) VALUES (1, ' Q/1 ', 0, '1200', "
            "'2026-03-01', '2026-03-20', '2026-04-01', 'CAD', 'TWO', 'STD', '1', '1')");
        accounting(
            "INSERT INTO TX0003 (GROUPID, AUTHORITY1, TAXABLE1, AUTHORITY2, TAXABLE2) VALUES "
            "('TWO', 'FED', 0, 'PROV', 0);"
            "INSERT INTO TX0004 (AUTHORITY, TTYPE, BUYERCLASS, ITEMRATE1, ITEMRATE2) VALUES ('FED', 1, '1', 5, 0), "
            "('PROV', 1, '1', 7, 0);"
            "INSERT INTO IC0480 (CURRENCY, ITEMNO, PRICELIST, PRICETYPE, PRICEBASE, PRICEFMT, BASEPRICE, "
            "BASEUNIT, BASECONV) VALUES ('CAD', 'ITEM', 'STD', 1, 1, 1, 11, 'EA', 1);"
            "INSERT INTO IC0310 (ITEMNO, FMTITEMNO, DEFPRICLST) VALUES ('ITEM', 'IT-EM', 'STD');"
            "INSERT INTO AR0024 (IDCUST, NAMECUST) VALUES ('1200', 'Bay Works')");
    }

    QuoteCompany& product(const std::string& sql)
    {
        TestCompany::product(sql);
        return *this;
    }

    QuoteCompany& add(const Line& line)
    {
        product(
            "INSERT INTO Details (QuoteID, Line, APItem, deIType, deDType, deQuantity, deQtyTransfer, deQuotedPrice, "
            "deDiscount, deCost, deConvFactor, dePriceList, deUofM, deWeight, deTaxClass1, deTaxClass2, deTaxIncl1, "
            "deTaxIncl2, deTaxClass3, deTaxClass4, deTaxClass5, deDesc, deComment, ItemID) VALUES (1, " +
            std::to_string(line.number) + ", " + line.item + ", " + std::to_string(line.item_kind) + ", " +
            std::to_string(line.detail_kind) + ", " + line.quantity + ", 0, " + line.price + ", " + line.discount +
            ", " + line.cost + ", " + line.factor + ", " + line.price_list + ", ' EA ', 2.5, " + line.classes[0] +
            ", " + line.classes[1] + ", " + line.included[0] + ", " + line.included[1] +
            ", '', '', '', ' A thing ', ' A remark ', 9);"
            "UPDATE Details SET " +
            line.more + " WHERE Line = " + std::to_string(line.number));
        return *this;
    }

    QuoteCompany& charge(int line, const std::string& amount, const std::string& tax_class = "1")
    {
        product("INSERT INTO DMiscCharge VALUES (" + std::to_string(line) + ", 1, " + std::to_string(line) +
                ", 'FRT', 'Freight', " + amount + ", '" + tax_class + "', '" + tax_class +
                "', '', '', '', '0', '0', '', '', '')");
        return *this;
    }

    /// Prints the quote into the fake report and answers its rows.
    const std::vector<FakeReport::Row>& print(int32_t id = 1)
    {
        load();
        settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "0");
        Print_Quote(state(), id, "quote.rpt", 0, false, true);
        return engine.report->rows;
    }

    void load()
    {
        auto& loaded = state();
        Get_QuoteStatus(loaded, false);
        Get_QuoteType(loaded, false);
        Get_QuoteConfid(loaded, false);
        Get_Defaults(loaded);
        Get_ModuleVersions(loaded);
    }
};

/// A field of a row as text; "<null>" where nothing was written.
inline std::string shown(const FakeReport::Row& row, const std::string& field)
{
    const auto found = row.find(field);
    if (found == row.end()) return "<no such field>";
    return found->second.is_null() ? "<null>" : to_text(found->second);
}

}  // namespace velora::test
