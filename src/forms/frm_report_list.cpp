#include <algorithm>

#include "forms/builder_call.h"
#include "forms/company_rules.h"
#include "forms/frm_report.h"
#include "forms/order_kinds.h"
#include "reports/kinds.h"
#include "reports/report_lists.h"
#include "session/error_messengers.h"
#include "values/text.h"

namespace velora::forms {

namespace {

constexpr Frame::Place kFramePlace{.top = 480, .left = 3480, .height = 4100};

std::string section_of(size_t number)
{
    return "Report #" + std::to_string(number);
}

/// Whether the company uses the order report of that type.
bool order_type_in_use(SessionState& state, int16_t type)
{
    switch (type) {
        case 7:
            return default_is(state, "mdUseDLRange", 1);
        case 8:
            return default_is(state, "mdPickingSlip", 1);
        case 9:
            return default_is(state, "mdConfirmation", 1);
        default:
            return false;
    }
}

int16_t type_of_row(SessionState& state, const std::string& section)
{
    return to_int16(Value(Read_ProfileString(state, section, "Type")));
}

}  // namespace

void frmReport::Setup_Form()
{
    with_failure_path(state_, ErrorMessenger, "frmReport.Setup_Form", [&] {
        Reset_Frames();
        Load_ReportList();
        clear_criteria();
        show_kind();
    });
}

void frmReport::Reset_Frames()
{
    for (Frame* frame : {&fraQuote, &fraOverview, &fraOther}) {
        frame->set_enabled(true);
        frame->set_visible(false);
        frame->set_place(kFramePlace);
    }
    lstReports.set_enabled(true);
}

void frmReport::Load_ReportList()
{
    lstReports.clear();
    state_.gReportList.clear();
    list_understood_ = false;
    const std::string number = Read_ProfileString(state_, "Reports", "Number");
    const int count = trimmed(number).empty() ? 0 : to_int16(Value(number));
    const bool orders = shares_order_list(state_.gWhichReport);
    for (int at = 1; at <= count; ++at) {
        const std::string section = section_of(static_cast<size_t>(at));
        if (orders && !order_type_in_use(state_, type_of_row(state_, section))) continue;
        // A row without a name stays as an empty entry, so that the rows of list and array part ways. It is meant.
        ReportListEntry& row = state_.gReportList.emplace_back();
        row.Name = Read_ProfileString(state_, section, "Name");
        if (trimmed(row.Name).empty()) continue;
        lstReports.add(row.Name);
        row.Location = Read_ProfileString(state_, section, "Location");
        row.Type = type_of_row(state_, section);
    }
    list_understood_ = true;
    if (lstReports.count() == 1) return lstReports.select(0);
    Check_ReportState();
}

void frmReport::clear_criteria()
{
    tbxQuote.set_text("");
    chkPickSlip.set_value(0);
    chkConfirm.set_value(0);
    lvwQuote.clear();
    for (size_t index = 0; index < 2; ++index) {
        optAll[index].set_value(true);
        cboFrom[index].select(0);
    }
    if (cboStatus.count() > 0) cboStatus.select(0);
    if (cboLost.count() > 0) cboLost.select(0);
}

/// Caption and frames of the kind. The number of the order menu is none of them, so that the form then carries the
/// caption of custom reports and shows no frame before the first click on a report. It is meant.
void frmReport::show_kind()
{
    const ReportKind& kind = report_kind(state_.gWhichReport);
    const bool all_orders = state_.gWhichReport == eRptAllOrder;
    const bool orders = all_orders || (shares_order_list(kind.which));
    const ReportKind& shown = all_orders ? report_kind(eRptOrderChecklist) : kind;
    set_caption(std::string(shown.caption));
    if (kind.which == eRptQuote || orders) {
        fraQuote.set_caption(std::string(shown.criteria_caption));
        fraQuote.set_visible(true);
        fraOrder.set_visible(orders);
        if (state_.gQuoteID > 0) Get_QuoteInformation(true, state_.gQuoteID, "");
    } else if (kind.criteria.status) {
        fraOverview.set_visible(true);
    } else if (kind.criteria.period) {
        fraOther.set_caption(std::string(shown.criteria_caption));
        fraOther.set_visible(true);
    }
}

const ReportListEntry& frmReport::entry() const
{
    const auto row = static_cast<size_t>(lstReports.selected());
    if (row >= state_.gReportList.size()) throw fault::subscript("gReportList");
    return state_.gReportList[row];
}

void frmReport::lstReports_Click()
{
    mnuFileSub[6].set_enabled(has_report());
    mnuPopupSub[4].set_enabled(has_report());
    if (!has_report()) return Enable_Output(false);
    Show_CriteriaFrame(entry().Type);
    Check_ReportState();
}

void frmReport::Show_CriteriaFrame(int16_t pType)
{
    const bool order = pType == 7 || pType == 8 || pType == 9;
    const bool quote = pType == 1 || order;
    const bool graph = pType == 5 || pType == 6;
    if (quote) {
        fraQuote.set_caption(order ? "Order Report Criteria" : "Quote Criteria");
        fraOrder.set_visible(order);
    }
    if (graph) fraOther.set_caption(pType == 5 ? "Win/Loss Criteria" : "Lost Reason Criteria");
    // Any other type shows nothing, and so the back order type hides its own criteria. It is meant.
    fraQuote.set_visible(quote);
    fraOverview.set_visible(pType == 2);
    fraOther.set_visible(graph);
}

bool frmReport::customer_is_chosen(size_t index) const
{
    switch (cboFrom[index].selected()) {
        case 1:
            return !trimmed(m_AccPacID).empty();
        case 2:
            return m_CustomerID != 0;
        default:
            return true;
    }
}

bool frmReport::output_allowed()
{
    if (!has_report()) return false;
    switch (entry().Type) {
        case 1:
        case 7:
            return state_.gQuoteID != 0;
        case 2:
            return customer_is_chosen(0);
        case 5:
        case 6:
            return customer_is_chosen(1);
        case 8:
            return state_.gQuoteID != 0 && (chkPickSlip.value() != 1 || default_is(state_, "mdPSReprint", 1));
        case 9:
            return state_.gQuoteID != 0 && (chkConfirm.value() != 1 || default_is(state_, "mdOCReprint", 1));
        default:
            return true;
    }
}

void frmReport::Check_ReportState()
{
    Enable_Output(output_allowed());
}

void frmReport::Enable_Output(bool pEnable)
{
    for (ToolButton* button : {&tlbPreview, &tlbPrint, &tlbExport, &tlbEmail}) button->set_enabled(pEnable);
    for (size_t index = 0; index < 4; ++index) mnuFileSub[index].set_enabled(pEnable);
    for (size_t index = 0; index < 2; ++index) mnuPopupSub[index].set_enabled(pEnable);
}

void frmReport::Remove_Report()
{
    with_failure_path(state_, ErrorMessenger, "frmReport.Remove_Report", [&] {
        require_understood_list();
        const int removed = lstReports.selected();
        lstReports.remove(removed);
        std::vector<ReportListEntry> rest = state_.gReportList;
        if (static_cast<size_t>(removed) >= rest.size()) throw fault::subscript("gReportList");
        const size_t sections = rest.size();
        rest.erase(rest.begin() + removed);
        state_.gReportList = std::move(rest);
        replace_report_list(state_, sections);
        if (sections <= 1) return;  // frames and commands stay as they are, on purpose
        Setup_Form();
        Check_ReportState();
    });
}

void frmReport::require_understood_list()
{
    if (list_understood_) return;
    throw Fault(fault::kPathAccess, "The report list " + INIFile(state_, state_.gWhichReport) +
                                        " was not understood and is left as it is. Correct the numbers in it, "
                                        "then choose the kind of report again.");
}

void frmReport::report_added(const std::string& name)
{
    lstReports.add(name);
    lstReports.set_enabled(true);
}

}  // namespace velora::forms
