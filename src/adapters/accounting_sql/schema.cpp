#include "adapters/accounting_sql/schema.h"

#include "adapters/accounting_sql/view_keys.h"
#include "adapters/sqlite_core/schema_writer.h"

namespace velora {

namespace {

using sqlite::SchemaColumn;
using sqlite::SchemaTable;
using enum sqlite::ColumnType;

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
        {"MW0200", {{"CTYPE", Integer}, {"CCODE"}, {"MANF", Any, 8}}, {"trim(\"CCODE\") COLLATE NOCASE, \"CTYPE\""}},
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

bool is_text(const SchemaTable& table, std::string_view column)
{
    for (const auto& candidate : table.columns) {
        if (candidate.name == column) return candidate.type == Text;
    }
    return false;
}

/// Text keys are indexed trimmed and without case, which is how filters compare them: a stored value with blanks
/// around it is found through the index too.
void add_key_index(SchemaTable& table)
{
    std::string columns;
    for (const auto key : accounting::key_columns(table.name)) {
        const std::string name = "\"" + std::string(key) + "\"";
        columns += (columns.empty() ? "" : ", ") + (is_text(table, key) ? "trim(" + name + ") COLLATE NOCASE" : name);
    }
    if (!columns.empty()) table.indexes.insert(table.indexes.begin(), columns);
}

}  // namespace

std::vector<SchemaTable> accounting_tables()
{
    std::vector<SchemaTable> schema;
    for (const auto& part : {receivables_views(), inventory_views(), other_views(), company_tables()}) {
        schema.insert(schema.end(), part.begin(), part.end());
    }
    for (auto& table : schema) add_key_index(table);
    return schema;
}

void create_accounting_schema(const std::string& path)
{
    sqlite::create_schema(path, accounting_tables());
}

}  // namespace velora
