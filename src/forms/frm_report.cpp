#include "forms/frm_report.h"

#include <array>
#include <span>

#include "forms/button_style.h"
#include "forms/company_rules.h"
#include "forms/form_desk.h"
#include "session/company.h"
#include "session/error_messengers.h"
#include "session/lists.h"
#include "session/value_helpers.h"
#include "values/text.h"

namespace velora::forms {

namespace {

constexpr int kNewerHeight = 5985;
constexpr int kOlderHeight = 5870;

struct Line {
    std::string_view caption;
    std::string_view shortcut = {};
};

// clang-format off
constexpr auto kFile = std::to_array<Line>({
    {"Print", "Ctrl+P"}, {"Preview"}, {"Export", "Ctrl+E"}, {"Email"}, {"-"}, {"Add Report"}, {"Remove Report"}, {"-"},
    {"Exit", "Ctrl+Q"}});
constexpr auto kReports = std::to_array<Line>({
    {"Quote"}, {"-"}, {"Overview Quotes"}, {"Customer List"}, {"Item List"}, {"Win-Loss Ratio Graph"},
    {"Lost Reason Ratio Graph"}, {"Order"}, {"Quote Expiration"}, {"Back Order Items"}, {"-"}, {"Custom Reports..."}});
constexpr auto kOptions = std::to_array<Line>({
    {"Select Printer"}, {"Default Reports"}, {"Export to file"}, {"Email Options"}, {"Transfer Log File"},
    {"Miscellaneous Options"}});
constexpr auto kHelp = std::to_array<Line>({{"Contents"}, {"-"}, {"Visit Morvane Website"}});
constexpr auto kPopup = std::to_array<Line>({
    {"Print"}, {"Preview..."}, {"-"}, {"Add Report"}, {"Remove Report"}, {"-"}, {"Quote"}, {"Overview Quotes"},
    {"Customer List"}, {"Item List"}, {"Win-Loss Ratio Graph"}, {"Lost Reason Ratio Graph"}, {"Order"},
    {"Quote Expiration"}, {"Custom Reports..."}});
// clang-format on

Menu menu_of(std::string caption, const ControlArray<MenuEntry>& entries, std::span<const Line> lines)
{
    Menu menu{std::move(caption), {}};
    for (size_t at = 0; at < lines.size(); ++at) {
        entries[at].set_caption(std::string(lines[at].caption));
        entries[at].shortcut = lines[at].shortcut;
        menu.entries.push_back(&entries[at]);
    }
    return menu;
}

}  // namespace

frmReport::frmReport(FormDesk& desk) : Form("frmReport"), desk_(desk), state_(desk.state())
{
    name_controls();
    wire_menus();
    wire_controls();
    for (size_t index = 0; index < 2; ++index) wire_criteria(index);
    fraOrder.set_enabled(false);  // its check boxes only show
    mvwReport.set_visible(false);
    mvwReport.set_date(today(state_));
}

void frmReport::name_controls()
{
    lstReports.set_label("Reports");
    tbxQuote.set_label("Quote Number");
    lvbQuote.set_tip("Quote Finder");
    lvwQuote.set_label("Quote");
    lvwQuote.set_columns({"", ""});
    chkPickSlip.set_caption("Picking Slip");
    chkConfirm.set_caption("Order Confirmation");
    for (size_t index = 0; index < 2; ++index) {
        optAll[index].set_caption("Select all dates");
        optDates[index].set_caption("Select from date range");
        lblFrom[index].set_caption("From");
        tbxFrom[index].set_label("From");
        lblTo[index].set_caption("To");
        tbxTo[index].set_label("To");
        lvbFrom[index].set_tip("Select Expiration Date");
        lvbTo[index].set_tip("Select Expiration Date");
        cboFrom[index].set_label("Customer from");
        for (const char* source : {"All", "Sage Accpac", "Velora"}) cboFrom[index].add(source);
        lblCustomer[index].set_caption("Customer");
        tbxCustomer[index].set_label("Customer");
        lvbCustomer[index].set_tip("Customer Finder");
    }
    cboStatus.set_label("Quote Status");
    lblLost.set_caption("Lost Reason");
    cboLost.set_label("Lost Reason");
    lblNoCriteria.set_caption("No criteria required.");
    mvwReport.set_label("Date");
    lvbClose.set_caption("Close");
    lvbClose.set_tip("Close the Report form");
    lvbClose.shortcut = kGiveUpKey;
}

void frmReport::wire_menus()
{
    menus = {menu_of("&File", mnuFileSub, kFile), menu_of("&Reports", mnuReportSub, kReports),
             menu_of("Options", mnuOptionSub, kOptions), menu_of("Help", mnuHelpSub, kHelp)};
    popup = menu_of("", mnuPopupSub, kPopup);

    const auto wire = [](const ControlArray<MenuEntry>& entries, const char* handler, auto procedure) {
        for (size_t index = 0; index < entries.size(); ++index) {
            entries[index].click.handle(handler, [procedure, index] { procedure(index); });
        }
    };
    wire(mnuFileSub, "mnuFileSub_Click", [this](size_t index) { mnuFileSub_Click(index); });
    wire(mnuReportSub, "mnuReportSub_Click", [this](size_t index) { mnuReportSub_Click(index); });
    wire(mnuOptionSub, "mnuOptionSub_Click", [this](size_t index) { mnuOptionSub_Click(index); });
    wire(mnuHelpSub, "mnuHelpSub_Click", [this](size_t index) { mnuHelpSub_Click(index); });
    wire(mnuPopupSub, "mnuPopupSub_Click", [this](size_t index) { mnuPopupSub_Click(index); });

    const auto tool = [this](ToolButton& button, const char* caption, std::function<void()> procedure) {
        button.set_caption(caption);
        button.click.handle("tlbReport_ButtonClick", std::move(procedure));
        toolbar.push_back(&button);
    };
    tool(tlbPreview, "Preview", [this] { mnuFileSub_Click(1); });
    tool(tlbPrint, "Print", [this] { mnuFileSub_Click(0); });
    tool(tlbExport, "Export", [this] { mnuFileSub_Click(2); });
    tool(tlbEmail, "Email", [this] { mnuFileSub_Click(3); });
    tool(tlbQuote, "Quote", [this] { mnuFileSub_Click(8); });
    tool(tlbHelp, "Help", [this] { mnuHelpSub_Click(0); });
}

void frmReport::wire_controls()
{
    lstReports.click.handle("lstReports_Click", [this] { lstReports_Click(); });

    tbxQuote.change.handle("tbxQuote_Change", [this] { m_Changed = true; });
    tbxQuote.got_focus.handle("tbxQuote_GotFocus", [this] {
        tbxQuote.select_all();
        m_Changed = false;
    });
    tbxQuote.check = [this] { return tbxQuote_Validate(); };
    tbxQuote.on_key("F5", "tbxQuote_KeyDown", [this] { lvbQuote_Click(); });
    lvbQuote.click.handle("lvbQuote_Click", [this] { lvbQuote_Click(); });

    cboStatus.click.handle("cboStatus_Click", [this] { cboStatus_Click(); });
    cboLost.click.handle("cboLost_Click", [this] { cboLost_Click(); });

    mvwReport.date_click.handle("mvwReport_DateClick", [this] { mvwReport_DateClick(); });
    mvwReport.lost_focus.handle("mvwReport_LostFocus", [this] { mvwReport.set_visible(false); });
    lvbClose.click.handle("lvbClose_Click", [this] { mnuFileSub_Click(8); });
}

void frmReport::wire_criteria(size_t index)
{
    const auto box = [this](TextBox& edited, const std::string& name) {
        edited.change.handle(name + "_Change", [this] { m_Changed = true; });
        edited.got_focus.handle(name + "_GotFocus", [this, &edited] {
            edited.select_all();
            m_Changed = false;
        });
    };
    box(tbxFrom[index], "tbxFrom");
    box(tbxTo[index], "tbxTo");
    box(tbxCustomer[index], "tbxCustomer");

    optAll[index].click.handle("optAll_Click", [this, index] { Enable_Dates(index, false); });
    optDates[index].click.handle("optDates_Click", [this, index] { Enable_Dates(index, true); });

    const auto leave = [this, index](bool from) {
        if (m_Changed) keep_range(index, from);
    };
    tbxFrom[index].lost_focus.handle("tbxFrom_LostFocus", [leave] { leave(true); });
    tbxTo[index].lost_focus.handle("tbxTo_LostFocus", [leave] { leave(false); });
    lvbFrom[index].click.handle("lvbFrom_Click", [this, index] { open_month_view(index, true); });
    lvbTo[index].click.handle("lvbTo_Click", [this, index] { open_month_view(index, false); });
    tbxFrom[index].on_key("F5", "tbxFrom_KeyDown", [this, index] { open_month_view(index, true); });
    tbxTo[index].on_key("F5", "tbxTo_KeyDown", [this, index] { open_month_view(index, false); });

    cboFrom[index].click.handle("cboFrom_Click", [this, index] { cboFrom_Click(index); });
    tbxCustomer[index].check = [this, index] { return tbxCustomer_Validate(index); };
    tbxCustomer[index].on_key("F5", "tbxCustomer_KeyDown", [this, index] { lvbCustomer_Click(index); });
    lvbCustomer[index].click.handle("lvbCustomer_Click", [this, index] { lvbCustomer_Click(index); });
}

void frmReport::load()
{
    Form_Load();
}

void frmReport::Form_Load()
{
    with_failure_path(state_, ErrorMessenger, "frmReport.Form_Load", [&] {
        set_height(state_.gWinXP ? kNewerHeight : kOlderHeight);
        hide_what_only_chief_may();
        Apply_ButtonStyle(state_, *this);
        Load_Options(state_, state_.gQuoteStatus, kListStatus,
                     [this](const std::string& text, int32_t key) { cboStatus.add(text, key); });
        Load_Options(state_, state_.gReasons, kListReason,
                     [this](const std::string& text, int32_t key) { cboLost.add(text, key); });
        show_order_reports_in_use();
        Setup_Form();
        Get_ModuleVersions(state_);
    });
}

void frmReport::hide_what_only_chief_may()
{
    if (trimmed(state_.gSessUser) == "CHIEF") return;  // letter for letter: "chief" is another user
    for (const size_t index : {4, 5, 6}) mnuFileSub[index].set_visible(false);
    for (const size_t index : {3, 4, 5}) mnuPopupSub[index].set_visible(false);
}

void frmReport::show_order_reports_in_use()
{
    const auto slips = default_number(state_, "mdPickingSlip");
    const auto confirmations = default_number(state_, "mdConfirmation");
    if (default_is(state_, "mdUseDLRange", 0) && slips == 0 && confirmations == 0) {
        mnuReportSub[7].set_visible(false);
        mnuPopupSub[12].set_visible(false);
        return;
    }
    const auto is_flag = [](const std::optional<double>& number) { return number && (*number == 0 || *number == 1); };
    if (!is_flag(slips) || !is_flag(confirmations)) return;  // other values change nothing
    chkPickSlip.set_visible(slips == 1);
    chkConfirm.set_visible(confirmations == 1);
}

}  // namespace velora::forms
