#include "adapters/accounting_sql/schema.h"

#include "adapters/sqlite_core/schema_writer.h"
#include "adapters/store_schema/view_keys.h"

namespace velora::stores {

namespace {

using enum ColumnType;

// clang-format off
std::vector<SchemaTable> receivables_views()
{
    return {
        {"AR0013", {{"IDACCTSET"}, {"CURNCODE"}}, {}},
        {"AR0016", {{"CODETERM"}, {"TEXTDESC"}}, {}},
        {"AR0017", {{"CODETERM"}}, {}},
        {"AR0018", {{"CODESLSP"}, {"NAMEEMPL"}}, {}},
        {"AR0023", {
            {"IDCUST"}, {"IDCUSTSHPT"}, {"NAMELOCN"}, {"TEXTSTRE", Text, 4}, {"NAMECITY"}, {"CODESTTE"}, {"CODECTRY"},
            {"CODEPSTL"}, {"TEXTPHON", Text, 2}, {"NAMECTAC"}, {"SPCLINST"}}, {}},
        {"AR0024", {
            {"IDCUST"}, {"IDGRP"}, {"NAMECUST"}, {"TEXTSNAM"}, {"CODECURN"}, {"TEXTSTRE", Text, 4}, {"NAMECITY"},
            {"CODESTTE"}, {"CODECTRY"}, {"CODEPSTL"}, {"TEXTPHON", Text, 2}, {"NAMECTAC"}, {"EMAIL", Text, 2}}, {}},
    };
}

std::vector<SchemaTable> inventory_views()
{
    return {
        {"IC0210", {{"CATEGORY"}, {"DESC"}}, {}},
        {"IC0274", {
            {"CUSTNO"}, {"ITEMNO"}, {"PRICELIST"}, {"STARTDATE", IsoDate}, {"EXPIRE", IsoDate}, {"PRICETYPE", Integer},
            {"CALCPRICE", Real}, {"FIXPRICE", Real}, {"COSTMETHOD", Integer}, {"PLUSPER", Real}, {"PLUSAMT", Real}},
            {}},
        {"IC0290", {
            {"ITEMNO"}, {"LOCATION"}, {"AQTYONHAND", Real}, {"QTYSALORDR", Real}, {"STDCOST", Real},
            {"RECENTCOST", Real}, {"AVGCOST", Real}, {"LASTCOST", Real}, {"COST", Real, 2}}, {}},
        {"IC0310", {
            {"ITEMNO"}, {"FMTITEMNO"}, {"COMMODIM"}, {"DESC"}, {"DEFPRICLST"}, {"CATEGORY"}, {"STOCKUNIT"}}, {}},
        {"IC0330", {{"ITEMNO"}, {"AUTHORITY"}, {"SALESTAXCL"}}, {}},
        {"IC0370", {{"LOCATION"}, {"DESC"}}, {}},
        {"IC0380", {
            {"WEIGHTUNIT"}, {"HYHEN", Integer}, {"FWDSLASH", Integer}, {"BCKSLASH", Integer}, {"ASTERISK", Integer},
            {"PERIOD", Integer}, {"LFTPARENS", Integer}, {"RGTPARENS", Integer}, {"POUNDSGN", Integer}}, {}},
        {"IC0390", {{"PRICELIST"}, {"DESC"}}, {}},
        {"IC0480", {
            {"CURRENCY"}, {"ITEMNO"}, {"PRICELIST"}, {"PRICETYPE", Integer}, {"PRICEBASE", Integer},
            {"PRICEFMT", Integer}, {"BASEPRICE", Real}, {"DBASEPRICE", Real}, {"MARKUPCOST", Real},
            {"PRCNTLVL", Real, 5}, {"AMOUNTLVL", Real, 5}, {"PRICEQTY", Real, 5}, {"SALESTART", IsoDate},
            {"SALEEND", IsoDate}, {"SALEPRICE", Real}, {"DSALESTART", IsoDate}, {"DSALEEND", IsoDate},
            {"DSALEPRICE", Real}, {"BASEUNIT"}, {"DBASEUNIT"}, {"BASECONV", Real}, {"DBASECONV", Real}}, {}},
        {"IC0750", {{"ITEMNO"}, {"UNIT"}, {"FACTOR", Real}}, {}},
    };
}

std::vector<SchemaTable> other_views()
{
    return {
        {"MW0200", {{"CTYPE", Integer}, {"CCODE"}, {"MANF", Any, 8}}, {}, {{"CCODE", "CTYPE"}}},
        {"OE0440", {{"CURRENCY"}, {"MISCCHARGE"}, {"DESC"}, {"MISCACCT"}, {"MISCACDESC"}}, {}},
        {"OE0460", {{"CURRENCY"}, {"MISCCHARGE"}}, {}},
        {"TX0003", {{"GROUPID"}, {"DESC"}, {"AUTHORITY", Text, 5}, {"TAXABLE", Integer, 5}}, {}},
        {"TX0004", {{"AUTHORITY"}, {"TTYPE", Integer}, {"BUYERCLASS", Integer}, {"ITEMRATE", Real, 10}}, {}},
    };
}

std::vector<SchemaTable> company_tables()
{
    return {
        {"CompanyInfo", {
            {"CompanyID"}, {"Name"}, {"Address", Text, 4}, {"City"}, {"State"}, {"Zip"}, {"Country"},
            {"LocationType"}, {"LocationCode"}, {"Phone"}, {"Fax"}, {"Contact"}, {"CountryCode"}, {"HomeCurrency"},
            {"Multicurrency", Integer}, {"PhoneFormat", Integer}}, {}},
        {"CurrencyInfo", {
            {"Code"}, {"Symbol"}, {"ThousandSeparator"}, {"DecimalSeparator"}, {"Decimals", Integer},
            {"SymbolPosition", Integer}, {"NegativeDisplay", Integer}}, {}},
        {"ActiveApplications", {{"Seq", Integer}, {"AppID"}, {"AppVersion"}}, {}},
    };
}
// clang-format on

void add_key_lookup(SchemaTable& table)
{
    const auto key = accounting::key_columns(table.name);
    if (!key.empty()) table.lookups.insert(table.lookups.begin(), {key.begin(), key.end()});
}

}  // namespace

std::vector<SchemaTable> accounting_tables()
{
    std::vector<SchemaTable> schema;
    for (const auto& part : {receivables_views(), inventory_views(), other_views(), company_tables()}) {
        schema.insert(schema.end(), part.begin(), part.end());
    }
    for (auto& table : schema) add_key_lookup(table);
    return schema;
}

}  // namespace velora::stores
