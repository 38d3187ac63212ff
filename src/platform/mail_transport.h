#pragma once

#include <cstdint>
#include <string>

namespace velora {

/// One e-mail and how it goes: the properties of the mail component, in the order in which they are set.
struct MailProperties {
    int16_t SMTPHostValidation = 0;      ///< 0: none
    int16_t EmailAddressValidation = 1;  ///< 1: by syntax
    std::string Delimiter = ";";         ///< between several addresses, names or attachments
    std::string SMTPHost;
    bool UseAuthentication = false;
    std::string Username;
    std::string Password;
    std::string From;
    std::string FromDisplayName;
    std::string Recipient;
    std::string RecipientDisplayName;
    std::string CcRecipient;
    std::string CcDisplayName;
    std::string BccRecipient;
    std::string ReplyToAddress;
    std::string Subject;
    std::string Message;
    std::string Attachment;
    bool Receipt = false;
    int32_t Priority = 3;  ///< 5 low, 3 normal, 1 high
};

/// What the mail component tells while it sends, on the thread that called `Send`.
class MailEvents {
public:
    virtual ~MailEvents() = default;
    virtual void Progress(int32_t percent) = 0;
    virtual void Status(const std::string& text) = 0;
    virtual void SendSuccesful() = 0;
    virtual void SendFailed(const std::string& explanation) = 0;

    /// Asked often while a send waits, so that the windows stay alive meanwhile. True ends the send without a further
    /// event.
    virtual bool is_cancelled() = 0;
};

/// Sends e-mail.
class MailTransport {
public:
    virtual ~MailTransport() = default;
    /// Returns when the mail is through or has failed, after the one of the two last events that says so.
    virtual void Send(const MailProperties& mail, MailEvents& events) = 0;
};

}  // namespace velora
