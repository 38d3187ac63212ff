#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/host.h"
#include "host/options.h"

namespace velora {

namespace forms {
class frmEmail;
}

/// Composes a mail with the e-mail form, which takes server, sender and what else it knows from the settings, and
/// sends it. A failure is told in a box.
/// @param fill  puts into the form's boxes what differs from that
bool send_mail(Host& host, bool dry_run, const std::function<void(forms::frmEmail&)>& fill);

/// Sends the files of a document, as the selection form's "e-mail" does: to the recipient of the quote in hand unless
/// the options name another, with attachment and blind copy as the settings say.
/// @param files  all that the document was exported to, where the form knows the last
bool mail_document(Host& host, const MailOptions& options, const std::vector<std::string>& files);

/// Sends what the options say and nothing else of a run.
bool mail_message(Host& host, const MailOptions& options);

}  // namespace velora
