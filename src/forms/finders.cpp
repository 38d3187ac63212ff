#include "forms/finders.h"

#include <charconv>

#include "forms/form_desk.h"
#include "forms/frm_finder.h"

namespace velora::forms {

namespace {

/// What the person chose, by a form or by whoever answers in its place; blank for nothing.
std::string find(FormDesk& desk, FinderSort sort, const std::string& caption, std::unique_ptr<FinderRows> rows,
                 std::string_view search)
{
    if (std::string answer; desk.answer_finder && desk.answer_finder(sort, answer)) return answer;
    const auto form = std::make_shared<frmFinder>(desk.state(), caption, std::move(rows), std::string(search));
    desk.show_modal(form);
    if (desk.while_waiting) desk.while_waiting();  // what is pending happens before the result is read
    return form->chosen();
}

int32_t id_of(const std::string& text)
{
    int32_t id = 0;
    std::from_chars(text.data(), text.data() + text.size(), id);
    return id;
}

}  // namespace

void QuoteFinder::show_quotes(int mode)
{
    SessionState& state = desk_.state();
    id_ = id_of(find(desk_, FinderSort::Quote, "Quote Finder", quote_rows(state, mode == kOrders), ""));
}

void QuoteFinder::show_customers()
{
    id_ = id_of(find(desk_, FinderSort::Customer, "Customer Finder", customer_rows(desk_.state()), ""));
}

void AccpacCustomerFinder::show(std::string_view number)
{
    SessionState& state = desk_.state();
    number_ = find(desk_, FinderSort::AccountingCustomer, "Customer Finder", accounting_customer_rows(state), number);
}

}  // namespace velora::forms
