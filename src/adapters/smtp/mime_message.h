#pragma once

#include <string>

#include "adapters/smtp/checked_mail.h"

namespace velora::smtp {

/// What a message has that its sender did not write.
struct Stamp {
    std::string date;        ///< as the header takes it
    std::string message_id;  ///< without its domain
};

/// The message as it goes to a server: headers, text and attachments, lines ending in CR LF. Blind copies are not in
/// it.
/// @throws MailRefused for attachments that cannot be read or are too large, each with its reason
std::string mime_message(const MailProperties& mail, const CheckedMail& checked, const Stamp& stamp);

/// The media type of a file by the ending of its name.
std::string media_type(const std::string& file_name);

}  // namespace velora::smtp
