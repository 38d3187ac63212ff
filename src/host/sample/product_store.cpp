#include <string>

#include "host/sample/quote_rows.h"
#include "host/sample/quotes.h"
#include "host/sample/row_writer.h"
#include "host/sample/sample_company.h"
#include "host/sample/tax_groups.h"

namespace velora::sample {
namespace {

void write_defaults(RowWriter& out)
{
    out.insert("Defaults",
               {{"Company", kCompanyId}, {"DefaultID", 1},       {"Configure", 1},        {"anUseQuoteNum", 0},
                {"mdUseDLRange", 1},     {"mdPickingSlip", 1},   {"mdConfirmation", 1},   {"mdPSReprint", 1},
                {"mdOCReprint", 1},      {"mdPrintName", ""},    {"mdPSPrintName", ""},   {"mdOCPrintName", ""},
                {"mdPSSplit", 0},        {"mdEachLoc", 0},       {"mdLocDetail", 1},      {"mdShowCustItem", 0},
                {"mdUsePLDef", 1},       {"mdDefaultPL", "STD"}, {"qdStatusLost", kLost}, {"qdStatusOpen", kOpen}});
}

void write_statuses(RowWriter& out)
{
    const auto status = [&](Status id, const char* code, const char* name, const char* description, int active) {
        out.insert("QuoteStatus", {{"QuoteStatusID", id},
                                   {"qsCode", code},
                                   {"qsName", name},
                                   {"qsDescription", description},
                                   {"qsActive", active}});
    };
    status(kOpen, "OPEN", "Open", "Waiting for the customer", 1);
    status(kFollowUp, "FOLLOW", "Follow up", "To be called before it expires", 1);
    status(kWon, "WON", "Won", "Became an order", 1);
    status(kLost, "LOST", "Lost", "Went to somebody else or nowhere", 1);
    status(kHeld, "HOLD", "", "Waiting for credit", 1);
    status(kVoid, "VOID", "Void", "Entered in error", 0);
}

void write_lists(RowWriter& out)
{
    const auto type = [&](int id, const char* code, const char* name) {
        out.insert("QuoteType", {{"QuoteTypeID", id}, {"qtCode", code}, {"qtName", name}, {"qtActive", 1}});
    };
    type(1, "STD", "Standard");
    type(2, "BUD", "Budget");
    type(3, "BLK", "Blanket order");
    type(4, "SRV", "Service and repair");
    const auto confidence = [&](int id, const char* code, const char* name) {
        out.insert("QuoteConfidence", {{"QuoteConfidID", id}, {"qcCode", code}, {"qcName", name}, {"qcActive", 1}});
    };
    confidence(1, "90", "Very likely");
    confidence(2, "50", "Even chance");
    confidence(3, "20", "Long shot");
    const auto reason = [&](int id, const char* code, const char* description, int active) {
        out.insert("Reason",
                   {{"ReasonID", id}, {"reCode", code}, {"reDescription", description}, {"reActive", active}});
    };
    reason(1, "PRICE", "Price too high", 1);
    reason(2, "LEADTIME", "Could not deliver in time", 1);
    reason(3, "TECH", "Did not meet the technical requirements", 1);
    reason(4, "BUDGET", "Project cancelled or postponed", 1);
    reason(5, "SUPPLIER", "Bound to another supplier", 1);
    reason(6, "NORESP", "No answer", 1);
    reason(7, "OTHER", "Other, no longer used", 0);
}

void write_ranges(RowWriter& out)
{
    const auto range = [&](int id, int type, const char* name, const char* start, const char* end) {
        out.insert(
            "DLocRange",
            {{"DLRID", id}, {"RType", type}, {"RName", name}, {"RStart", start}, {"REnd", end}, {"RPrinter", ""}});
    };
    range(1, 0, "Main warehouse", "10", "19");
    range(2, 0, "Branches", "20", "49");
    range(3, 0, "Service vans", "SERV", "SERV");
    range(4, 1, "Small parts", "", "339");
    range(5, 1, "Shelving", "340", "659");
    range(6, 1, "Heavy goods", "660", "999");
}

void write_own_customers(RowWriter& out)
{
    for (const OwnCustomer& own : own_customers()) {
        const Customer& customer = own.customer;
        const Address& address = customer.address;
        const TaxGroup& group = tax_group(customer.tax_group);
        // The ninth has no currency of its own: its account set decides.
        const std::string_view currency = own.id == 9 ? "" : customer.currency();
        Row row{{"CustomerID", own.id},
                {"CustomerNumber", customer.number},
                {"cuFullName", address.name},
                {"cuShortName", customer.short_name},
                {"cuAddress1", address.line1},
                {"cuAddress2", address.line2},
                {"cuAddress3", Value()},
                {"cuAddress4", Value()},
                {"cuCity", address.city},
                {"cuProvState", address.province},
                {"cuCountry", address.country},
                {"cuPCZip", address.postal_code},
                {"cuPhone", address.phone},
                {"cuFax", address.fax},
                {"cuContact", address.contact},
                {"cuEmail1", customer.email},
                {"cuEmail2", ""},
                {"cuGroupCode", customer.group},
                {"cuPriceList", customer.price_list},
                {"cuTermsCode", customer.terms},
                {"cuTaxGroup", customer.tax_group},
                {"cuCustType", customer.discount_level},
                {"cuRateType", currency == "USD" ? Value("SP") : Value()},
                {"cuCurCode", currency},
                {"cuAccountSet", customer.account_set()},
                {"Exported", own.exported ? 1 : 0}};
        add_numbered(row, "cuTaxClass", [&](int slot) { return group.authorities.at(slot).empty() ? "" : "1"; });
        add_numbered(row, "cuRegNumber", [](int) { return ""; });
        out.insert("Customer", row);
    }
}

void write_own_items(RowWriter& out)
{
    int32_t price_id = 0;
    for (const OwnItem& item : own_items()) {
        out.insert("Items", {{"ItemID", item.id},
                             {"ItemNumber", item.number},
                             {"itDesc", item.description},
                             {"itCategory", item.category},
                             {"itPriceList", "STD"},
                             {"itStockUnit", item.unit},
                             {"itLastMaintained", days_after(*DateTime::from_ymd(2025, 9, 1), item.id * 9)},
                             {"itStructureCode", "PLAIN"},
                             {"itAccountSet", "SHOP"},
                             {"itAdditional", ""},
                             {"itAdditional1", ""},
                             {"itAdditional2", ""},
                             {"itAdditional3", ""},
                             {"Exported", item.id % 6 == 0 ? 1 : 0}});
        const auto price = [&](const char* currency, const char* list, int percent) {
            out.insert("IPricing", {{"PriceID", ++price_id},
                                    {"ItemID", item.id},
                                    {"ipCurrency", currency},
                                    {"ipPriceList", list},
                                    {"ipBasePrice", amount(item.price * percent / 100)}});
        };
        price("CAD", "STD", 100);
        price("CAD", "OEM", 92);
        price("USD", "STD", 74);
    }
}

}  // namespace

void fill_product_database(const std::filesystem::path& path)
{
    RowWriter out(path);
    write_defaults(out);
    write_statuses(out);
    write_lists(out);
    write_ranges(out);
    write_own_customers(out);
    write_own_items(out);
    QuoteRows rows(out);
    for (const Quote& quote : quotes()) rows.write(quote);
    out.commit();
}

}  // namespace velora::sample
