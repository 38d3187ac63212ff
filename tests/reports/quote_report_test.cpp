#include "reports/quote_report.h"

#include "reports/custom_report.h"
#include "reports/customer_list.h"
#include "reports/quote_company.h"

namespace velora {
namespace {

using test::FakeReport;
using test::Line;
using test::QuoteCompany;
using test::shown;
using test::TestCompany;

using Fields = std::vector<std::pair<const char*, const char*>>;

void expect_fields(const FakeReport::Row& row, const Fields& expected, const std::string& why)
{
    for (const auto& [field, text] : expected) EXPECT_EQ(shown(row, field), text) << why << ": " << field;
}

TEST(QuoteFields, AreTheContractWithDefinitions)
{
    const auto fields = quote_fields();
    ASSERT_EQ(fields.size(), 157U);
    struct Case {
        size_t number;
        const char* name;
        int type, size;
    };
    for (const auto& c :
         {Case{1, "Company Name", 200, 60}, Case{13, "Company Fax", 200, 120}, Case{17, "Company MultiCurrency", 11, 0},
          Case{48, "Exchange Rate", 4, 0}, Case{81, "Customer Salesperson Name5", 200, 60},
          Case{104, "ShipTo Contact", 200, 60}, Case{107, "Detail Line", 3, 0}, Case{125, "Detail Shipping Date", 7, 0},
          Case{136, "Detail Item Comm/Ins", 200, 250}, Case{157, "Tax Amount5", 4, 0}}) {
        const auto& field = fields[c.number - 1];
        EXPECT_EQ(field.name, c.name);
        EXPECT_EQ(field.type, c.type) << c.name;
        EXPECT_EQ(field.size, c.size) << c.name;
    }
}

TEST(QuoteReport, GivesARowForEachLineAndThenForEachCharge)
{
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        QuoteCompany company(engine);
        company.add({.number = 1, .quantity = "2.5", .more = "deQtyTransfer = 1, deShipDate = '2026-03-15'"})
            .add({.number = 4, .detail_kind = 10})
            .charge(1, "20")
            .charge(2, "5");
        const auto& rows = company.print();
        ASSERT_EQ(rows.size(), 4U) << company.box_text(0);
        expect_fields(rows[0],
                      {{"Detail Type", "Item"},
                       {"Detail Item Type", "Sage Accpac"},
                       {"Detail Line", "1"},
                       {"Detail Item Number", "IT-EM"},
                       {"Detail Desc", "A thing"},
                       {"Detail Quantity", "2.5"},
                       {"Detail Available", "1"},
                       {"Detail Back Order", "1.5"},
                       {"Detail Quote UofM", "EA"},
                       {"Detail Unit Price", "10.00"},
                       {"Detail Pricing UofM", "EA"},
                       {"Detail Original Base Price", "11.00"},
                       {"Detail Quote Base Price", "10.00"},
                       {"Detail Amount", "25.00"},
                       {"Detail Discount", "0.00"},
                       {"Detail Discounted Amt", "25.00"},
                       {"Detail Discount Percent", "0.00%"},
                       {"Detail Item Cost", "4.00"},
                       {"Detail Profit", "6.00"},
                       {"Detail Margin", "60.00 %"},
                       {"Detail Shipping Date", "2026-03-15"},
                       {"Detail Price List", "STD"},
                       {"Detail GL Account", "<null>"},
                       {"Detail Weight", "2.5"}},
                      "item");
        expect_fields(rows[1],
                      {{"Detail Type", "Comment"},
                       {"Detail Line", "4"},
                       {"Detail Desc", "A remark"},
                       {"Detail Quantity", "<null>"},
                       {"Detail Item Number", "<null>"}},
                      "comment");
        expect_fields(rows[2],
                      {{"Detail Type", "Charge"},
                       {"Detail Line", "5"},
                       {"Detail Item Number", "FRT"},
                       {"Detail Amount", "20.00"}},
                      "charge");
        EXPECT_EQ(shown(rows[3], "Detail Line"), "6") << "charges go on with the numbering";
        for (const auto& row : rows) {
            expect_fields(row,
                          {{"Company Name", "Test Company"},
                           {"Quote Number", "Q/1"},
                           {"Customer Number", "1200"},
                           {"BillTo Name", "Bay Works"},
                           {"Territory", ""},
                           {"Quote SubTotal", "50.00"},
                           {"Quote Total", "56.00"},
                           {"Tax Authority2", "PROV"},
                           {"Tax Amount1", "2.5"},
                           {"Tax Authority3", ""},
                           {"Company MultiCurrency", "True"}},
                          "every row");
        }
        EXPECT_EQ(
            company.engine.report->calls,
            std::vector<std::string>{"export 0 " + company.state().ports.application_folder + "/Q_1 - Bay Works.pdf"});
        EXPECT_TRUE(company.boxes().empty()) << company.box_text(0);
    }
}

TEST(QuoteReport, LeavesAFieldNullWhereItsStatementFallsAway)
{
    struct Case {
        const char* why;
        Line line;
        Fields expected;
    };
    for (const auto& c :
         {Case{"no gross amount, no percent of it",
               {.price = "0", .discount = "1"},
               {{"Detail Discount Percent", "<null>"}, {"Detail Margin", "0"}, {"Detail Amount", "0.00"}}},
          Case{"a null price",
               {.more = "deQuotedPrice = NULL"},
               {{"Detail Unit Price", "<null>"}, {"Detail Amount", "<null>"}, {"Detail Quantity", "1"}}},
          Case{"an item kind that is none counts as an own item",
               {.item_kind = 77},
               {{"Detail Item Type", "Velora"}, {"Detail Item Number", "ITEM"}}},
          Case{"a null item kind is an own item that no price hangs on",
               {.more = "deIType = NULL"},
               {{"Detail Item Type", "Velora"},
                {"Detail Item Number", "ITEM"},
                {"Detail Unit Price", "<null>"},
                {"Detail Original Base Price", "<null>"},
                {"Detail Pricing UofM", "EA"},
                {"Detail Amount", "10.00"},
                {"Detail Desc", "A thing"}}},
          Case{"no shipping date", {}, {{"Detail Shipping Date", "<null>"}}}}) {
        QuoteCompany company;
        const auto& rows = company.add(c.line).print();
        ASSERT_EQ(rows.size(), 1U) << c.why << company.box_text(0);
        expect_fields(rows[0], c.expected, c.why);
        EXPECT_TRUE(company.boxes().empty()) << c.why << company.box_text(0);
    }
}

TEST(QuoteReport, KeepsTheLastLineNumberWhereSixteenBitsEnd)
{
    QuoteCompany company;
    company.add({.number = 32767}).charge(1, "5");
    EXPECT_EQ(shown(company.print().at(1), "Detail Line"), "32767");
}

TEST(QuoteReport, TrimsTheCompanyBlockWhichListsShowAsItStands)
{
    QuoteCompany company;
    company.accounting("UPDATE CompanyInfo SET City = ' Halifax '");
    company.add({}).product("INSERT INTO Customer (CustomerID, CustomerNumber, Exported) VALUES (1, 'A', 0)");
    EXPECT_EQ(shown(company.print().at(0), "Company City"), "Halifax");
    Print_CustomerList(company.state(), "list.rpt", false, true);
    EXPECT_EQ(shown(company.engine.report->rows.at(0), "Company City"), " Halifax ");
}

TEST(QuoteReport, CountsEveryStatementThatFellAway)
{
    QuoteCompany company;
    company.add({.price = "0"}).print();
    const auto& log = company.state().log.tolerated();
    const auto entry = std::find_if(log.begin(), log.end(),
                                    [](const auto& fallen) { return fallen.field == "Detail Discount Percent"; });
    ASSERT_NE(entry, log.end());
    EXPECT_EQ(entry->row, 1U);
    EXPECT_EQ(entry->number, fault::kOverflow) << "nothing divided by nothing";
}

TEST(QuoteReport, ShowsTheCustomersItemNumberWhereTheCompanyWantsIt)
{
    struct Case {
        int shows;
        const char* customers;
        const char* expected;
    };
    for (const auto& c :
         {Case{0, "'C-9'", "IT-EM"}, Case{1, "' C-9 '", "C-9"}, Case{1, "' '", "IT-EM"}, Case{1, "NULL", "<null>"}}) {
        QuoteCompany company;
        company.product("UPDATE Defaults SET mdShowCustItem = " + std::to_string(c.shows));
        const auto& rows = company.add({.more = std::string("deCustItem = ") + c.customers}).print();
        EXPECT_EQ(shown(rows.at(0), "Detail Item Number"), c.expected) << c.customers;
    }
}

TEST(QuoteReport, PrintsTheCommentsThatTheUserChose)
{
    struct Case {
        const char* setting;
        const char* comment;
        const char* instruction;
    };
    for (const auto& c : {Case{"0", "say", "do"}, Case{"1", "say", "<null>"}, Case{"2", "<null>", "do"},
                          Case{"9", "<null>", "<null>"}}) {
        QuoteCompany company;
        company.add({.more = "deHasItemCom = 1"})
            .product("INSERT INTO CommIns VALUES (1, 1, 1, ' say '), (1, 1, 2, 'do')");
        company.settings.set("Morvane\\Velora", "TESTCO_Report", "CommIns", c.setting);
        const auto& rows = company.print();
        ASSERT_EQ(rows.size(), 2U) << "a line with two of them comes twice";
        EXPECT_EQ(shown(rows[0], "Detail Item Comm/Ins"), c.comment) << c.setting;
        EXPECT_EQ(shown(rows[1], "Detail Item Comm/Ins"), c.instruction) << c.setting;
        EXPECT_EQ(shown(rows[1], "Quote SubTotal"), "10.00") << "but counts once";
    }
}

TEST(QuoteReport, ShowsAmountsInTheHomeCurrencyOfACompanyWithOne)
{
    QuoteCompany company;
    company.product("UPDATE Quote SET quCurCode = 'USD'");
    company.accounting("UPDATE CurrencyInfo SET ThousandSeparator = ' ' WHERE Code = 'USD'");
    company.add({.price = "-1234"});
    company.state().gMultiCurr = false;
    EXPECT_EQ(shown(company.print().at(0), "Detail Amount"), "-1,234.00") << "not (1234.00)";
}

TEST(QuoteReport, WritesTheDefaultPriceListToTheLineItShows)
{
    QuoteCompany company;
    company.product("UPDATE Defaults SET mdUsePLDef = 1").add({.price_list = "'EXPORT'"});
    expect_fields(company.print().at(0), {{"Detail Price List", "STD"}, {"Detail Original Base Price", "11.00"}},
                  "fallback");
}

TEST(QuoteReport, SaysWhyItIsNotPrinted)
{
    QuoteCompany company;
    company.print(99);
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_EQ(company.boxes()[0].title, "Quote Report Cancelled");
    EXPECT_EQ(company.boxes()[0].icon, Icon::Exclamation);
    EXPECT_EQ(company.box_text(0),
              "The selected Quote information could not be found.\r\nThe report will be cancelled.");

    const auto expect_box = [&](const char* text, const char* why) {
        ASSERT_EQ(company.boxes().size(), 1U) << why;
        EXPECT_EQ(company.boxes()[0].title, "Reporting Error");
        EXPECT_EQ(company.boxes()[0].icon, Icon::Critical);
        EXPECT_EQ(company.box_text(0), text) << why;
        company.user.boxes.clear();
    };
    constexpr const char* kNotInstalled =
        "A Reporting error has occured.\r\nPlease ensure that the program is installed corectly.\r\n\nPlease contact "
        "Morvane if this error occurs frequently.";
    company.user.boxes.clear();
    company.print(1);
    expect_box(kNotInstalled, "a quote without lines");
    Print_Quote(company.state(), 1, "missing.rpt", 0, false, true);
    expect_box(
        "The specified report could not be found.\r\n\nPlease ensure that the reports are located in a\r\nfolder "
        "called 'Reports'. This 'Reports' folder must\r\nbe located within the main folder for the application.",
        "no definition");
    EXPECT_TRUE(company.engine.report->calls.empty());
    company.state().ports.engine = nullptr;
    company.print(1);
    expect_box(kNotInstalled, "no engine");
}

TEST(QuoteReport, IsPrintedThoughItsDefinitionAsksForAnUnknownField)
{
    QuoteCompany company;
    company.add({});
    company.engine.report->asked = {{"Quote Number", Value::Type::Text}, {"Quote Numbr", Value::Type::Text}};
    EXPECT_EQ(company.print().size(), 1U) << "the engine tells of it and leaves the field empty";
    EXPECT_TRUE(company.boxes().empty());
}

TEST(QuoteReport, HasTheSameRowsWithAndWithoutRememberedLookups)
{
    std::vector<std::vector<FakeReport::Row>> printed;
    for (const bool forget : {false, true}) {
        QuoteCompany company;
        company.product("UPDATE Defaults SET mdUsePLDef = 1");
        for (int line = 1; line <= 6; ++line) {
            company.add(
                {.number = line, .quantity = std::to_string(line), .price_list = line % 2 == 0 ? "'STD'" : "'OLD'"});
        }
        company.charge(1, "5").load();
        company.state().cache.forget_everything(forget);
        printed.push_back(company.print());
    }
    ASSERT_EQ(printed[0].size(), 7U);
    EXPECT_EQ(printed[0], printed[1]);
}

TEST(PrinterChoice, TakesTheFirstWhoseNameHoldsTheSetting)
{
    QuoteCompany company;
    company.add({}).load();
    company.printers.printers = {{"drv", "Büro LASER 2", "p1"}, {"drv2", "Laser upstairs", "p2"}};
    const auto choose = [&](const char* name) {
        company.engine.report->printer = "the definition's own";
        company.engine.report->calls.clear();
        company.user.boxes.clear();
        company.settings.set("Morvane\\Velora", "TESTCO_Report", "Name", name);
        Print_Quote(company.state(), 1, "quote.rpt", 0, false, false);
        return company.engine.report->printer;
    };
    EXPECT_EQ(choose(" laser "), "drv|Büro LASER 2|p1");
    EXPECT_EQ(company.engine.report->calls, (std::vector<std::string>{"orientation 0", "source 7", "print"}));
    EXPECT_EQ(choose("BÜRO l?ser #"), "drv|Büro LASER 2|p1");
    EXPECT_EQ(choose("[!b]aser"), "drv|Büro LASER 2|p1");
    EXPECT_EQ(choose("ups"), "drv2|Laser upstairs|p2");
    EXPECT_EQ(choose("  "), "the definition's own");
    EXPECT_EQ(company.engine.report->calls, std::vector<std::string>{"print"});

    choose("plotter");
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_EQ(company.boxes()[0].icon, Icon::Critical) << "a name that fits none is not caught";
    EXPECT_TRUE(company.engine.report->calls.empty());
    choose("las[er");
    EXPECT_THAT(company.box_text(0), testing::StartsWith("93: Invalid pattern string"));
}

TEST(Routing, AnExportWinsOverAPreview)
{
    QuoteCompany company;
    company.add({}).load();
    company.settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "5");
    Print_Quote(company.state(), 1, "quote.rpt", 0, true, true);
    EXPECT_TRUE(company.state().gExportOK);
    EXPECT_THAT(company.state().gExportFile, testing::EndsWith(".txt"));
    EXPECT_TRUE(company.user.captions.empty());

    Print_Quote(company.state(), 1, "quote.rpt", 0, true, false);
    EXPECT_EQ(company.user.captions, std::vector<std::string>{"Velora - quote.rpt"});

    company.engine.report->refuses = Fault(fault::kPathAccess, "No such folder");
    Print_Quote(company.state(), 1, "quote.rpt", 0, false, true);
    EXPECT_FALSE(company.state().gExportOK);
    EXPECT_THAT(company.box_text(0), testing::HasSubstr("modPrint.Export_Report"));

    company.user.boxes.clear();
    company.engine.report->refuses = fault::of(fault::kCancelled);
    Print_Quote(company.state(), 1, "quote.rpt", 0, false, false);
    EXPECT_TRUE(company.boxes().empty()) << "a user who cancels gets no message";
}

TEST(CustomerList, ListsWhatHasNotBeenExported)
{
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        TestCompany company(engine);
        company.product(
            "INSERT INTO Customer (CustomerID, CustomerNumber, cuFullName, cuPhone, cuCustType, Exported) VALUES "
            "(1, 'B', ' as stored ', '9025551234', 2, 0), (2, 'A', 'x', '5551234', 6, 0), (3, 'C', 'y', '', 0, 1);"
            "UPDATE Customer SET cuAddress3 = NULL, cuCity = NULL WHERE CustomerID = 2");
        company.settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "0");
        Print_CustomerList(company.state(), "list.rpt", false, true);
        const auto& rows = company.engine.report->rows;
        ASSERT_EQ(rows.size(), 2U) << company.box_text(0);
        expect_fields(rows[0],
                      {{"Customer Number", "A"},
                       {"Phone", "5551234"},
                       {"Customer Discount Type", "<null>"},
                       {"City", "<null>"},
                       {"Company Name", "Test Company"}},
                      "first by number");
        expect_fields(rows[1],
                      {{"Full Name", " as stored "},
                       {"Phone", "(902) 555-1234"},
                       {"Customer Discount Type", "B"},
                       {"Company Name", "Test Company"}},
                      "second");
        EXPECT_THAT(company.state().gExportFile, testing::EndsWith("20260313 - Customer List.pdf"));
        const auto& log = company.state().log.tolerated();
        const auto dropped = [&](size_t row, const char* field) {
            return std::count_if(log.begin(), log.end(),
                                 [&](const auto& entry) { return entry.row == row && entry.field == field; });
        };
        EXPECT_EQ(dropped(1, "City"), 1);
        EXPECT_EQ(dropped(1, "Address 3"), 0) << "the guarded column is no fault";
    }
    EXPECT_EQ(customer_list_fields().size(), 50U);
}

TEST(CustomerList, SaysWhenThereIsNone)
{
    TestCompany company;
    Print_CustomerList(company.state(), "list.rpt", false, true);
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_EQ(company.boxes()[0].title, "No Data Found");
    EXPECT_EQ(company.boxes()[0].icon, Icon::Information);
    EXPECT_EQ(company.box_text(0), "There are no Customers in the database to place on the report.");
    EXPECT_TRUE(company.engine.report->calls.empty());
}

TEST(CustomReport, HasABoxOfItsOwnForAMissingFile)
{
    TestCompany company;
    Custom_Reports(company.state(), "nowhere.rpt", "Mine", false, true);
    EXPECT_EQ(company.boxes().at(0).title, "Report Not Found");
    EXPECT_EQ(company.boxes().at(0).icon, Icon::Critical);
    EXPECT_EQ(company.box_text(0),
              "The selected Report could not be found.\r\nThe Report may have been moved or deleted.\r\nPlease first "
              "remove and then add the Report again.");

    company.settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "6");
    const std::string any_file = std::string(VELORA_SOURCE_DIR) + "/README.md";
    Custom_Reports(company.state(), any_file, " Mine ", false, true);
    EXPECT_THAT(company.state().gExportFile, testing::EndsWith("20260313 - Mine.xml"));
    Custom_Reports(company.state(), any_file, "Mine", true, false);
    EXPECT_EQ(company.user.captions, std::vector<std::string>{"Velora - Custom Report"});
}

}  // namespace
}  // namespace velora
