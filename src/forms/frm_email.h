#pragma once

#include "forms/controls/buttons.h"
#include "forms/controls/form.h"
#include "forms/controls/lists.h"
#include "session/session_state.h"

namespace velora::forms {

class FormDesk;

/// Composes one e-mail and sends it.
class frmEmail final : public Form {
public:
    explicit frmEmail(FormDesk& desk);
    void load() override;
    [[nodiscard]] Control* first_focus() override { return &tbxSubject; }

    TextBox tbxSMTP{*this, "tbxSMTP"};
    TextBox tbxUser{*this, "tbxUser"};
    TextBox tbxPassword{*this, "tbxPassword"};
    TextBox tbxSendName{*this, "tbxSendName"};
    TextBox tbxSendEmail{*this, "tbxSendEmail"};
    TextBox tbxRecipName{*this, "tbxRecipName"};
    TextBox tbxRecipEmail{*this, "tbxRecipEmail"};
    TextBox tbxCCName{*this, "tbxCCName"};
    TextBox tbxCCEmail{*this, "tbxCCEmail"};
    TextBox tbxBCC{*this, "tbxBCC"};
    TextBox tbxSubject{*this, "tbxSubject"};
    TextBox txtBody{*this, "txtBody"};
    TextBox txtAttach{*this, "txtAttach"};
    Button lvbAttach{*this, "lvbAttach"};
    DropDown cboPriority{*this, "cboPriority"};
    CheckBox chkReadReceipt{*this, "chkReadReceipt"};
    ListBox lstStatus{*this, "lstStatus"};
    Label lblProgress{*this, "lblProgress"};
    Button lvbSend{*this, "lvbSend"};
    Button lvbReset{*this, "lvbReset"};
    Button lvbClose{*this, "lvbClose"};

private:
    class SendEvents;

    void name_controls();
    void wire();
    void Form_Load();
    void Load_Priorities();
    void Load_EmailDefaults();
    void Clear_TheForm();
    bool address_Validate(TextBox& box);
    void lvbAttach_Click();
    void lvbSend_Click();
    void lvbReset_Click();
    [[nodiscard]] MailProperties mail() const;

    void poSendMail_Progress(int32_t percent);
    void poSendMail_Status(const std::string& text);
    void poSendMail_SendSuccesful();
    void poSendMail_SendFailed(const std::string& explanation);

    FormDesk& desk_;
    SessionState& state_;
    bool changed_ = false;  ///< one flag for the four address boxes
};

}  // namespace velora::forms
