#include "adapters/smtp/checked_mail.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <utility>

#include "values/characters.h"
#include "values/text.h"

namespace velora::smtp {
namespace {

constexpr uint16_t kPlainPort = 25;
constexpr uint16_t kTlsPort = 465;
constexpr size_t kLongestAddress = 254;  // RFC 5321, 4.5.3.1.3
constexpr size_t kLongestHost = 255;

constexpr auto kServerBox = "SMTP Server";

/// The boxes of the e-mail form whose text goes into a line of the message or of the talk with the server.
struct Box {
    const char* name;
    std::string MailProperties::*text;
};
constexpr Box kLineBoxes[] = {
    {kServerBox, &MailProperties::SMTPHost},
    {"SMTP User", &MailProperties::Username},
    {"SMTP Password", &MailProperties::Password},
    {"Sender Name", &MailProperties::FromDisplayName},
    {"Sender Email", &MailProperties::From},
    {"Sender Email", &MailProperties::ReplyToAddress},
    {"Recipient Name", &MailProperties::RecipientDisplayName},
    {"Recipient Email", &MailProperties::Recipient},
    {"CC Name", &MailProperties::CcDisplayName},
    {"CC Email", &MailProperties::CcRecipient},
    {"BCC Email", &MailProperties::BccRecipient},
    {"Subject", &MailProperties::Subject},
    {"Attachement", &MailProperties::Attachment},
};

bool each_is(std::string_view text, std::string_view marks)
{
    return std::ranges::all_of(
        text, [&](char c) { return is_letter_or_digit(c) || marks.find(c) != std::string_view::npos; });
}

/// A mailbox without its name, of ASCII characters and without quotes or comments (RFC 5321, 4.1.2).
bool is_address(std::string_view text)
{
    const size_t at = text.rfind('@');
    if (at == std::string_view::npos || text.size() > kLongestAddress) return false;
    const std::string_view local = text.substr(0, at);
    const std::string_view domain = text.substr(at + 1);
    const bool is_literal = domain.starts_with('[') && domain.ends_with(']') && domain.size() > 2;
    return !local.empty() && each_is(local, "!#$%&'*+-/=?^_`{|}~.") && !domain.empty() &&
           each_is(is_literal ? domain.substr(1, domain.size() - 2) : domain, is_literal ? ".:" : ".-");
}

/// Gathers what is wrong with a mail, so that it can be told at once.
class Checker {
public:
    explicit Checker(const MailProperties& mail) : mail_(mail) {}

    CheckedMail run()
    {
        check_lines();
        if (!reasons_.empty()) throw MailRefused(reasons_);  // nothing of such a text is taken apart
        CheckedMail checked;
        try {
            checked.server = read_server(mail_.SMTPHost);
        } catch (const MailRefused& refused) {
            add(refused.what());
        }
        checked.from = sender();
        checked.reply_to = mail_.ReplyToAddress;
        checked.to = mailboxes("Recipient Email", mail_.Recipient, mail_.RecipientDisplayName);
        checked.cc = mailboxes("CC Email", mail_.CcRecipient, mail_.CcDisplayName);
        checked.bcc = mailboxes("BCC Email", mail_.BccRecipient, {});
        if (trimmed(mail_.Recipient).empty()) add(R"(There is no address in "Recipient Email".)");
        for (const std::string& path : pieces(mail_.Attachment)) {
            if (!path.empty()) checked.attachments.push_back(path);
        }
        if (!reasons_.empty()) throw MailRefused(reasons_);
        return checked;
    }

private:
    void add(const std::string& reason)
    {
        if (reasons_.find(reason) != std::string::npos) return;
        reasons_ += (reasons_.empty() ? "" : "\r\n") + reason;
    }

    /// A line end would begin a header or a command of somebody else's making.
    void check_lines()
    {
        for (const Box& box : kLineBoxes) {
            if ((mail_.*box.text).find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos) continue;
            add("The text of \"" + std::string(box.name) + "\" has a line end in it.");
        }
    }

    [[nodiscard]] std::vector<std::string> pieces(std::string_view text) const
    {
        std::vector<std::string> found;
        const std::string& mark = mail_.Delimiter;
        for (size_t end = 0; !mark.empty() && (end = text.find(mark)) != std::string_view::npos;) {
            found.emplace_back(trimmed(text.substr(0, end)));
            text.remove_prefix(end + mark.size());
        }
        found.emplace_back(trimmed(text));
        return found;
    }

    void require_address(const char* box, const std::string& address)
    {
        const bool wanted = mail_.EmailAddressValidation != 0;
        // Without a check of the syntax an address still has to stay within its brackets.
        const bool fits = wanted ? is_address(address) : address.find_first_of(" <>\t\x7F") == std::string::npos;
        if (!fits) add("\"" + address + "\" in \"" + box + "\" is no e-mail address.");
    }

    Mailbox sender()
    {
        Mailbox from{mail_.FromDisplayName, mail_.From};
        if (trimmed(from.address).empty()) {
            add(R"(There is no address in "Sender Email".)");
        } else {
            require_address("Sender Email", from.address);
            if (!mail_.ReplyToAddress.empty()) require_address("Sender Email", mail_.ReplyToAddress);
        }
        return from;
    }

    /// The addresses of a box, each with the name at its place.
    std::vector<Mailbox> mailboxes(const char* box, const std::string& addresses, const std::string& names)
    {
        std::vector<Mailbox> found;
        const auto name_pieces = pieces(names);
        for (const std::string& address : pieces(addresses)) {
            if (address.empty()) continue;
            require_address(box, address);
            found.push_back({found.size() < name_pieces.size() ? name_pieces[found.size()] : "", address});
        }
        return found;
    }

    const MailProperties& mail_;
    std::string reasons_;
};

/// The domain of an address means the same in capitals, what stands before it may not.
std::string key_of(const std::string& address)
{
    const size_t at = address.rfind('@');
    return at == std::string::npos ? address : address.substr(0, at) + lower_ascii(address.substr(at));
}

[[noreturn]] void refuse_server(const std::string& text)
{
    throw MailRefused("\"" + text + "\" in \"" + kServerBox +
                      "\" is no server, which is written as host, host:port, smtp://host:port or smtps://host:port.");
}

std::optional<uint16_t> read_port(std::string_view text)
{
    uint16_t port = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), port);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size() || port == 0) return std::nullopt;
    return port;
}

bool is_host(std::string_view host)
{
    if (host.empty() || host.size() > kLongestHost) return false;
    if (host.starts_with('['))
        return host.size() > 2 && host.ends_with(']') && each_is(host.substr(1, host.size() - 2), ":.");
    return each_is(host, ".-_") && !host.starts_with('-');
}

}  // namespace

std::string Server::url() const
{
    return (speaks_tls ? "smtps://" : "smtp://") + place();
}

std::string Server::place() const
{
    return host + ":" + std::to_string(port);
}

Server read_server(const std::string& text)
{
    if (trimmed(text).empty()) throw MailRefused("There is no server in \"" + std::string(kServerBox) + "\".");
    constexpr std::pair<std::string_view, bool> kSchemes[] = {{"smtp://", false}, {"smtps://", true}};
    Server server;
    std::string_view rest = text;
    for (const auto& [scheme, tls] : kSchemes) {
        if (!same_name(rest.substr(0, scheme.size()), scheme)) continue;
        rest.remove_prefix(scheme.size());
        server.speaks_tls = tls;
        server.port = tls ? kTlsPort : kPlainPort;
        break;
    }
    const size_t colon = rest.find(':', rest.starts_with('[') ? rest.find(']') : 0);
    if (colon != std::string_view::npos) {
        const auto port = read_port(rest.substr(colon + 1));
        if (!port) refuse_server(text);
        server.port = *port;
        rest = rest.substr(0, colon);
    }
    if (!is_host(rest)) refuse_server(text);
    server.host = rest;
    return server;
}

std::vector<std::string> CheckedMail::envelope() const
{
    std::vector<std::string> told;
    std::vector<std::string> keys;
    for (const auto* box : {&to, &cc, &bcc}) {
        for (const Mailbox& mailbox : *box) {
            const std::string key = key_of(mailbox.address);
            if (std::ranges::find(keys, key) != keys.end()) continue;
            keys.push_back(key);
            told.push_back(mailbox.address);
        }
    }
    return told;
}

CheckedMail check(const MailProperties& mail)
{
    return Checker(mail).run();
}

}  // namespace velora::smtp
