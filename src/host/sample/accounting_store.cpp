#include <array>
#include <string>

#include "host/sample/customers.h"
#include "host/sample/inventory_store.h"
#include "host/sample/row_writer.h"
#include "host/sample/sample_company.h"
#include "host/sample/tax_groups.h"

namespace velora::sample {
namespace {

void write_company(RowWriter& out)
{
    out.insert("CompanyInfo", {{"CompanyID", kCompanyId},
                               {"Name", "Demarest Motion & Controls Company"},
                               {"Address1", "240 Nebo Road"},
                               {"Address2", "Hannon Industrial Park"},
                               {"Address3", ""},
                               {"Address4", ""},
                               {"City", "Hamilton"},
                               {"State", "ON"},
                               {"Zip", "L8W 2E4"},
                               {"Country", "Canada"},
                               {"LocationType", "HO"},
                               {"LocationCode", "10"},
                               {"Phone", "9055550100"},
                               {"Fax", "9055550101"},
                               {"Contact", "Janet Demarest"},
                               {"CountryCode", "CA"},
                               {"HomeCurrency", "CAD"},
                               {"Multicurrency", 1},
                               {"PhoneFormat", 1}});
    const auto currency = [&](const char* code, const char* symbol, int position, int negative) {
        out.insert("CurrencyInfo", {{"Code", code},
                                    {"Symbol", symbol},
                                    {"ThousandSeparator", ","},
                                    {"DecimalSeparator", "."},
                                    {"Decimals", 2},
                                    {"SymbolPosition", position},
                                    {"NegativeDisplay", negative}});
    };
    currency("CAD", "$", 2, 2);
    currency("USD", "US$", 1, 3);
    int sequence = 0;
    for (const char* module : {"AR", "AP", "GL", "IC", "OE", "TX"}) {
        out.insert("ActiveApplications", {{"Seq", ++sequence}, {"AppID", module}, {"AppVersion", "60A"}});
    }
}

void write_receivables(RowWriter& out)
{
    for (const auto& [code, currency] : {std::pair{"TRADE", "CAD"}, {"USA", "USD"}}) {
        out.insert("AR0013", {{"IDACCTSET", code}, {"CURNCODE", currency}});
    }
    for (const auto& [code, text] : {std::pair{"N30", "Net 30 days"},
                                     {"N45", "Net 45 days"},
                                     {"2N10", "2% 10 days, net 30"},
                                     {"COD", "Cash on delivery"}}) {
        out.insert("AR0016", {{"CODETERM", code}, {"TEXTDESC", text}});
    }
    for (const auto& [code, name] : {std::pair{"HSE", "House account"},
                                     {"JMB", "Joanne M. Bertram"},
                                     {"LCT", "Louis-Charles Tessier"},
                                     {"RWG", "Ronald W. Gateson"},
                                     {"SKP", "Satinder K. Parmar"}}) {
        out.insert("AR0018", {{"CODESLSP", code}, {"NAMEEMPL", name}});
    }
}

Row address_cells(const Address& address)
{
    return {{"TEXTSTRE1", address.line1},
            {"TEXTSTRE2", address.line2},
            {"TEXTSTRE3", ""},
            {"TEXTSTRE4", ""},
            {"NAMECITY", address.city},
            {"CODESTTE", address.province},
            {"CODECTRY", address.country},
            {"CODEPSTL", address.postal_code},
            {"TEXTPHON1", address.phone},
            {"TEXTPHON2", address.fax},
            {"NAMECTAC", address.contact}};
}

void write_customers(RowWriter& out)
{
    for (const Customer& customer : customers()) {
        Row row{{"IDCUST", customer.number},         {"IDGRP", customer.group},
                {"NAMECUST", customer.address.name}, {"TEXTSNAM", customer.short_name},
                {"CODECURN", customer.currency()},   {"EMAIL1", customer.email},
                {"EMAIL2", customer.email}};
        append(row, address_cells(customer.address));
        out.insert("AR0024", row);
    }
    for (const ShipToLocation& location : ship_to_locations()) {
        Row row{{"IDCUST", location.customer},
                {"IDCUSTSHPT", location.code},
                {"NAMELOCN", location.address.name},
                {"SPCLINST", location.instructions}};
        append(row, address_cells(location.address));
        out.insert("AR0023", row);
    }
}

void write_charges(RowWriter& out)
{
    struct Charge {
        const char *code, *description, *account, *account_description;
    };
    for (const char* currency : {"CAD", "USD"}) {
        for (const Charge& charge : {Charge{"BROKER", "Customs brokerage", "5340", "Brokerage recovered"},
                                     Charge{"CRATE", "Crating and skids", "4260", "Packaging recovered"},
                                     Charge{"FREIGHT", "Freight and handling", "4250", "Freight recovered"},
                                     Charge{"HAZMAT", "Dangerous goods handling", "4255", "Handling recovered"},
                                     Charge{"RUSH", "Expediting", "4270", "Service revenue"},
                                     Charge{"SETUP", "Machine set-up", "4270", "Service revenue"}}) {
            out.insert("OE0440", {{"CURRENCY", currency},
                                  {"MISCCHARGE", charge.code},
                                  {"DESC", charge.description},
                                  {"MISCACCT", charge.account},
                                  {"MISCACDESC", charge.account_description}});
        }
    }
}

void write_tax_groups(RowWriter& out)
{
    for (const TaxGroup& group : kTaxGroups) {
        Row row{{"GROUPID", group.id}, {"DESC", group.description}};
        for (size_t slot = 0; slot < group.authorities.size(); ++slot) {
            const int number = static_cast<int>(slot) + 1;
            row.emplace_back(numbered("AUTHORITY", number), group.authorities.at(slot));
            row.emplace_back(numbered("TAXABLE", number), group.taxable.at(slot));
        }
        out.insert("TX0003", row);
    }
}

void write_tax_rates(RowWriter& out)
{
    struct Rate {
        const char* authority;
        double percent;
    };
    for (const Rate& rate : {Rate{"BCPST", 7}, Rate{"CAGST", 5}, Rate{"CAHST", 13}, Rate{"CAHST15", 15},
                             Rate{"CAQST", 9.975}, Rate{"ECOFEE", 1.5}, Rate{"SKPST", 6}, Rate{"USNOTX", 0}}) {
        for (const int type : {1, 2}) {       // sales, purchases
            for (const int buyer : {1, 2}) {  // taxable, exempt
                Row row{{"AUTHORITY", rate.authority}, {"TTYPE", type}, {"BUYERCLASS", std::to_string(buyer)}};
                for (int item_class = 1; item_class <= 10; ++item_class) {
                    const bool taxed = buyer == 1 && item_class == 1;
                    row.emplace_back(numbered("ITEMRATE", item_class), taxed ? rate.percent : 0.0);
                }
                out.insert("TX0004", row);
            }
        }
    }
}

}  // namespace

void fill_accounting_store(const std::filesystem::path& path)
{
    RowWriter out(path);
    write_company(out);
    write_receivables(out);
    write_customers(out);
    write_inventory(out);
    write_charges(out);
    write_tax_groups(out);
    write_tax_rates(out);
    out.commit();
}

}  // namespace velora::sample
