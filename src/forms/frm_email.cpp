#include "forms/frm_email.h"

#include "forms/button_style.h"
#include "forms/file_dialogs.h"
#include "forms/form_desk.h"
#include "session/error_messengers.h"
#include "session/settings.h"
#include "session/value_helpers.h"
#include "values/text.h"

namespace velora::forms {

namespace {

constexpr int kNewerHeight = 9285;
constexpr int kOlderHeight = 9180;

std::string trimmed_of(const TextBox& box)
{
    return std::string(trimmed(box.text()));
}

bool flag(SessionState& state, std::string_view key)
{
    return to_bool(Value(setting(state, key, "0")));
}

}  // namespace

/// Hands the events of the mail component to the form for as long as it is up.
class frmEmail::SendEvents final : public MailEvents {
public:
    explicit SendEvents(frmEmail& form) : form_(form) {}

    void Progress(int32_t percent) override
    {
        hand_on([&] { form_.poSendMail_Progress(percent); });
        if (form_.desk_.on_mail_event) form_.desk_.on_mail_event(percent);
    }
    void Status(const std::string& text) override
    {
        constexpr int32_t kNoPercent = -1;
        hand_on([&] { form_.poSendMail_Status(text); });
        if (form_.desk_.on_mail_event) form_.desk_.on_mail_event(kNoPercent);
    }
    void SendSuccesful() override
    {
        hand_on([this] { form_.poSendMail_SendSuccesful(); });
    }
    void SendFailed(const std::string& explanation) override
    {
        hand_on([&] { form_.poSendMail_SendFailed(explanation); });
    }
    bool is_cancelled() override
    {
        if (form_.desk_.while_waiting) form_.desk_.while_waiting();
        return form_.is_unloaded();
    }

private:
    template <class Event>
    void hand_on(Event event)
    {
        if (!form_.is_unloaded()) event();
    }

    frmEmail& form_;
};

frmEmail::frmEmail(FormDesk& desk) : Form("frmEmail"), desk_(desk), state_(desk.state())
{
    name_controls();
    wire();
}

void frmEmail::name_controls()
{
    tbxSMTP.set_label("SMTP Server");
    tbxUser.set_label("SMTP User");
    tbxPassword.set_label("SMTP Password");
    tbxPassword.secret = true;
    tbxSendName.set_label("Sender Name");
    tbxSendEmail.set_label("Sender Email");
    tbxRecipName.set_label("Recipient Name");
    tbxRecipEmail.set_label("Recipient Email");
    tbxCCName.set_label("CC Name");
    tbxCCEmail.set_label("CC Email");
    tbxBCC.set_label("BCC Email");
    tbxSubject.set_label("Subject");
    txtBody.set_label("Message");
    txtBody.several_lines = true;
    txtAttach.set_label("Attachement");
    lvbAttach.set_tip("Attach a file");
    cboPriority.set_label("Priority");
    chkReadReceipt.set_caption("Request Read Receipt");
    lstStatus.set_label("Status");
    lblProgress.set_label("Progress");
    lvbSend.set_caption("Send");
    lvbSend.set_tip("Send the Email");
    lvbReset.set_caption("Reset");
    lvbReset.set_tip("Reset the form");
    lvbClose.set_caption("Close");
    lvbClose.set_tip("Close the form");
    lvbClose.shortcut = kGiveUpKey;
}

void frmEmail::wire()
{
    for (TextBox* box : {&tbxSendEmail, &tbxRecipEmail, &tbxCCEmail, &tbxBCC}) {
        box->change.handle(box->name() + "_Change", [this] { changed_ = true; });
        box->got_focus.handle(box->name() + "_GotFocus", [this] { changed_ = false; });
        box->check = [this, box] { return address_Validate(*box); };
    }
    lvbAttach.click.handle("lvbAttach_Click", [this] { lvbAttach_Click(); });
    lvbSend.click.handle("lvbSend_Click", [this] { lvbSend_Click(); });
    lvbReset.click.handle("lvbReset_Click", [this] { lvbReset_Click(); });
    lvbClose.click.handle("lvbClose_Click", [this] { unload(); });
}

void frmEmail::load()
{
    run("Form_Load", [this] { Form_Load(); });
}

void frmEmail::Form_Load()
{
    set_caption("Velora - Email Report");
    set_height(state_.gWinXP ? kNewerHeight : kOlderHeight);
    Apply_ButtonStyle(state_, *this);
    Load_Priorities();
    Load_EmailDefaults();
    tbxRecipName.set_text(state_.gQuote.CustContact);
    tbxRecipEmail.set_text(state_.gQuote.quEmail);
    if (flag(state_, "CopyMe")) tbxBCC.set_text(setting(state_, "SendEmail", ""));
    if (flag(state_, "Attach")) txtAttach.set_text(state_.gExportFile);
    lblProgress.set_caption("");
}

void frmEmail::Load_Priorities()
{
    cboPriority.add("Low Priority", 5);
    cboPriority.add("Normal Priority", 3);
    cboPriority.add("High Priority", 1);
    cboPriority.select(1);
}

void frmEmail::Load_EmailDefaults()
{
    tbxSMTP.set_text(setting(state_, "SMTP", ""));
    tbxUser.set_text(setting(state_, "SMTPuser", ""));
    tbxPassword.set_text(Decrypt(state_, setting(state_, "SMTPpwd", "")));
    tbxSendName.set_text(setting(state_, "Sender", ""));
    tbxSendEmail.set_text(setting(state_, "SendEmail", ""));
    chkReadReceipt.set_value(to_int16(Value(setting(state_, "ReadReceipt", "0"))));
}

/// Empties what can be typed into and the lists; priority and read receipt stay.
void frmEmail::Clear_TheForm()
{
    for (Control* control : controls()) {
        if (auto* box = dynamic_cast<TextBox*>(control)) box->set_text("");
        if (auto* list = dynamic_cast<ListBox*>(control)) list->clear();
    }
    lblProgress.set_caption("");
}

/// Asked before the focus leaves an address.
bool frmEmail::address_Validate(TextBox& box)
{
    bool leaves = true;
    run(box.name() + "_Validate", [&] {
        if (trimmed(box.text()).empty() || !changed_) return;
        leaves = IsValid_Email(state_, box.text());
        if (leaves) return;
        box.select_all();
        if (&box == &tbxRecipEmail) changed_ = false;  // this box alone lets go at the second attempt, on purpose
    });
    return leaves;
}

void frmEmail::lvbAttach_Click()
{
    std::vector<std::string> files;
    try {
        files = ask_for_files(state_, "Select the attachment.", setting(state_, "Export", ""));
    } catch (const Fault&) {
        return;  // a cancel of the dialog
    }
    for (const std::string& file : files) {
        const std::string part(trimmed(file));
        txtAttach.set_text(trimmed(txtAttach.text()).empty() ? part : txtAttach.text() + ";" + part);
    }
}

MailProperties frmEmail::mail() const
{
    MailProperties mail;
    mail.SMTPHost = trimmed_of(tbxSMTP);
    if (const std::string user = trimmed_of(tbxUser); !user.empty()) {
        mail.UseAuthentication = true;
        mail.Username = user;
        mail.Password = trimmed_of(tbxPassword);
    }
    mail.From = trimmed_of(tbxSendEmail);
    mail.FromDisplayName = trimmed_of(tbxSendName);
    mail.Recipient = trimmed_of(tbxRecipEmail);
    mail.RecipientDisplayName = trimmed_of(tbxRecipName);
    mail.CcRecipient = trimmed_of(tbxCCEmail);
    mail.CcDisplayName = trimmed_of(tbxCCName);
    mail.BccRecipient = trimmed_of(tbxBCC);
    mail.ReplyToAddress = trimmed_of(tbxSendEmail);
    mail.Subject = trimmed_of(tbxSubject);
    mail.Message = trimmed_of(txtBody);
    mail.Attachment = trimmed_of(txtAttach);
    mail.Receipt = chkReadReceipt.value() != 0;
    mail.Priority = cboPriority.selected_data(mail.Priority);
    return mail;
}

void frmEmail::lvbSend_Click()
{
    with_failure_path(state_, ErrorMessenger, "frmEmail.lvbSend_Click", [&] {
        lvbSend.set_enabled(false);
        lstStatus.clear();
        set_pointer(Pointer::Hourglass);
        if (state_.ports.mail == nullptr) {
            throw Fault(fault::kCannotCreate, "This program has no way to send mail.", "poSendMail");
        }
        SendEvents events(*this);
        state_.ports.mail->Send(mail(), events);
        set_pointer(Pointer::Default);
        lvbSend.set_enabled(true);
    });
}

void frmEmail::lvbReset_Click()
{
    Clear_TheForm();
    Load_EmailDefaults();
}

void frmEmail::poSendMail_Progress(int32_t percent)
{
    lblProgress.set_caption(std::to_string(percent) + "% complete");
}

void frmEmail::poSendMail_Status(const std::string& text)
{
    lstStatus.add(text);
    // Scrolls to the end and shows no highlight.
    lstStatus.select(lstStatus.count() - 1);
    lstStatus.select(-1);
}

void frmEmail::poSendMail_SendSuccesful()
{
    poSendMail_Status("Email sent successfully!");
    lblProgress.set_caption("");
}

void frmEmail::poSendMail_SendFailed(const std::string& explanation)
{
    tell(state_, {"Email Failure", "Your attempt to send mail failed for the following reason(s): \r\n" + explanation,
                  Icon::Information});
    lblProgress.set_caption("");
    set_pointer(Pointer::Default);
    lvbSend.set_enabled(true);
}

}  // namespace velora::forms
