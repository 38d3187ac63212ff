#pragma once

#include <functional>
#include <string>
#include <vector>

#include "adapters/smtp/mail_transport.h"

namespace velora::test {

class FixedDay final : public Clock {
public:
    [[nodiscard]] DateTime now() const override { return *DateTime::from_ymd(2026, 6, 15); }
};

/// Keeps what was told.
struct ToldEvents final : MailEvents {
    std::vector<int32_t> percents;
    std::vector<std::string> lines;
    std::string end = "no end";  ///< "sent", or the explanation of the failure
    int ends = 0;
    std::function<bool()> cancel = [] { return false; };

    void Progress(int32_t percent) override { percents.push_back(percent); }
    void Status(const std::string& text) override { lines.push_back(text); }
    void SendSuccesful() override { note("sent"); }
    void SendFailed(const std::string& explanation) override { note(explanation); }
    bool is_cancelled() override { return cancel(); }

private:
    void note(const std::string& what)
    {
        end = what;
        ++ends;
    }
};

/// A mail that nothing is wrong with.
inline MailProperties plain_mail(const std::string& server)
{
    MailProperties mail;
    mail.SMTPHost = server;
    mail.From = "sales@morvane.example";
    mail.ReplyToAddress = mail.From;
    mail.Recipient = "buyer@acme.example";
    mail.Subject = "Your quote";
    mail.Message = "Dear customer";
    return mail;
}

}  // namespace velora::test
