#pragma once

#include <iosfwd>
#include <memory>

#include "adapters/smtp/mail_server_rules.h"
#include "platform/mail_transport.h"
#include "platform/region.h"

namespace velora {

/// Sends over SMTP. A failure of any kind is told as `SendFailed`, never thrown.
/// @param clock  gives the day of the mail, and has to outlive the transport
std::unique_ptr<MailTransport> smtp_mail_transport(const Clock& clock, MailServerRules rules);

/// Sends nothing: writes the message to the stream, with the day's beginning as its time and a Message-ID of its own,
/// so that the same mail is the same bytes all day.
std::unique_ptr<MailTransport> mail_writer(const Clock& clock, std::ostream& out);

}  // namespace velora
