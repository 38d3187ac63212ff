#pragma once

#include <string>

#include "reports/quote_company.h"

namespace velora::test {

/// Where a quote's addresses come from.
enum class AddressSource : uint8_t { Saved, AccountingCustomer, AccountingLocation, OwnCustomer };

/// Quote 1 with one line, where every column of header, lists, customers and addresses holds a value of its own.
class MarkedQuote : public TestCompany {
public:
    MarkedQuote(WhichEngine engine_in_use, AddressSource source) : TestCompany(engine_in_use)
    {
        const bool own = source == AddressSource::OwnCustomer;
        const bool saved = source == AddressSource::Saved;
        product(
            "INSERT INTO Quote (QuoteID, CustFrom, CustomerID, BillToID, ShipToID, QuoteStatusID, QuoteTypeID, "
            "QuoteConfidID, quCurCode, quCustomerType, quShipToLoc) VALUES (1, " +
            std::string(own ? "7" : "0") + ", 5, " + (saved ? "3, 4" : "0, 0") + ", 2, 3, 4, 'CAD', 3, " +
            (source == AddressSource::AccountingLocation ? "' WH '" : "' '") + ")");
        mark("Quote", {"QuoteID", "CustFrom", "CustomerID", "BillToID", "ShipToID", "QuoteStatusID", "QuoteTypeID",
                       "QuoteConfidID", "quCurCode", "quCustomerType", "quShipToLoc"});
        add_lists();
        add_addresses();
        add_codes();
        mark("CompanyInfo", {"CompanyID", "HomeCurrency", "Multicurrency", "PhoneFormat"});
        product(
            "INSERT INTO Details (QuoteID, Line, APItem, deIType, deDType, deQuantity, deQtyTransfer, deQuotedPrice, "
            "deDiscount, deCost, deConvFactor, dePriceList, deWeight) VALUES (1, 1, 'X', 10, 20, 1, 0, 9, 0, 4, 1, "
            "'STD', 1)");
    }

    const FakeReport::Row& print()
    {
        Get_QuoteStatus(state(), false);
        Get_QuoteType(state(), false);
        Get_QuoteConfid(state(), false);
        Get_Defaults(state());
        settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "0");
        Print_Quote(state(), 1, "quote.rpt", 0, false, true);
        return engine.report->rows.at(0);
    }

private:
    void add_lists()
    {
        product("INSERT INTO QuoteStatus (QuoteStatusID, qsActive) VALUES (2, 1)")
            .mark("QuoteStatus", {"QuoteStatusID", "qsActive"});
        product("INSERT INTO QuoteType (QuoteTypeID, qtActive) VALUES (3, 1)")
            .mark("QuoteType", {"QuoteTypeID", "qtActive"});
        product("INSERT INTO QuoteConfidence (QuoteConfidID, qcActive) VALUES (4, 1)")
            .mark("QuoteConfidence", {"QuoteConfidID", "qcActive"});
    }
    void add_addresses()
    {
        product("INSERT INTO BillTo (BillToID) VALUES (3)").mark("BillTo", {"BillToID"});
        product("INSERT INTO ShipTo (ShipToID) VALUES (4)").mark("ShipTo", {"ShipToID"});
        product("INSERT INTO Customer (CustomerID) VALUES (5)").mark("Customer", {"CustomerID"});
        const std::string customer = "'" + marker("Quote.AccPacID") + "'";
        accounting("INSERT INTO AR0024 (IDCUST) VALUES (" + customer + ")").mark("AR0024", {"IDCUST"});
        accounting("INSERT INTO AR0023 (IDCUST, IDCUSTSHPT) VALUES (" + customer + ", 'WH')")
            .mark("AR0023", {"IDCUST", "IDCUSTSHPT"});
    }
    void add_codes()
    {
        const auto coded = [this](const std::string& view, const std::string& key, const std::string& column) {
            accounting("INSERT INTO " + view + " (" + key + ") VALUES ('" + marker("Quote." + column) + "')")
                .mark(view, {key});
        };
        coded("IC0370", "LOCATION", "quLocation");
        coded("IC0390", "PRICELIST", "quPriceList");
        coded("TX0003", "GROUPID", "quTaxGroup");
        coded("AR0016", "CODETERM", "quTermsCode");
        accounting("INSERT INTO IC0380 (HYHEN) VALUES (0)").mark("IC0380", {"HYHEN"});
        for (const char* n : {"1", "2", "3", "4", "5"}) {
            accounting("INSERT INTO AR0018 VALUES ('" + marker(std::string("Quote.quSalesperson") + n) +
                       "', ' Person " + n + " ')");
        }
    }
};

}  // namespace velora::test
