#pragma once

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "gateway/view_reading.h"
#include "reports/company_block.h"
#include "reports/pipe_layout.h"

namespace velora {

/// A customer that was found, in one of its two places.
struct CustomerSource {
    const CompanyInfo& company;
    const OpenedView* view = nullptr;  ///< on its row of the accounting system,
    const Rows* own = nullptr;         ///< or on that of the product's own customers

    /// The field of the one, or the column of the other.
    [[nodiscard]] Value cell(std::string_view field, std::string_view column) const
    {
        return view != nullptr ? view->field(field) : own->value(column);
    }
};

/// The 16 fields of a quote's customer, the quote's own words on it left aside.
std::span<const Column<CustomerSource>> customer_columns();

/// A text of the customer, trimmed.
template <ColumnName Field, ColumnName Own>
Outcome customer_text(CustomerSource& customer)
{
    const Value cell = customer.cell(Field.text, Own.text);
    return cell.is_null() ? Outcome::failed(fault::kNull) : Outcome(trimmed_text(cell));
}

/// Finds the customer of one quote after the other and works its fields out. A customer that was found is kept for
/// the quotes behind; one that is nowhere leaves its fields empty.
class QuoteCustomers {
public:
    QuoteCustomers(SessionState& state, const Section<CustomerSource>& fields) : state_(state), fields_(fields) {}

    /// The values of the fields for the customer of the quote's row; none where there is no such customer.
    /// @throws Fault 94 for a null in what names the customer
    [[nodiscard]] const std::vector<Value>& of(const QueryRow& quote);

private:
    using Values = std::vector<Value>;

    [[nodiscard]] Values find_in_accounting(const std::string& id) const;
    [[nodiscard]] Values find_own(const std::string& id) const;
    [[nodiscard]] Values worked_out(CustomerSource customer) const;

    SessionState& state_;
    const Section<CustomerSource>& fields_;
    std::unordered_map<std::string, Values> found_;  // by place and id
};

}  // namespace velora
