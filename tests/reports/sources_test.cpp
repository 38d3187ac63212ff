#include <map>

#include "reports/customer_list.h"
#include "reports/marked_quote.h"
#include "values/text.h"
#include "values/utf8.h"

// Where each field of a document comes from: every column and every view field holds a value of its own, so that a
// field that reads its neighbour shows it.

namespace velora {
namespace {

using test::AddressSource;
using test::MarkedQuote;
using test::shown;
using test::TestCompany;

std::map<std::string, size_t> text_sizes(const std::vector<PipeField>& fields)
{
    std::map<std::string, size_t> sizes;
    for (const auto& field : fields) sizes[std::string(field.name)] = field.type == ado::VarChar ? field.size : 1000;
    return sizes;
}

using Sources = std::vector<std::pair<const char*, const char*>>;  // field, and the column it shows

// clang-format off
const Sources kHeader{
    {"Company Name", "CompanyInfo.Name"}, {"Company Address1", "CompanyInfo.Address1"}, {"Company Address2", "CompanyInfo.Address2"},
    {"Company Address3", "CompanyInfo.Address3"}, {"Company Address4", "CompanyInfo.Address4"}, {"Company City", "CompanyInfo.City"},
    {"Company Prov/State", "CompanyInfo.State"}, {"Company PC/Zip", "CompanyInfo.Zip"}, {"Company Country", "CompanyInfo.Country"},
    {"Company Location Type", "CompanyInfo.LocationType"}, {"Company Location Code", "CompanyInfo.LocationCode"},
    {"Company Phone", "CompanyInfo.Phone"}, {"Company Fax", "CompanyInfo.Fax"}, {"Company Contact", "CompanyInfo.Contact"},
    {"Company Country Code", "CompanyInfo.CountryCode"},
    {"Quote Number", "Quote.QuoteNumber"}, {"Customer Contact", "Quote.CustContact"}, {"PO Number", "Quote.quPONumber"},
    {"Quote Status", "QuoteStatus.qsName"}, {"Quote Date", "Quote.quDateEnter"}, {"Quote Type", "QuoteType.qtName"},
    {"Quote Confidence", "QuoteConfidence.qcName"}, {"Shipping Date", "Quote.quDateShip"}, {"Expiry Date", "Quote.quDateExpire"},
    {"Sage Accpac Company", "Quote.quCompany"}, {"Entered By", "Quote.quUserEnter"}, {"Date Last Modified", "Quote.quDateModify"},
    {"Last Modified By", "Quote.quUserModify"}, {"Location", "Quote.quLocation"}, {"Location Desc", "IC0370.DESC"},
    {"Description", "Quote.quDesc"}, {"Reference Number", "Quote.quReference"}, {"Detail Lines", "Quote.quLines"},
    {"Quote Notes", "Quote.quNotes"}, {"Ship Via", "Quote.quShipVia"}, {"Ship Via Description", "Quote.quShipViaDesc"},
    {"FOB Point", "Quote.quFOBPoint"}, {"Email Address", "Quote.quEmail"}, {"Home Currency", "Quote.quHomeCurr"},
    {"Source Currency", "Quote.quSourceCurr"}, {"Rate Type", "Quote.quRateType"}, {"Rate Date", "Quote.quRateDate"},
    {"Exchange Rate", "Quote.quRateEx"}, {"Customer Price List", "Quote.quPriceList"}, {"Customer Price List Desc", "IC0390.DESC"},
    {"Customer Tax Group", "Quote.quTaxGroup"}, {"Customer Tax Group Desc", "TX0003.DESC"}, {"Customer Terms Code", "Quote.quTermsCode"},
    {"Customer Terms Code Desc", "AR0016.TEXTDESC"},
    {"Customer Tax Class1", "Quote.quTaxClass1"}, {"Customer Tax Class2", "Quote.quTaxClass2"}, {"Customer Tax Class3", "Quote.quTaxClass3"},
    {"Customer Tax Class4", "Quote.quTaxClass4"}, {"Customer Tax Class5", "Quote.quTaxClass5"},
    {"Customer Registration No1", "Quote.quRegNumber1"}, {"Customer Registration No2", "Quote.quRegNumber2"},
    {"Customer Registration No3", "Quote.quRegNumber3"}, {"Customer Registration No4", "Quote.quRegNumber4"},
    {"Customer Registration No5", "Quote.quRegNumber5"},
    {"Customer Salesperson1", "Quote.quSalesperson1"}, {"Customer Salesperson2", "Quote.quSalesperson2"},
    {"Customer Salesperson3", "Quote.quSalesperson3"}, {"Customer Salesperson4", "Quote.quSalesperson4"},
    {"Customer Salesperson5", "Quote.quSalesperson5"},
    {"Customer Sales Split1", "Quote.quPercentSS1"}, {"Customer Sales Split2", "Quote.quPercentSS2"},
    {"Customer Sales Split3", "Quote.quPercentSS3"}, {"Customer Sales Split4", "Quote.quPercentSS4"},
    {"Customer Sales Split5", "Quote.quPercentSS5"},
    {"Quote Weight Unit", "IC0380.WEIGHTUNIT"},
    {"Tax Authority1", "TX0003.AUTHORITY1"}, {"Tax Authority2", "TX0003.AUTHORITY2"}, {"Tax Authority3", "TX0003.AUTHORITY3"},
    {"Tax Authority4", "TX0003.AUTHORITY4"}, {"Tax Authority5", "TX0003.AUTHORITY5"},
};

const std::vector<std::pair<const char*, const char*>> kFixed{
    {"Company Home Currency", "CAD"}, {"Company MultiCurrency", "True"}, {"Territory", ""}, {"Customer Discount Type", "C"},
    {"Customer Currency Code", "CAD"}, {"Customer Salesperson Name1", "Person 1"}, {"Customer Salesperson Name2", "Person 2"},
    {"Customer Salesperson Name3", "Person 3"}, {"Customer Salesperson Name4", "Person 4"}, {"Customer Salesperson Name5", "Person 5"},
};

/// An address field, and the column behind it by source; none where that source leaves it unset.
struct AddressField {
    const char *field, *saved, *customer, *location, *own;
};
const std::vector<AddressField> kAddress{
    {"Name", "Name", "NAMECUST", "NAMELOCN", "cuFullName"},      {"Address1", "Address1", "TEXTSTRE1", "TEXTSTRE1", "cuAddress1"},
    {"Address2", "Address2", "TEXTSTRE2", "TEXTSTRE2", "cuAddress2"}, {"Address3", "Address3", "TEXTSTRE3", "TEXTSTRE3", nullptr},
    {"Address4", "Address4", "TEXTSTRE4", "TEXTSTRE4", nullptr}, {"City", "City", "NAMECITY", "NAMECITY", "cuCity"},
    {"Prov/State", "ProvState", "CODESTTE", "CODESTTE", "cuProvState"}, {"Country", "Country", "CODECTRY", "CODECTRY", "cuCountry"},
    {"PCZip", "PCZip", "CODEPSTL", "CODEPSTL", "cuPCZip"},       {"Phone", "Phone", "TEXTPHON1", "TEXTPHON1", "cuPhone"},
    {"Fax", "Fax", "TEXTPHON2", "TEXTPHON2", "cuFax"},           {"Contact", "Contact", "NAMECTAC", "NAMECTAC", "cuContact"},
};

const Sources kCustomers{
    {"Customer Number", "CustomerNumber"}, {"Short Name", "cuShortName"}, {"Full Name", "cuFullName"}, {"Address 1", "cuAddress1"},
    {"Address 2", "cuAddress2"}, {"Address 3", "cuAddress3"}, {"Address 4", "cuAddress4"}, {"City", "cuCity"}, {"Prov/State", "cuProvState"},
    {"Country", "cuCountry"}, {"PC/Zip Code", "cuPCZip"}, {"Contact", "cuContact"}, {"Contact Email", "cuEmail1"}, {"Customer Email", "cuEmail2"},
    {"Group Code", "cuGroupCode"}, {"Price List", "cuPriceList"}, {"Account Set", "cuAccountSet"}, {"Terms Code", "cuTermsCode"},
    {"Tax Group", "cuTaxGroup"}, {"Rate Type", "cuRateType"}, {"Tax Class 1", "cuTaxClass1"}, {"Tax Class 2", "cuTaxClass2"},
    {"Tax Class 3", "cuTaxClass3"}, {"Tax Class 4", "cuTaxClass4"}, {"Tax Class 5", "cuTaxClass5"}, {"Registration No 1", "cuRegNumber1"},
    {"Registration No 2", "cuRegNumber2"}, {"Registration No 3", "cuRegNumber3"}, {"Registration No 4", "cuRegNumber4"},
    {"Registration No 5", "cuRegNumber5"},
};
// clang-format on

/// Prefix of the columns behind an address, and which of its names counts; none for a source that the side has not.
std::string address_column(AddressSource source, bool is_bill_to, const AddressField& field)
{
    switch (source) {
        case AddressSource::Saved:
            return std::string(is_bill_to ? "BillTo.bt" : "ShipTo.st") + field.saved;
        case AddressSource::OwnCustomer:
            return field.own == nullptr ? "" : std::string("Customer.") + field.own;
        case AddressSource::AccountingLocation:
            if (!is_bill_to) return std::string("AR0023.") + field.location;
            [[fallthrough]];
        default:
            return std::string("AR0024.") + field.customer;
    }
}

class Sourced : public testing::TestWithParam<std::tuple<WhichEngine, AddressSource>> {};
INSTANTIATE_TEST_SUITE_P(Quote, Sourced,
                         testing::Combine(testing::Values(eDBSQLServer, eDBPervasive),
                                          testing::Values(AddressSource::Saved, AddressSource::AccountingCustomer,
                                                          AddressSource::AccountingLocation,
                                                          AddressSource::OwnCustomer)));

TEST_P(Sourced, EachFieldOfTheHeaderShowsItsOwnColumn)
{
    const auto [engine, source] = GetParam();
    MarkedQuote company(engine, source);
    company.accounting("UPDATE CompanyInfo SET PhoneFormat = 0");
    const auto& row = company.print();
    const auto sizes = text_sizes(quote_fields());
    const auto expect = [&](const std::string& field, const std::string& text) {
        EXPECT_EQ(shown(row, field), cut_to_characters(text, sizes.at(field))) << field;
    };
    for (const auto& [field, column] : kHeader) expect(field, company.marker(column));
    for (const auto& [field, text] : kFixed) expect(field, text);
    expect("Ship-To Location", source == AddressSource::AccountingLocation ? "WH" : "");
    expect("Customer Number",
           company.marker(source == AddressSource::OwnCustomer ? "Customer.CustomerNumber" : "Quote.AccPacID"));
    for (const bool is_bill_to : {true, false}) {
        for (const auto& address : kAddress) {
            const std::string field = std::string(is_bill_to ? "BillTo " : "ShipTo ") + address.field;
            if (field == "ShipTo Fax") continue;
            const auto column = address_column(source, is_bill_to, address);
            expect(field, column.empty() ? "<null>" : company.marker(column));
        }
    }
    EXPECT_TRUE(company.boxes().empty()) << company.box_text(0);
}

TEST(Phones, WearTheMaskOnlyWhereTheCompanyWantsIt)
{
    for (const bool masked : {true, false}) {
        MarkedQuote company(eDBSQLServer, AddressSource::Saved);
        company.accounting("UPDATE CompanyInfo SET Phone = '9020000001', Fax = '9020000002', PhoneFormat = " +
                           std::string(masked ? "1" : "0"));
        company.product(
            "UPDATE BillTo SET btPhone = ' 9020000003 ', btFax = '9020000004'; UPDATE ShipTo SET stPhone = "
            "'9020000005';"
            "UPDATE Customer SET Exported = 0, cuPhone = '9020000006', cuFax = ' 9020000007'");
        auto row = company.print();
        Print_CustomerList(company.state(), "list.rpt", false, true);
        const auto& customer = company.engine.report->rows.at(0);
        row["Phone"] = customer.at("Phone");
        row["Fax"] = customer.at("Fax");
        for (const auto& [field, digit] : {std::pair{"Company Phone", 1},
                                           {"Company Fax", 2},
                                           {"BillTo Phone", 3},
                                           {"BillTo Fax", 4},
                                           {"ShipTo Phone", 5},
                                           {"Phone", 6},
                                           {"Fax", 7}}) {
            const std::string number = std::to_string(digit);
            std::string plain = "902000000" + number;
            if (field == std::string("Fax")) plain = " " + plain;  // as stored
            EXPECT_EQ(shown(row, field), masked ? "(902) 000-000" + number : plain) << field;
        }
    }
}

TEST(CustomerSources, EachFieldShowsItsOwnColumnAsItStands)
{
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        TestCompany company(engine);
        company.product("INSERT INTO Customer (CustomerID, Exported, cuCustType) VALUES (5, 0, 4)");
        company.mark("Customer", {"CustomerID", "Exported", "cuCustType"});
        company.settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "0");
        Print_CustomerList(company.state(), "list.rpt", false, true);
        const auto& row = company.engine.report->rows.at(0);
        const auto sizes = text_sizes(customer_list_fields());
        for (const auto& [field, column] : kCustomers) {
            const std::string stored = "  " + company.marker(std::string("Customer.") + column) + " ";
            EXPECT_EQ(shown(row, field), cut_to_characters(stored, sizes.at(field))) << field;
        }
        EXPECT_EQ(shown(row, "Customer Discount Type"), "D");
    }
}

}  // namespace
}  // namespace velora
