#include "forms/controls/month_view.h"

#include "forms/controls/control_visitor.h"

namespace velora::forms {

void MonthView::set_date(const DateTime& date)
{
    date_ = date;
    changed.tell();
}

void MonthView::pick(const DateTime& date)
{
    set_date(date);
    date_click.fire();
}

void MonthView::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

}  // namespace velora::forms
