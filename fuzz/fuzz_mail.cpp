#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "adapters/smtp/mime_message.h"
#include "adapters/smtp/smtp_talk.h"

namespace {

using velora::MailProperties;

/// The header of a message: what stands before its first empty line.
void require_own_headers(std::string_view message)
{
    constexpr std::string_view kOwn[] = {"Date",
                                         "From",
                                         "Reply-To",
                                         "To",
                                         "Cc",
                                         "Subject",
                                         "Message-ID",
                                         "X-Priority",
                                         "Importance",
                                         "Disposition-Notification-To",
                                         "MIME-Version",
                                         "Content-Type",
                                         "Content-Transfer-Encoding"};
    constexpr size_t kLongestLine = 998;
    for (bool in_header = true; !message.empty();) {
        const size_t end = message.find("\r\n");
        if (end == std::string_view::npos || end > kLongestLine) std::abort();
        const std::string_view line = message.substr(0, end);
        if (line.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos) std::abort();
        in_header = in_header && !line.empty();
        bool known = !in_header || line.starts_with(' ');
        for (const auto name : kOwn) known = known || line.starts_with(std::string(name) + ": ");
        if (!known) std::abort();
        message.remove_prefix(end + 2);
    }
}

}  // namespace

/// Any texts in the boxes, a line each and the rest as the message: refused, or a message of our own headers only, with
/// lines that every server takes. The same bytes as a server's answers are told in short lines.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    velora::smtp::SmtpTalk talk("user", size);
    MailProperties mail;
    for (auto box : {&MailProperties::SMTPHost, &MailProperties::From, &MailProperties::FromDisplayName,
                     &MailProperties::Recipient, &MailProperties::RecipientDisplayName, &MailProperties::CcRecipient,
                     &MailProperties::CcDisplayName, &MailProperties::BccRecipient, &MailProperties::ReplyToAddress,
                     &MailProperties::Subject}) {
        const size_t end = std::min(rest.find('\n'), rest.size());
        mail.*box = rest.substr(0, end);
        talk.said(rest.substr(0, end));
        talk.heard(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    mail.Message = rest;
    mail.Receipt = size % 2 == 0;
    constexpr size_t kLongestTold = 600;
    for (const auto& line : talk.take_lines()) {
        if (line.size() > kLongestTold) std::abort();
    }
    try {
        const auto checked = velora::smtp::check(mail);
        require_own_headers(velora::smtp::mime_message(mail, checked, {"Mon, 15 Jun 2026 00:00:00 +0000", "id"}));
    } catch (const velora::smtp::MailRefused&) {
    }
    return 0;
}
