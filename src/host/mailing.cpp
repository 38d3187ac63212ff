#include "host/mailing.h"

#include <fstream>
#include <iostream>
#include <iterator>

#include "adapters/smtp/mail_transport.h"
#include "adapters/terminal/progress_bar.h"
#include "forms/desk.h"
#include "forms/frm_email.h"
#include "host/adapters.h"
#include "host/host_error.h"
#include "session/company.h"

namespace velora {
namespace {

/// Hands a mail on, and tells the person on the terminal how it goes.
class ToldMail final : public MailTransport {
public:
    ToldMail(MailTransport& below, Host& host) : below_(below), host_(host) {}

    void Send(const MailProperties& mail, MailEvents& events) override
    {
        Events told(*this, events);
        below_.Send(mail, told);
    }
    [[nodiscard]] bool is_sent() const { return is_sent_; }

private:
    class Events final : public MailEvents {
    public:
        Events(ToldMail& mail, MailEvents& form)
            : mail_(mail), form_(form), bar_(mail.host_.around().err, mail.host_.is_watched(), "E-mail")
        {
        }
        void Progress(int32_t percent) override
        {
            constexpr size_t kWhole = 100;
            bar_.show(static_cast<size_t>(percent), kWhole);
            form_.Progress(percent);
        }
        void Status(const std::string& text) override
        {
            bar_.clear();
            if (!mail_.host_.options().quiet) mail_.host_.around().err << text << '\n';
            form_.Status(text);
        }
        void SendSuccesful() override
        {
            mail_.is_sent_ = true;
            form_.SendSuccesful();
        }
        void SendFailed(const std::string& explanation) override
        {
            bar_.clear();
            form_.SendFailed(explanation);
        }
        bool is_cancelled() override { return form_.is_cancelled(); }

    private:
        ToldMail& mail_;
        MailEvents& form_;
        ProgressBar bar_;
    };

    MailTransport& below_;
    Host& host_;
    bool is_sent_ = false;
};

std::string joined(const std::vector<std::string>& pieces)
{
    std::string text;
    for (const std::string& piece : pieces) text += (text.empty() ? "" : ";") + piece;
    return text;
}

std::string text_of(const std::string& file)
{
    constexpr size_t kMostBytes = 10'000'000;
    std::ifstream opened;
    if (file != "-") opened.open(file, std::ios::binary);
    std::istream& in = file == "-" ? std::cin : opened;
    std::string text(kMostBytes + 1, '\0');
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<size_t>(in.gcount()));
    if (in.bad() || (file != "-" && !opened.is_open())) {
        throw HostError("Email Failure", "The text of the mail cannot be read: \"" + file + "\".");
    }
    if (text.size() > kMostBytes) {
        throw HostError("Email Failure", "The text of the mail, \"" + file + "\", is longer than 10 MB. Attach it.");
    }
    return text;
}

/// Subject and text, which no setting gives.
void fill_words(forms::frmEmail& form, const MailOptions& options)
{
    form.tbxSubject.set_text(options.subject);
    if (!options.body.empty()) form.txtBody.set_text(text_of(options.body));
}

}  // namespace

bool send_mail(Host& host, bool dry_run, const std::function<void(forms::frmEmail&)>& fill)
{
    SessionState& state = host.company();
    state.gReportSection = company_id(state) + "_Report";
    std::unique_ptr<MailTransport> writer;
    if (dry_run) {
        host.leave_standard_output();
        writer = mail_writer(*state.ports.clock, host.around().out);
    }
    MailTransport* const usual = state.ports.mail;
    ToldMail transport(writer ? *writer : *usual, host);
    forms::Desk desk(state);
    forms::frmEmail form(desk);
    form.load();
    fill(form);
    state.ports.mail = &transport;
    form.lvbSend.press();
    state.ports.mail = usual;
    return transport.is_sent();
}

bool mail_document(Host& host, const MailOptions& options, const std::vector<std::string>& files)
{
    return send_mail(host, options.dry_run, [&](forms::frmEmail& form) {
        if (!form.txtAttach.text().empty()) form.txtAttach.set_text(joined(files));
        if (!options.to.empty()) {
            form.tbxRecipName.set_text("");
            form.tbxRecipEmail.set_text(joined(options.to));
        }
        fill_words(form, options);
    });
}

bool mail_message(Host& host, const MailOptions& options)
{
    return send_mail(host, options.dry_run, [&](forms::frmEmail& form) {
        form.tbxRecipEmail.set_text(joined(options.to));
        form.tbxCCEmail.set_text(joined(options.cc));
        form.tbxBCC.set_text(joined(options.bcc));
        form.txtAttach.set_text(joined(options.attachments));
        fill_words(form, options);
    });
}

}  // namespace velora
