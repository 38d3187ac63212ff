#pragma once

#include <optional>

#include "forms/controls/buttons.h"
#include "forms/controls/control_array.h"
#include "forms/controls/form.h"
#include "forms/controls/lists.h"
#include "forms/controls/month_view.h"
#include "session/session_state.h"

namespace velora::forms {

class FormDesk;

/// The report selection form: a kind from the menu, a report of the kind's list, the criteria that it needs, and then
/// to paper, to a window, to a file or by e-mail.
class frmReport final : public Form {
public:
    explicit frmReport(FormDesk& desk);
    void load() override;
    [[nodiscard]] Control* first_focus() override { return &lstReports; }

    // Frames first; what stands in one names it. Index 0 stands on fraOverview, index 1 on fraOther.
    Frame fraQuote{*this, "fraQuote"};
    Frame fraOrder{*this, "fraOrder", &fraQuote};
    Frame fraOverview{*this, "fraOverview"};
    Frame fraOther{*this, "fraOther"};

    ListBox lstReports{*this, "lstReports"};
    TextBox tbxQuote{*this, "tbxQuote", &fraQuote};
    Button lvbQuote{*this, "lvbQuote", &fraQuote};
    ListView lvwQuote{*this, "lvwQuote", &fraQuote};
    CheckBox chkPickSlip{*this, "chkPickSlip", &fraOrder};
    CheckBox chkConfirm{*this, "chkConfirm", &fraOrder};

    ControlArray<OptionButton> optAll{*this, "optAll", {&fraOverview, &fraOther}};
    ControlArray<OptionButton> optDates{*this, "optDates", {&fraOverview, &fraOther}};
    ControlArray<Label> lblFrom{*this, "lblFrom", {&fraOverview, &fraOther}};
    ControlArray<TextBox> tbxFrom{*this, "tbxFrom", {&fraOverview, &fraOther}};
    ControlArray<Button> lvbFrom{*this, "lvbFrom", {&fraOverview, &fraOther}};
    ControlArray<Label> lblTo{*this, "lblTo", {&fraOverview, &fraOther}};
    ControlArray<TextBox> tbxTo{*this, "tbxTo", {&fraOverview, &fraOther}};
    ControlArray<Button> lvbTo{*this, "lvbTo", {&fraOverview, &fraOther}};
    ControlArray<DropDown> cboFrom{*this, "cboFrom", {&fraOverview, &fraOther}};
    ControlArray<Label> lblCustomer{*this, "lblCustomer", {&fraOverview, &fraOther}};
    ControlArray<TextBox> tbxCustomer{*this, "tbxCustomer", {&fraOverview, &fraOther}};
    ControlArray<Button> lvbCustomer{*this, "lvbCustomer", {&fraOverview, &fraOther}};
    ControlArray<Label> lblCompany{*this, "lblCompany", {&fraOverview, &fraOther}};
    DropDown cboStatus{*this, "cboStatus", &fraOverview};
    Label lblLost{*this, "lblLost", &fraOverview};
    DropDown cboLost{*this, "cboLost", &fraOverview};

    Label lblNoCriteria{*this, "lblNoCriteria"};
    MonthView mvwReport{*this, "mvwReport"};
    Button lvbClose{*this, "lvbClose"};

    ControlArray<MenuEntry> mnuFileSub{*this, "mnuFileSub", 9};
    ControlArray<MenuEntry> mnuReportSub{*this, "mnuReportSub", 12};
    ControlArray<MenuEntry> mnuOptionSub{*this, "mnuOptionSub", 6};
    ControlArray<MenuEntry> mnuHelpSub{*this, "mnuHelpSub", 3};
    ControlArray<MenuEntry> mnuPopupSub{*this, "mnuPopupSub", 15};
    ToolButton tlbPreview{*this, "tlbReport/Preview"};
    ToolButton tlbPrint{*this, "tlbReport/Print"};
    ToolButton tlbExport{*this, "tlbReport/Export"};
    ToolButton tlbEmail{*this, "tlbReport/Email"};
    ToolButton tlbQuote{*this, "tlbReport/Quote"};
    ToolButton tlbHelp{*this, "tlbReport/Help"};

    // The list
    void Setup_Form();
    void Load_ReportList();
    void Remove_Report();
    /// What the dialog that adds a report calls: the name is on the list now.
    void report_added(const std::string& name);
    /// A list file that could not be read to its end is never written over. @throws Fault 75
    void require_understood_list();

private:
    // frm_report.cpp: what is set when the form is made and loaded
    void name_controls();
    void wire_menus();
    void wire_controls();
    void wire_criteria(size_t index);
    void Form_Load();
    void hide_what_only_chief_may();
    void show_order_reports_in_use();

    // frm_report_menus.cpp
    void mnuFileSub_Click(size_t index);
    void mnuReportSub_Click(size_t index);
    void mnuOptionSub_Click(size_t index);
    void mnuHelpSub_Click(size_t index);
    void mnuPopupSub_Click(size_t index);
    void export_and_tell();
    void export_and_email();
    void tell_export_failure();
    void Print_Report(bool pPreview, bool pExportIt);
    bool Check_QuantAsInt();

    // frm_report_list.cpp
    void Reset_Frames();
    void clear_criteria();
    void show_kind();
    void lstReports_Click();
    void Show_CriteriaFrame(int16_t pType);
    void Check_ReportState();
    void Enable_Output(bool pEnable);
    [[nodiscard]] bool output_allowed();
    [[nodiscard]] bool customer_is_chosen(size_t index) const;
    [[nodiscard]] bool has_report() const { return lstReports.selected() >= 0; }
    /// The entry of the selected row. @throws Fault 9 when list and rows have parted ways
    [[nodiscard]] const ReportListEntry& entry() const;

    // frm_report_quote.cpp
    bool tbxQuote_Validate();
    void lvbQuote_Click();
    void drop_quote();
    bool Valid_QuoteNumber(const std::string& pNumber);
    void Get_QuoteInformation(bool pByID, int32_t pQuoteID, const std::string& pNumber);
    void show_quote(const Recordset& row);

    // frm_report_customer.cpp
    void cboFrom_Click(size_t index);
    void cboStatus_Click();
    void cboLost_Click();
    void Enable_Customer(size_t index, bool pEnable);
    bool tbxCustomer_Validate(size_t index);
    bool take_customer(size_t index, const std::string& number);
    void lvbCustomer_Click(size_t index);
    void Find_VeloraCustomer(size_t index);
    void Find_AccPacCustomer(size_t index);
    void Get_VLReportCustomer(size_t index, bool pByID, int32_t pCustomerID, const std::string& pNumber);
    void Get_APReportCustomerInfo(size_t index, const std::string& pNumber);
    void customer_found();

    // frm_report_dates.cpp
    void Enable_Dates(size_t index, bool pEnable);
    void open_month_view(size_t index, bool from);
    void mvwReport_DateClick();
    void keep_range(size_t index, bool from_was_set);
    [[nodiscard]] DateTime date_in_box(const TextBox& box);

    FormDesk& desk_;
    SessionState& state_;
    int32_t m_CustomerID = 0;
    std::string m_AccPacID;
    int16_t m_StatusID = 0;
    int16_t m_LostID = 0;
    bool m_Changed = false;
    bool m_DateFrom = false;
    bool list_understood_ = true;
};

}  // namespace velora::forms
