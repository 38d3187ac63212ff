#include "adapters/smtp/smtp_talk.h"

#include <utility>

#include "adapters/smtp/header_text.h"
#include "values/utf8.h"

namespace velora::smtp {
namespace {

constexpr size_t kMostLines = 300;
constexpr size_t kLongestLine = 500;
constexpr size_t kLongestAnswer = 2000;
constexpr size_t kMostRefusals = 1000;

bool starts(std::string_view line, std::string_view command)
{
    return line.substr(0, command.size()) == command;
}

/// What stands between the brackets of "RCPT TO:<a@b>".
std::string between_brackets(std::string_view line)
{
    const size_t open = line.find('<');
    const size_t close = line.find('>');
    return open < close && close != std::string_view::npos ? readable(line.substr(open + 1, close - open - 1)) : "";
}

std::string amount(size_t bytes)
{
    constexpr size_t kKilo = 1000;
    return bytes < kKilo ? std::to_string(bytes) + " bytes" : std::to_string((bytes + kKilo / 2) / kKilo) + " KB";
}

}  // namespace

void SmtpTalk::said(std::string_view line)
{
    if (line != "QUIT\r\n") refusal_ = {};  // it went on all the same
    if (starts(line, "EHLO") || starts(line, "HELO")) {
        step_ = Step::Hello;
    } else if (starts(line, "STARTTLS")) {
        step_ = Step::Tls;
        tell("Securing the connection");
    } else if (starts(line, "AUTH ")) {
        step_ = Step::Login;
        tell("Logging in as " + readable(user_));
    } else if (starts(line, "MAIL FROM:")) {
        step_ = Step::Sender;
        address_ = between_brackets(line);
        tell("Sender " + address_);
    } else if (starts(line, "RCPT TO:")) {
        step_ = Step::Recipient;
        address_ = between_brackets(line);
        tell("Recipient " + address_);
    } else if (line == "DATA\r\n") {
        step_ = Step::Message;
        tell("Sending the message, " + amount(size_));
    } else if (line == "QUIT\r\n") {
        step_ = Step::Quit;
    }
}

void SmtpTalk::heard(std::string_view line)
{
    const std::string words = readable(line);
    tell(words);
    if (answer_.size() < kLongestAnswer) answer_ += (answer_.empty() ? "" : "\r\n") + words;
    const bool goes_on = line.size() > 3 && line[3] == '-';
    if (goes_on) return;
    const std::string answer = std::exchange(answer_, {});
    const bool is_refusal = line.starts_with('4') || line.starts_with('5');
    if (!is_refusal) return;
    if (step_ != Step::Recipient) {
        refusal_ = {refused_what(), answer};
    } else if (recipients_.size() < kMostRefusals) {
        recipients_.push_back({refused_what(), answer});
    }
}

std::string SmtpTalk::refused_what() const
{
    switch (step_) {
        case Step::Tls:
            return "The server would not secure the connection.";
        case Step::Login:
            return "The server refused the login of \"" + readable(user_) + "\".";
        case Step::Sender:
            return "The server refused the sender \"" + address_ + "\".";
        case Step::Recipient:
            return "The server refused the recipient \"" + address_ + "\".";
        case Step::Message:
            return "The server refused the message.";
        default:
            return "The server does not take mail from here.";
    }
}

std::vector<std::string> SmtpTalk::take_lines()
{
    return std::exchange(lines_, {});
}

void SmtpTalk::tell(std::string line)
{
    if (told_++ < kMostLines) lines_.push_back(std::move(line));
}

std::string readable(std::string_view line)
{
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.remove_suffix(1);
    std::string words;
    for (const auto [character, size, at] : Utf8Characters(cut_to_bytes(line, kLongestLine))) {
        const bool is_control = character < ' ' || (character >= 0x7F && character < 0xA0);
        append_utf8(words, is_control ? U' ' : character);
    }
    return std::string(cut_to_bytes(words, kLongestLine));  // what is no UTF-8 has grown
}

}  // namespace velora::smtp
