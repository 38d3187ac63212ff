#include "forms/frm_report.h"
#include "platform/region.h"
#include "session/value_helpers.h"

namespace velora::forms {

namespace {

constexpr int32_t kDaysBack = 30;

std::string shown(SessionState& state, const DateTime& date)
{
    Value value(date);
    return Display_Date(state, value);
}

}  // namespace

void frmReport::Enable_Dates(size_t index, bool pEnable)
{
    lblFrom[index].set_enabled(pEnable);
    tbxFrom[index].set_enabled(pEnable);
    lvbFrom[index].set_enabled(pEnable);
    lblTo[index].set_enabled(pEnable);
    tbxTo[index].set_enabled(pEnable);
    lvbTo[index].set_enabled(pEnable);
    for (TextBox* box : {&tbxFrom[index], &tbxTo[index]}) box->set_back(pEnable ? Back::Window : Back::Face);
    const DateTime day = today(state_);
    tbxFrom[index].set_text(pEnable ? shown(state_, {day.serial_day() - kDaysBack, 0}) : "");
    tbxTo[index].set_text(pEnable ? shown(state_, day) : "");
}

/// The date of a box; one without a date is the day of the run, as it is to the builders.
DateTime frmReport::date_in_box(const TextBox& box)
{
    std::string text = box.text();
    return Return_TBXDate(state_, text);
}

void frmReport::open_month_view(size_t index, bool from)
{
    m_DateFrom = from;
    TextBox& box = from ? tbxFrom[index] : tbxTo[index];
    mvwReport.beside = &box;
    mvwReport.set_date(date_in_box(box));
    mvwReport.set_visible(true);
    enter(mvwReport);
}

void frmReport::mvwReport_DateClick()
{
    // By the kind alone, also when the frame of that index is hidden; the focus then has nowhere to go back to.
    const size_t index = state_.gWhichReport == eRptOverviewQuotes ? 0 : 1;
    TextBox& box = m_DateFrom ? tbxFrom[index] : tbxTo[index];
    box.set_text(shown(state_, mvwReport.date()));
    keep_range(index, m_DateFrom);
    mvwReport.set_visible(false);
    m_Changed = false;
    enter(box);
}

/// A From that is later than To moves the other box to the date of the one that was set.
void frmReport::keep_range(size_t index, bool from_was_set)
{
    if (date_in_box(tbxFrom[index]) <= date_in_box(tbxTo[index])) return;
    if (from_was_set) {
        tbxTo[index].set_text(tbxFrom[index].text());
    } else {
        tbxFrom[index].set_text(tbxTo[index].text());
    }
}

}  // namespace velora::forms
