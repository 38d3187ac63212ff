#include "reports/customer_list.h"

#include <array>

#include "reports/company_block.h"
#include "reports/run_frame.h"
#include "session/error_messengers.h"
#include "session/query.h"

namespace velora {

namespace {

constexpr std::array<int32_t, 2> kTolerated{fault::kSubscript, fault::kNull};

/// How a column of `Customer` goes into its field.
enum class Rule : uint8_t {
    AsStored,    ///< a null is a fault that drops the field
    UnlessNull,  ///< a null is no fault
    Phone,
    DiscountLevel,
};

struct CustomerColumn {
    std::string_view name;
    ado::Type type;
    uint16_t size;
    std::string_view source;
    Rule rule;
};

// clang-format off
constexpr auto kCustomerColumns = std::to_array<CustomerColumn>({
    {"Customer Number",        ado::VarChar,  20, "CustomerNumber", Rule::AsStored},
    {"Short Name",             ado::VarChar,  20, "cuShortName",    Rule::AsStored},
    {"Full Name",              ado::VarChar,  60, "cuFullName",     Rule::AsStored},
    {"Address 1",              ado::VarChar,  60, "cuAddress1",     Rule::AsStored},
    {"Address 2",              ado::VarChar,  60, "cuAddress2",     Rule::AsStored},
    {"Address 3",              ado::VarChar,  60, "cuAddress3",     Rule::UnlessNull},
    {"Address 4",              ado::VarChar,  60, "cuAddress4",     Rule::UnlessNull},
    {"City",                   ado::VarChar,  30, "cuCity",         Rule::AsStored},
    {"Prov/State",             ado::VarChar, 320, "cuProvState",    Rule::AsStored},  // wider than any other: definitions rely on it
    {"Country",                ado::VarChar,  30, "cuCountry",      Rule::AsStored},
    {"PC/Zip Code",            ado::VarChar,  20, "cuPCZip",        Rule::AsStored},
    {"Phone",                  ado::VarChar,  30, "cuPhone",        Rule::Phone},
    {"Fax",                    ado::VarChar,  30, "cuFax",          Rule::Phone},
    {"Contact",                ado::VarChar,  60, "cuContact",      Rule::AsStored},
    {"Contact Email",          ado::VarChar,  50, "cuEmail1",       Rule::AsStored},
    {"Customer Email",         ado::VarChar,  50, "cuEmail2",       Rule::AsStored},
    {"Group Code",             ado::VarChar,  15, "cuGroupCode",    Rule::AsStored},
    {"Price List",             ado::VarChar,  15, "cuPriceList",    Rule::AsStored},
    {"Account Set",            ado::VarChar,  15, "cuAccountSet",   Rule::AsStored},
    {"Terms Code",             ado::VarChar,  15, "cuTermsCode",    Rule::AsStored},
    {"Tax Group",              ado::VarChar,  15, "cuTaxGroup",     Rule::AsStored},
    {"Customer Discount Type", ado::VarChar,  10, "cuCustType",     Rule::DiscountLevel},
    {"Rate Type",              ado::VarChar,  10, "cuRateType",     Rule::UnlessNull},
    {"Tax Class 1",            ado::VarChar,  20, "cuTaxClass1",    Rule::AsStored},
    {"Tax Class 2",            ado::VarChar,  20, "cuTaxClass2",    Rule::AsStored},
    {"Tax Class 3",            ado::VarChar,  20, "cuTaxClass3",    Rule::AsStored},
    {"Tax Class 4",            ado::VarChar,  20, "cuTaxClass4",    Rule::AsStored},
    {"Tax Class 5",            ado::VarChar,  20, "cuTaxClass5",    Rule::AsStored},
    {"Registration No 1",      ado::VarChar,  20, "cuRegNumber1",   Rule::AsStored},
    {"Registration No 2",      ado::VarChar,  20, "cuRegNumber2",   Rule::AsStored},
    {"Registration No 3",      ado::VarChar,  20, "cuRegNumber3",   Rule::AsStored},
    {"Registration No 4",      ado::VarChar,  20, "cuRegNumber4",   Rule::AsStored},
    {"Registration No 5",      ado::VarChar,  20, "cuRegNumber5",   Rule::AsStored},
});
// clang-format on
static_assert(well_formed(kCustomerColumns));

Outcome by_rule(Rule rule, const Value& value, const CompanyInfo& company)
{
    if (rule == Rule::Phone) return phone_text(company, value);
    return value.is_null() ? Outcome::failed(fault::kNull) : discount_letter(to_number(value));
}

class CustomerPipe {
public:
    CustomerPipe(SessionState& state, Rows& rows, DataPipeRecordset& pipe)
        : state_(state), rows_(rows), pipe_(pipe), statements_(state, kTolerated)
    {
        for (size_t at = 0; at < kCustomerColumns.size(); ++at) sources_[at] = rows.column(kCustomerColumns[at].source);
    }

    void fill()
    {
        CompanyBlock company{accounting(state_).Company(), false};
        for (size_t number = 1; !rows_.at_eof(); rows_.MoveNext(), ++number) {
            statements_.at_row(number);
            pipe_.AddNew();
            if (number == 1) {
                write_columns(pipe_, statements_, 0, list_company_columns(), company);
                carry_fields(pipe_, 0, list_company_columns().size());
            }
            write_customer(company.company);
            pipe_.Update();
            if (state_.ports.user != nullptr && number % 4096 == 0) state_.ports.user->progress(number, 0);
        }
    }

private:
    void write_customer(const CompanyInfo& company)
    {
        const size_t first = list_company_columns().size();
        for (size_t at = 0; at < kCustomerColumns.size(); ++at) {
            const auto& column = kCustomerColumns[at];
            const Value& value = rows_.value(sources_[at]);
            if (column.rule == Rule::AsStored) {
                statements_.settle(column.name, pipe_.put(first + at, value));
            } else if (column.rule == Rule::UnlessNull) {
                if (!value.is_null()) statements_.settle(column.name, pipe_.put(first + at, value));
            } else {
                statements_.attempt(column.name, [&] {
                    write_field(pipe_, statements_, first + at, by_rule(column.rule, value, company));
                });
            }
        }
    }

    SessionState& state_;
    Rows& rows_;
    DataPipeRecordset& pipe_;
    Statements statements_;
    std::array<size_t, kCustomerColumns.size()> sources_{};
};

std::unique_ptr<Rows> open_customers(SessionState& state)
{
    return stream_query(
        state, {Command::statement("SELECT * FROM [Customer] WHERE ([Exported] = 0) ORDER BY [CustomerNumber];"),
                Command::statement("SELECT * FROM Customer WHERE (Exported = 0) ORDER BY CustomerNumber")});
}

RunEnd no_data(SessionState& state)
{
    tell(state, {"No Data Found", "There are no Customers in the database to place on the report.", Icon::Information});
    return RunEnd::NoData;
}

}  // namespace

RunEnd Print_CustomerList(SessionState& state, const std::string& pReportString, bool pPreview, bool pExportIt)
{
    return run_report(state, "Print_CustomerList", [&] {
        open_definition(state, pReportString);
        DataPipeRecordset pipe(customer_list_fields(), state.log);
        const auto rows = open_customers(state);
        if (!move_to_first(*rows)) return no_data(state);
        CustomerPipe(state, *rows, pipe).fill();
        rows->Close();
        attach_pipe(state, pipe);
        choose_printer(state, printer_setting(state));
        return route_output(state, {pReportString, pPreview, pExportIt}, dated_name(state, "Customer List"));
    });
}

std::vector<PipeField> customer_list_fields()
{
    std::vector<PipeField> fields;
    append_fields(fields, list_company_columns());
    append_fields(fields, std::span<const CustomerColumn>(kCustomerColumns));
    return fields;
}

}  // namespace velora
