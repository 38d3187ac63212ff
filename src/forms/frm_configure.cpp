#include "forms/frm_configure.h"

#include <algorithm>
#include <array>

#include "delivery/export.h"
#include "forms/button_style.h"
#include "forms/company_rules.h"
#include "forms/file_dialogs.h"
#include "forms/form_desk.h"
#include "reports/report_lists.h"
#include "session/error_messengers.h"
#include "session/value_helpers.h"
#include "values/text.h"

namespace velora::forms {

namespace {

constexpr int kNewerHeight = 5445;
constexpr int kOlderHeight = 5340;
constexpr Frame::Place kPanePlace{.top = 480, .left = 3240, .height = 4100};

struct Pane {
    std::string_view key, text, parent;
    int frame;  ///< -1: it opens and shows its first child
    std::string_view caption;
};

// clang-format off
constexpr auto kPanes = std::to_array<Pane>({
    {"P1", "Printer",               "",   eFPrinter,         "Printer Selection"},
    {"P2", "Default Reports",       "",   -1,                ""},
    {"P3", "Export to file",        "",   eFExport,          "Export to file"},
    {"P4", "Email options",         "",   eFEmail,           "Emailing Options"},
    {"P5", "Transfer Log File",     "",   eFLogFile,         "Quote Transfer Log File"},
    {"P6", "Miscellaneous Options", "",   eFMiscOptions,     "Miscellaneous Options"},
    {"C1", "Quote",                 "P2", eFRptQuote,        "Quote Report"},
    {"C2", "Expiration",            "P2", eFRptExpiration,   "Expiration Report"},
    {"C3", "Order Checklist",       "P2", eFRptChecklist,    "Order Checklist Report"},
    {"C4", "Order Confirmation",    "P2", eFRptConfirmation, "Quote Confirmation Report"},
    {"C5", "Picking Slip",          "P2", eFRptPickingSlip,  "Picking Slip Report"},
});
// clang-format on

/// The node that stands for a pane when the form opens: for four of the panes that of the printer, on purpose.
std::string_view node_at_load(int frame)
{
    switch (frame) {
        case eFRptQuote:
            return "C1";
        case eFExport:
            return "P3";
        case eFEmail:
            return "P4";
        case eFLogFile:
            return "P5";
        case eFMiscOptions:
            return "P6";
        default:
            return "P1";
    }
}

}  // namespace

frmConfigure::frmConfigure(FormDesk& desk, WhichFrame pFrame)
    : Form("frmConfigure"), state_(desk.state()), asked_(pFrame)
{
    name_controls();
    wire();
    list_options();
}

void frmConfigure::name_controls()
{
    tvwDefault.set_label("Select the Reporting defaults and options.");
    for (const Pane& pane : kPanes) {
        if (pane.frame >= 0) fraDefault[static_cast<size_t>(pane.frame)].set_caption(std::string(pane.caption));
    }
    chkDefault.set_caption("Use the Default Printer.");
    lstNames.set_label("Select a Printer to print out the reports.");
    lblPrinter.set_label("Current Printer");
    optQuote[0].set_caption("Select a Quote report from the Report form");
    optQuote[1].set_caption("Velora datapipe report");
    optQuote[2].set_caption("Custom Report");
    cboReport.set_label("Velora datapipe report");
    txtCustom.set_label("Custom Report");
    chkPreview.set_caption("Always preview the default Quote report.");
    chkExpire.set_caption("Always preview the default Quote Expiration report.");
    for (TextBox* box : {&txtExpire, &txtChecklist, &txtConfirm, &txtPickSlip}) box->set_label("Browse for the Report");
    for (Button* button : {&lvbBrowse, &lvbExpire, &lvbChecklist, &lvbConfirm, &lvbPickSlip}) {
        button->set_tip("Browse for the Report");
    }
    cboExport.set_label("Export reports as");
    for (const auto& format : std::span(kExportFormats).first(kOfferedFormats))
        cboExport.add(std::string(format.list_text));
    txtExport.set_label("Default report export folder.");
    lvbExport.set_tip("Default report export folder.");
    tbxSMTP.set_label("SMTP Server");
    tbxUser.set_label("User Name");
    tbxPassword.set_label("Password");
    tbxPassword.secret = true;
    tbxName.set_label("Sender Name");
    tbxEmail.set_label("Sender Email");
    chkEmail.set_caption("Automatically attach the report to the Email.");
    chkCopyMe.set_caption("Send me a copy of the email (BCC).");
    chkReadReceipt.set_caption("Request a Read Receipt notification");
    chkReadReceipt.set_tip("Not possible with all email clients");
    txtLogFile.set_label("Default Transfer Log File folder.");
    lvbLogFile.set_tip("Default Transfer Log File folder.");
    chkDeleteLog.set_caption("Automatically delete the Transfer Log File if NO errors occur.");
    cboCommIns.set_label("Select the option to print Detail item Comments and/or Instructions on the Quote report.");
    cboCommIns.set_tip("Note: The field must be placed on the report to see this information.");
    lvbOK.set_caption("OK");
    lvbOK.set_tip("Save the options");
    lvbOK.shortcut = kAcceptKey;
    lvbClose.set_caption("Close");
    lvbClose.set_tip("Close without saving");
    lvbClose.shortcut = kGiveUpKey;
}

void frmConfigure::wire()
{
    tvwDefault.node_click.handle("tvwDefault_NodeClick", [this] { tvwDefault_NodeClick(); });
    tvwDefault.expand.handle("tvwDefault_Expand", [this] { tvwDefault_Expand(); });
    chkDefault.click.handle("chkDefault_Click", [this] { chkDefault_Click(); });
    lstNames.click.handle("lstNames_Click", [this] { lstNames_Click(); });
    for (size_t index = 0; index < optQuote.size(); ++index) {
        optQuote[index].click.handle("optQuote_Click", [this, index] { optQuote_Click(index); });
    }
    const auto browses = [this](Button& button, TextBox& box, const char* title) {
        button.click.handle(button.name() + "_Click", [this, &box, title] { browse(box, title); });
    };
    browses(lvbBrowse, txtCustom, "Select the default Quote Report");
    browses(lvbChecklist, txtChecklist, "Select the default Order Checklist Report");
    browses(lvbConfirm, txtConfirm, "Select the default Order Confirmation Report");
    browses(lvbExpire, txtExpire, "Select the default Order Checklist Report");  // the title of the other, on purpose
    browses(lvbPickSlip, txtPickSlip, "Select the default Picking Slip Report");

    // Both show the same title, and a cancel empties the box. It is meant.
    const auto browses_folder = [this](Button& button, TextBox& box) {
        button.click.handle(button.name() + "_Click", [this, &box] {
            box.set_text(Browse_Folder(state_, "Select a folder for the exported reports.", "My Computer"));
        });
    };
    browses_folder(lvbExport, txtExport);
    browses_folder(lvbLogFile, txtLogFile);

    tbxEmail.change.handle("tbxEmail_Change", [this] { changed_ = true; });
    tbxEmail.got_focus.handle("tbxEmail_GotFocus", [this] { changed_ = false; });
    tbxEmail.check = [this] { return tbxEmail_Validate(); };
    lvbOK.click.handle("lvbOK_Click", [this] { lvbOK_Click(); });
    lvbClose.click.handle("lvbClose_Click", [this] { unload(); });
}

void frmConfigure::load()
{
    run("Form_Load", [this] { Form_Load(); });
}

void frmConfigure::Form_Load()
{
    set_caption("Velora - Reporting Options");
    set_height(state_.gWinXP ? kNewerHeight : kOlderHeight);
    Apply_ButtonStyle(state_, *this);
    Load_Treeview();
    for (size_t index = 0; index < fraDefault.size(); ++index) {
        fraDefault[index].set_visible(false);
        fraDefault[index].set_place(kPanePlace);
    }
    show_pane(asked_);
    Load_Printers();
    Load_QuoteReports();
    Load_CommInsTypes();
    LoadPrinterInfo();
    close_what_is_not_in_use();
}

void frmConfigure::Load_Treeview()
{
    with_failure_path(state_, ErrorMessenger, "frmConfigure.Load_Treeview", [&] {
        for (const Pane& pane : kPanes) {
            tvwDefault.add(
                {.key = std::string(pane.key), .text = std::string(pane.text), .parent = std::string(pane.parent)});
        }
    });
}

void frmConfigure::Load_Printers()
{
    if (state_.ports.printers == nullptr) return;
    for (const Printer& printer : state_.ports.printers->list()) lstNames.add(printer.DeviceName);
}

void frmConfigure::Load_QuoteReports()
{
    const std::string path = INIFile(state_, eRptQuote);
    const auto read = [&](const std::string& section, std::string_view key) {
        return state_.ports.profiles->read(path, section, key);
    };
    const std::string number = read("Reports", "Number");
    const int count = trimmed(number).empty() ? 0 : to_int16(Value(number));
    for (int at = 1; at <= count; ++at) {
        const std::string section = "Report #" + std::to_string(at);
        cboReport.add(read(section, "Name"));
        locations_.push_back(read(section, "Location"));
    }
    cboReport.select(-1);
}

void frmConfigure::Load_CommInsTypes()
{
    // The form is named otherwise in the message, and stays so.
    with_failure_path(state_, ErrorMessenger, "frmDefaults.Load_CommInsTypes", [&] {
        for (const char* type : {"Comments and Instructions", "Comments only", "Instructions only"}) {
            cboCommIns.add(type);
        }
    });
}

/// The pane of an order report that the company does not use is dead; its node can still be clicked.
void frmConfigure::close_what_is_not_in_use()
{
    const auto close = [this](std::string_view column, std::string_view node, Frame& pane, TextBox& box,
                              Button& browse) {
        if (default_number(state_, column).value_or(0) > 0) return;
        tvwDefault.set_grey(node);
        box.set_enabled(false);
        box.set_back(Back::Face);
        browse.set_enabled(false);
        pane.set_enabled(false);
    };
    close("mdUseDLRange", "C3", fraDefault[eFRptChecklist], txtChecklist, lvbChecklist);
    close("mdConfirmation", "C4", fraDefault[eFRptConfirmation], txtConfirm, lvbConfirm);
    close("mdPickingSlip", "C5", fraDefault[eFRptPickingSlip], txtPickSlip, lvbPickSlip);
}

void frmConfigure::show_pane(WhichFrame frame)
{
    show_frame(frame);
    tvwDefault.select(node_at_load(frame));
}

void frmConfigure::show_frame(int frame)
{
    if (frame < 0 || static_cast<size_t>(frame) >= fraDefault.size()) {
        throw fault::of(fault::kNoSuchMember, "fraDefault(" + std::to_string(frame) + ")");
    }
    fraDefault[static_cast<size_t>(pane_)].set_visible(false);
    pane_ = frame;
    fraDefault[static_cast<size_t>(pane_)].set_visible(true);
}

void frmConfigure::tvwDefault_NodeClick()
{
    with_failure_path(state_, ErrorMessenger, "frmConfigure.tvwDefault_NodeClick", [&] {
        const auto pane = std::ranges::find(kPanes, tvwDefault.event_key(), &Pane::key);
        if (pane->frame >= 0) return show_frame(pane->frame);
        tvwDefault.open(pane->key);
        show_frame(eFRptQuote);
    });
}

void frmConfigure::tvwDefault_Expand()
{
    with_failure_path(state_, ErrorMessenger, "frmConfigure.tvwDefault_Expand", [&] {
        tvwDefault.select("C1");
        show_frame(eFRptQuote);
    });
}

void frmConfigure::chkDefault_Click()
{
    if (chkDefault.value() == 0) return lblPrinter.set_caption("");
    lblPrinter.set_caption(" Windows Default Printer");
    lstNames.select(-1);
}

void frmConfigure::lstNames_Click()
{
    if (lstNames.selected() < 0) return;
    chkDefault.set_value(0);
    const auto printers = state_.ports.printers->list();
    const auto chosen = static_cast<size_t>(lstNames.selected());
    if (chosen >= printers.size()) throw fault::subscript("Printers");  // taken off the machine meanwhile
    state_.current_printer = printers[chosen];
    lblPrinter.set_caption(" " + printers[chosen].DeviceName);
}

void frmConfigure::optQuote_Click(size_t index)
{
    const bool of_list = index == 1;
    const bool custom = index == 2;
    if (!of_list) cboReport.select(-1);
    cboReport.set_enabled(of_list);
    cboReport.set_back(of_list ? Back::Window : Back::Face);
    if (!custom) txtCustom.set_text("");  // the stored path stays as it is, on purpose
    txtCustom.set_enabled(custom);
    txtCustom.set_back(custom ? Back::Window : Back::Face);
    lvbBrowse.set_enabled(custom);
}

void frmConfigure::browse(TextBox& box, std::string_view title)
{
    try {
        const std::string path(trimmed(ask_for_definition(state_, title)));
        if (&box == &txtCustom) custom_path_ = path;
        box.set_text(path);
    } catch (const Fault&) {
        // A cancel of the dialog ends here.
    }
}

/// Asked before the focus leaves the sender's address.
bool frmConfigure::tbxEmail_Validate()
{
    bool leaves = true;
    run("tbxEmail_Validate", [&] {
        if (trimmed(tbxEmail.text()).empty() || !changed_) return;
        leaves = IsValid_Email(state_, tbxEmail.text());
        if (!leaves) tbxEmail.select_all();
    });
    return leaves;
}

void frmConfigure::lvbOK_Click()
{
    Save_ReportOptions();
    unload();
}

}  // namespace velora::forms
