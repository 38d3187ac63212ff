#include "reports/customer_list.h"

#include <array>

#include "reports/company_block.h"
#include "reports/list_report.h"
#include "reports/pipe_writer.h"
#include "session/query.h"

namespace velora {

namespace {

const ListReport kList{.procedure = "Print_CustomerList",
                       .nothing = "There are no Customers in the database to place on the report.",
                       .export_name = "Customer List"};

/// The customer in hand.
struct CustomerRow {
    const CompanyInfo& company;
    QueryRow row;
};

template <ColumnName Name>
Outcome phone(CustomerRow& r)
{
    return phone_text(r.company, r.row.at<Name>());
}

Outcome discount_type(CustomerRow& r)
{
    const Value& level = r.row.at<"cuCustType">();
    return level.is_null() ? Outcome::failed(fault::kNull) : discount_letter(to_number(level));
}

// clang-format off
constexpr auto kCustomerColumns = std::to_array<Column<CustomerRow>>({
    // name                     type         size  value
    {"Customer Number",        ado::VarChar,  20, as_stored<"CustomerNumber">},
    {"Short Name",             ado::VarChar,  20, as_stored<"cuShortName">},
    {"Full Name",              ado::VarChar,  60, as_stored<"cuFullName">},
    {"Address 1",              ado::VarChar,  60, as_stored<"cuAddress1">},
    {"Address 2",              ado::VarChar,  60, as_stored<"cuAddress2">},
    {"Address 3",              ado::VarChar,  60, unless_null<"cuAddress3">},
    {"Address 4",              ado::VarChar,  60, unless_null<"cuAddress4">},
    {"City",                   ado::VarChar,  30, as_stored<"cuCity">},
    {"Prov/State",             ado::VarChar, 320, as_stored<"cuProvState">},  // wider than any other: definitions rely on it
    {"Country",                ado::VarChar,  30, as_stored<"cuCountry">},
    {"PC/Zip Code",            ado::VarChar,  20, as_stored<"cuPCZip">},
    {"Phone",                  ado::VarChar,  30, phone<"cuPhone">},
    {"Fax",                    ado::VarChar,  30, phone<"cuFax">},
    {"Contact",                ado::VarChar,  60, as_stored<"cuContact">},
    {"Contact Email",          ado::VarChar,  50, as_stored<"cuEmail1">},
    {"Customer Email",         ado::VarChar,  50, as_stored<"cuEmail2">},
    {"Group Code",             ado::VarChar,  15, as_stored<"cuGroupCode">},
    {"Price List",             ado::VarChar,  15, as_stored<"cuPriceList">},
    {"Account Set",            ado::VarChar,  15, as_stored<"cuAccountSet">},
    {"Terms Code",             ado::VarChar,  15, as_stored<"cuTermsCode">},
    {"Tax Group",              ado::VarChar,  15, as_stored<"cuTaxGroup">},
    {"Customer Discount Type", ado::VarChar,  10, discount_type},
    {"Rate Type",              ado::VarChar,  10, unless_null<"cuRateType">},
    {"Tax Class 1",            ado::VarChar,  20, as_stored<"cuTaxClass1">},
    {"Tax Class 2",            ado::VarChar,  20, as_stored<"cuTaxClass2">},
    {"Tax Class 3",            ado::VarChar,  20, as_stored<"cuTaxClass3">},
    {"Tax Class 4",            ado::VarChar,  20, as_stored<"cuTaxClass4">},
    {"Tax Class 5",            ado::VarChar,  20, as_stored<"cuTaxClass5">},
    {"Registration No 1",      ado::VarChar,  20, as_stored<"cuRegNumber1">},
    {"Registration No 2",      ado::VarChar,  20, as_stored<"cuRegNumber2">},
    {"Registration No 3",      ado::VarChar,  20, as_stored<"cuRegNumber3">},
    {"Registration No 4",      ado::VarChar,  20, as_stored<"cuRegNumber4">},
    {"Registration No 5",      ado::VarChar,  20, as_stored<"cuRegNumber5">},
});
// clang-format on
static_assert(well_formed(kCustomerColumns));

struct CustomerFields : PipeLayout {
    Section<CompanyBlock> company = add(list_company_columns());
    Section<CustomerRow> customer = add(ColumnList<CustomerRow>(kCustomerColumns));
};

std::unique_ptr<Rows> customers_to_list(SessionState& state)
{
    return stream_query(
        state, {Command::statement("SELECT * FROM [Customer] WHERE ([Exported] = 0) ORDER BY [CustomerNumber];"),
                Command::statement("SELECT * FROM Customer WHERE (Exported = 0) ORDER BY CustomerNumber")});
}

void write_rows(ReportRun& run, const CustomerFields& fields, Rows& rows, DataPipeRecordset& pipe)
{
    CompanyBlock company{accounting(run.state()).Company(), false};
    CustomerRow customer{company.company, QueryRow(rows)};
    PipeWriter writer(run.state(), pipe, run.statements());
    for (; !rows.at_eof(); rows.MoveNext()) {
        writer.row([&] {
            writer.write_once(fields.company, company);
            writer.write(fields.customer, customer);
        });
    }
}

}  // namespace

RunEnd Print_CustomerList(SessionState& state, const std::string& pReportString, bool pPreview, bool pExportIt)
{
    const CustomerFields fields;
    return run_list(state, kList, {pReportString, pPreview, pExportIt}, fields.fields(), customers_to_list,
                    [&](ReportRun& run, Rows& rows, DataPipeRecordset& pipe) { write_rows(run, fields, rows, pipe); });
}

std::vector<PipeField> customer_list_fields()
{
    return CustomerFields().fields();
}

}  // namespace velora
