#include "support/fake_mail.h"

namespace velora::test {

std::vector<std::string> properties_of(const MailProperties& mail)
{
    const auto flag = [](bool set) { return std::string(set ? "True" : "False"); };
    return {
        "SMTPHostValidation " + std::to_string(mail.SMTPHostValidation),
        "EmailAddressValidation " + std::to_string(mail.EmailAddressValidation),
        "Delimiter " + mail.Delimiter,
        "SMTPHost " + mail.SMTPHost,
        "UseAuthentication " + flag(mail.UseAuthentication),
        "Username " + mail.Username,
        "Password " + mail.Password,
        "From " + mail.From,
        "FromDisplayName " + mail.FromDisplayName,
        "Recipient " + mail.Recipient,
        "RecipientDisplayName " + mail.RecipientDisplayName,
        "CcRecipient " + mail.CcRecipient,
        "CcDisplayName " + mail.CcDisplayName,
        "BccRecipient " + mail.BccRecipient,
        "ReplyToAddress " + mail.ReplyToAddress,
        "Subject " + mail.Subject,
        "Message " + mail.Message,
        "Attachment " + mail.Attachment,
        "Receipt " + flag(mail.Receipt),
        "Priority " + std::to_string(mail.Priority),
    };
}

}  // namespace velora::test
