#include "reports/quote_customers.h"

#include <array>

#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr size_t kMostKept = 10'000;  // a list over all customers must not fill the memory with them

/// In the mask if the company wants it so, else trimmed.
template <ColumnName Field, ColumnName Own>
Outcome customer_phone(CustomerSource& customer)
{
    const Value cell = customer.cell(Field.text, Own.text);
    return cell.is_null() ? Outcome::failed(fault::kNull) : phone_text(customer.company, Value(trimmed_text(cell)));
}

// clang-format off
constexpr auto kCustomerColumns = std::to_array<Column<CustomerSource>>({
    // name                     type         size  of the accounting system, of the product's own
    {"Customer Number",        ado::VarChar,  20, customer_text<"IDCUST", "CustomerNumber">},
    {"Customer Short Name",    ado::VarChar,  20, customer_text<"TEXTSNAM", "cuShortName">},
    {"Customer Full Name",     ado::VarChar,  60, customer_text<"NAMECUST", "cuFullName">},
    {"Customer Address 1",     ado::VarChar,  60, customer_text<"TEXTSTRE1", "cuAddress1">},
    {"Customer Address 2",     ado::VarChar,  60, customer_text<"TEXTSTRE2", "cuAddress2">},
    {"Customer Address 3",     ado::VarChar,  60, customer_text<"TEXTSTRE3", "cuAddress3">},
    {"Customer Address 4",     ado::VarChar,  60, customer_text<"TEXTSTRE4", "cuAddress4">},
    {"Customer City",          ado::VarChar,  30, customer_text<"NAMECITY", "cuCity">},
    {"Customer Prov/State",    ado::VarChar,  30, customer_text<"CODESTTE", "cuProvState">},
    {"Customer Country",       ado::VarChar,  30, customer_text<"CODECTRY", "cuCountry">},
    {"Customer PC/Zip Code",   ado::VarChar,  20, customer_text<"CODEPSTL", "cuPCZip">},
    {"Customer Phone",         ado::VarChar,  30, customer_phone<"TEXTPHON1", "cuPhone">},
    {"Customer Fax",           ado::VarChar,  30, customer_phone<"TEXTPHON2", "cuFax">},
    {"Contact",                ado::VarChar,  60, customer_text<"NAMECTAC", "cuContact">},
    {"Contact Email",          ado::VarChar,  50, customer_text<"EMAIL1", "cuEmail1">},
    {"Customer Group Code",    ado::VarChar,  15, customer_text<"IDGRP", "cuGroupCode">},
});
// clang-format on
static_assert(well_formed(kCustomerColumns));

}  // namespace

std::span<const Column<CustomerSource>> customer_columns()
{
    return kCustomerColumns;
}

const std::vector<Value>& QuoteCustomers::of(const QueryRow& quote)
{
    const bool own = to_number(quote.at<"CustFrom">()) != 0;
    const std::string id =
        own ? std::to_string(to_int32(quote.at<"CustomerID">())) : trimmed_text(quote.at<"AccPacID">());
    const std::string key = (own ? "V" : "A") + id;
    if (const auto known = found_.find(key); known != found_.end()) return known->second;
    if (found_.size() == kMostKept) found_.clear();
    return found_.emplace(key, own ? find_own(id) : find_in_accounting(id)).first->second;
}

QuoteCustomers::Values QuoteCustomers::find_in_accounting(const std::string& id) const
{
    OpenedView view(state_, "AR0024");
    view.browse("IDCUST = " + id);
    return view.fetch() ? worked_out({accounting(state_).Company(), &view}) : Values{};
}

QuoteCustomers::Values QuoteCustomers::find_own(const std::string& id) const
{
    const auto rows =
        stream_query(state_, {Command::statement("SELECT * FROM [Customer] WHERE ([CustomerID] = " + id + ");"),
                              Command::statement("SELECT * FROM Customer WHERE (CustomerID = " + id + ")")});
    Values values;
    if (move_to_first(*rows)) values = worked_out({accounting(state_).Company(), nullptr, &*rows});
    rows->Close();
    return values;
}

QuoteCustomers::Values QuoteCustomers::worked_out(CustomerSource customer) const
{
    Values values;
    for (const auto& column : fields_.columns) {
        const Outcome outcome = column.value(customer);
        values.push_back(outcome.fault() == 0 ? outcome.value() : Value());  // a null drops its field, row for row
    }
    return values;
}

}  // namespace velora
