#pragma once

#include <chrono>
#include <iosfwd>
#include <memory>
#include <string>

#include "platform/mail_transport.h"
#include "platform/region.h"

namespace velora {

/// How mail servers are met.
struct MailServerRules {
    std::string certificate_authority;  ///< file of a private authority beside those of the system; blank: none
    std::chrono::seconds timeout{30};   ///< how long a server may keep silent
};

/// Sends over SMTP. A failure of any kind is told as `SendFailed`, never thrown.
/// @param clock  gives the day of the mail, and has to outlive the transport
std::unique_ptr<MailTransport> smtp_mail_transport(const Clock& clock, MailServerRules rules);

/// Sends nothing: writes the message to the stream, with the day's beginning as its time and a Message-ID of its own,
/// so that the same mail is the same bytes all day.
std::unique_ptr<MailTransport> mail_writer(const Clock& clock, std::ostream& out);

}  // namespace velora
