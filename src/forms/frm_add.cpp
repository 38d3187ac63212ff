#include "forms/frm_add.h"

#include <algorithm>
#include <filesystem>

#include "forms/button_style.h"
#include "forms/company_rules.h"
#include "forms/file_dialogs.h"
#include "forms/form_desk.h"
#include "forms/frm_report.h"
#include "forms/paths.h"
#include "reports/kinds.h"
#include "reports/report_lists.h"
#include "session/error_messengers.h"
#include "values/text.h"

namespace velora::forms {

namespace {

constexpr int kNewerHeight = 3150;
constexpr int kOlderHeight = 3045;
constexpr const char* kCustomType = "22";

std::string caption_of(WhichReport kind)
{
    switch (kind) {
        case eRptAllOrderMenu:
        case eRptOrderChecklist:
        case eRptPickingSlip:
        case eRptOrderConfirmation:
            return "Add Report - Order Reports";
        case eRptQuote:
            return "Add Report - Quotes";
        case eRptCustomerList:
            return "Add Report - Customer List";
        case eRptItemList:
            return "Add Report - Item List";
        case eRptWinLossGraph:
            return "Add Report - Wim \\ Loss Graph";
        case eRptLostReasonGraph:
            return "Add Report - Lost Reason Graph";
        case eRptOverviewQuotes:
        case eRptExpireQuotes:  // the caption of the overview, on purpose
            return "Add Report - Overview Quotes";
        case eRptBackOrder:
            return "Add Report - Back Order Items";
        default:
            return "Add Report - Custom";
    }
}

bool is_order_type(int16_t type)
{
    return type >= 7 && type <= 9;
}

bool is_file(const std::string& path)
{
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

}  // namespace

frmAdd::frmAdd(FormDesk& desk) : Form("frmAdd"), desk_(desk), state_(desk.state())
{
    lblInfo.set_caption("Enter or Select a Report to add to Velora.");
    optPipe.set_caption("Data Pipe Report");
    cboPipe.set_label("Kind of report");
    optCustom.set_caption("Custom Report");
    lblFile.set_caption("Report to Add");
    txtFile.set_label("Report to Add");
    lvbBrowse.set_tip("Browse for a Report");
    lvbOK.set_caption("OK");
    lvbOK.set_tip("Accept the selected Report");
    lvbCancel.set_caption("Cancel");
    lvbCancel.set_tip("Cancel the selected Report");
    lvbOK.shortcut = kAcceptKey;
    lvbCancel.shortcut = kGiveUpKey;
    wire();
}

void frmAdd::wire()
{
    optPipe.click.handle("optPipe_Click", [this] { optPipe_Click(); });
    optCustom.click.handle("optCustom_Click", [this] { optCustom_Click(); });
    cboPipe.click.handle("cboPipe_Click", [this] { cboPipe_Click(); });
    txtFile.got_focus.handle("txtFile_GotFocus", [this] { txtFile_GotFocus(); });
    txtFile.change.handle("txtFile_Change", [this] { m_Changed = true; });
    txtFile.lost_focus.handle("txtFile_LostFocus", [this] {
        if (m_Changed) m_File = std::string(trimmed(txtFile.text()));
    });
    lvbBrowse.click.handle("lvbBrowse_Click", [this] { lvbBrowse_Click(); });
    lvbOK.click.handle("lvbOK_Click", [this] { lvbOK_Click(); });
    lvbCancel.click.handle("lvbCancel_Click", [this] { unload(); });
}

void frmAdd::load()
{
    run("Form_Load", [this] { Form_Load(); });
}

void frmAdd::Form_Load()
{
    set_height(state_.gWinXP ? kNewerHeight : kOlderHeight);
    Apply_ButtonStyle(state_, *this);
    set_caption(caption_of(state_.gWhichReport));
    fill_kinds();
    optPipe.set_value(true);
}

void frmAdd::fill_kinds()
{
    for (const ReportKind& kind : report_kinds()) {
        if (kind.list_text.empty()) continue;
        // The three order kinds hang on this one column, unlike the rows of the list. It is meant.
        if (is_order_type(kind.type) && !default_is(state_, "mdUseDLRange", 1)) continue;
        cboPipe.add(std::string(kind.list_text), kind.type);
    }
}

void frmAdd::optPipe_Click()
{
    cboPipe.set_enabled(true);
    cboPipe.set_back(Back::Window);
    lvbOK.set_enabled(false);
}

void frmAdd::optCustom_Click()
{
    cboPipe.set_enabled(false);
    cboPipe.select(-1);
    cboPipe.set_back(Back::Face);
    m_Type = kCustomType;
    lvbOK.set_enabled(true);
}

void frmAdd::cboPipe_Click()
{
    if (cboPipe.selected() < 0) return;
    m_Type = std::to_string(cboPipe.selected_data(0));
    lvbOK.set_enabled(true);
}

void frmAdd::lvbBrowse_Click()
{
    try {
        m_File = ask_for_definition(state_, "Add Report to List");
        m_Name = title_of_file(m_File);
        txtFile.set_text(m_File);
    } catch (const Fault&) {
        // A cancel of the dialog ends here, and so does a name that is too short to be one.
    }
}

/// Coming into the box forgets what was browsed for.
void frmAdd::txtFile_GotFocus()
{
    txtFile.select_all();
    m_Changed = false;
    m_File.clear();
    m_Name.clear();
}

bool frmAdd::refuse(const MessageBox& box)
{
    tell(state_, box);
    enter(txtFile);
    return false;
}

bool frmAdd::can_be_added()
{
    if (!is_file(m_File)) {
        return refuse({"Invalid File", "The Report file does not exist. Please enter or\r\nselect the file again.",
                       Icon::Exclamation});
    }
    const auto is_same = [&](const ReportListEntry& row) { return !row.Location.empty() && row.Location == m_File; };
    if (std::ranges::any_of(state_.gReportList, is_same)) {
        return refuse({"Report Already Exists", "The selected Report already exists in the list", Icon::Information});
    }
    return true;
}

void frmAdd::lvbOK_Click()
{
    if (!can_be_added()) return;
    frmReport* const selection = desk_.report();
    if (selection != nullptr) selection->require_understood_list();
    ReportListEntry& row = state_.gReportList.emplace_back();
    row.Location = m_File;
    if (trimmed(m_Name).empty()) m_Name = name_from_path(m_File);
    row.Name = m_Name;
    row.Type = to_int16(Value(m_Type));
    if (selection != nullptr) selection->report_added(m_Name);
    Write_ReportList(state_);
    unload();
}

}  // namespace velora::forms
