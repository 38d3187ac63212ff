#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/mail_transport.h"

namespace velora::smtp {

struct Mailbox {
    std::string name;  ///< blank for none
    std::string address;
};

/// Where the mail is handed in.
struct Server {
    std::string host;
    uint16_t port = 25;
    bool speaks_tls = false;  ///< from the first byte, as "smtps" says

    [[nodiscard]] std::string url() const;
    [[nodiscard]] std::string place() const;  ///< "host:port", for people
};

/// A mail whose parts can be put into a message and said to a server.
struct CheckedMail {
    Server server;
    Mailbox from;
    std::vector<Mailbox> to, cc, bcc;
    std::string reply_to;
    std::vector<std::string> attachments;  ///< paths

    /// Everyone that the server is told, each once: in the order of `to`, `cc` and `bcc`.
    [[nodiscard]] std::vector<std::string> envelope() const;
};

/// What keeps a mail from being sent: a sentence for each fault, with the name of its box.
class MailRefused : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// @throws MailRefused
CheckedMail check(const MailProperties& mail);

/// "host", "host:port", "smtp://host:port" or "smtps://host:port". @throws MailRefused
Server read_server(const std::string& text);

}  // namespace velora::smtp
