#pragma once

#include <string>
#include <vector>

#include "forms/controls/buttons.h"
#include "forms/controls/control_array.h"
#include "forms/controls/form.h"
#include "forms/controls/lists.h"
#include "forms/controls/tree.h"
#include "session/session_state.h"

namespace velora::forms {

class FormDesk;

/// The reporting options of a user for a company. Nothing is written before OK.
class frmConfigure final : public Form {
public:
    frmConfigure(FormDesk& desk, WhichFrame pFrame);
    void load() override;
    [[nodiscard]] Control* first_focus() override { return &tvwDefault; }
    /// Shows a pane and chooses its node, as at load.
    void show_pane(WhichFrame frame);

    Tree tvwDefault{*this, "tvwDefault"};
    ControlArray<Frame> fraDefault{*this, "fraDefault", 10};

    // Printer
    CheckBox chkDefault{*this, "chkDefault", &fraDefault[eFPrinter]};
    ListBox lstNames{*this, "lstNames", &fraDefault[eFPrinter]};
    Label lblPrinter{*this, "lblPrinter", &fraDefault[eFPrinter]};
    // Quote
    ControlArray<OptionButton> optQuote{*this, "optQuote", 3, &fraDefault[eFRptQuote]};
    DropDown cboReport{*this, "cboReport", &fraDefault[eFRptQuote]};
    TextBox txtCustom{*this, "txtCustom", &fraDefault[eFRptQuote]};
    Button lvbBrowse{*this, "lvbBrowse", &fraDefault[eFRptQuote]};
    CheckBox chkPreview{*this, "chkPreview", &fraDefault[eFRptQuote]};
    // Expiration
    TextBox txtExpire{*this, "txtExpire", &fraDefault[eFRptExpiration]};
    Button lvbExpire{*this, "lvbExpire", &fraDefault[eFRptExpiration]};
    CheckBox chkExpire{*this, "chkExpire", &fraDefault[eFRptExpiration]};
    // Order reports
    TextBox txtChecklist{*this, "txtChecklist", &fraDefault[eFRptChecklist]};
    Button lvbChecklist{*this, "lvbChecklist", &fraDefault[eFRptChecklist]};
    TextBox txtConfirm{*this, "txtConfirm", &fraDefault[eFRptConfirmation]};
    Button lvbConfirm{*this, "lvbConfirm", &fraDefault[eFRptConfirmation]};
    TextBox txtPickSlip{*this, "txtPickSlip", &fraDefault[eFRptPickingSlip]};
    Button lvbPickSlip{*this, "lvbPickSlip", &fraDefault[eFRptPickingSlip]};
    // Export
    DropDown cboExport{*this, "cboExport", &fraDefault[eFExport]};
    TextBox txtExport{*this, "txtExport", &fraDefault[eFExport]};
    Button lvbExport{*this, "lvbExport", &fraDefault[eFExport]};
    // Email
    TextBox tbxSMTP{*this, "tbxSMTP", &fraDefault[eFEmail]};
    TextBox tbxUser{*this, "tbxUser", &fraDefault[eFEmail]};
    TextBox tbxPassword{*this, "tbxPassword", &fraDefault[eFEmail]};
    TextBox tbxName{*this, "tbxName", &fraDefault[eFEmail]};
    TextBox tbxEmail{*this, "tbxEmail", &fraDefault[eFEmail]};
    CheckBox chkEmail{*this, "chkEmail", &fraDefault[eFEmail]};
    CheckBox chkCopyMe{*this, "chkCopyMe", &fraDefault[eFEmail]};
    CheckBox chkReadReceipt{*this, "chkReadReceipt", &fraDefault[eFEmail]};
    // Log
    TextBox txtLogFile{*this, "txtLogFile", &fraDefault[eFLogFile]};
    Button lvbLogFile{*this, "lvbLogFile", &fraDefault[eFLogFile]};
    CheckBox chkDeleteLog{*this, "chkDeleteLog", &fraDefault[eFLogFile]};
    // Miscellaneous
    DropDown cboCommIns{*this, "cboCommIns", &fraDefault[eFMiscOptions]};

    Button lvbOK{*this, "lvbOK"};
    Button lvbClose{*this, "lvbClose"};

private:
    // frm_configure.cpp
    void name_controls();
    void wire();
    void Form_Load();
    void Load_Treeview();
    void Load_Printers();
    void Load_QuoteReports();
    void Load_CommInsTypes();
    void close_what_is_not_in_use();
    void show_frame(int frame);
    void tvwDefault_NodeClick();
    void tvwDefault_Expand();
    void chkDefault_Click();
    void lstNames_Click();
    void optQuote_Click(size_t index);
    void browse(TextBox& box, std::string_view title);
    bool tbxEmail_Validate();
    void lvbOK_Click();

    // frm_configure_settings.cpp
    void list_options();
    void add_text_option(TextBox& box, const char* key, const std::string& otherwise = {});
    void add_check_option(CheckBox& box, const char* key);
    void add_list_option(DropDown& list, const char* key, const char* otherwise);
    void add_order_option(const char* column, TextBox& box, const char* key, const char* file);
    void LoadPrinterInfo();
    void Save_ReportOptions();
    void keep(std::string key, std::string value) { kept_.push_back({std::move(key), std::move(value)}); }
    void load_printer();
    void load_quote_choice();
    void save_printer();
    void save_quote_choice();
    [[nodiscard]] std::string shown_quote_choice() const;

    struct Option {
        std::function<void()> load;
        std::function<void()> save;
        std::function<std::string()> shown;  ///< what its controls hold
        std::string unread = {};             ///< what they held when the options could not be read so far
    };

    SessionState& state_;
    WhichFrame asked_;  ///< the pane that the caller asked for
    int pane_ = 0;
    std::vector<std::string> locations_;  ///< of the entries of cboReport
    std::string custom_path_;
    bool changed_ = false;
    std::vector<Option> options_;
    std::vector<NamedText> kept_;  ///< what is to be saved
    size_t reached_ = 0;           ///< so many options were read, the last of them perhaps in vain
};

}  // namespace velora::forms
