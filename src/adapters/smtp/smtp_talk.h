#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velora::smtp {

/// What is said between the two ends of a connection: follows the commands and the answers, puts them into words for
/// the person, and remembers what was refused.
class SmtpTalk {
public:
    /// @param user  who logs in, for the words; @param size  of the message in bytes
    SmtpTalk(std::string user, size_t size) : user_(std::move(user)), size_(size) {}

    /// A command line as it left.
    void said(std::string_view line);
    /// A line of the server's answer.
    void heard(std::string_view line);

    struct Refusal {
        std::string what;    ///< "The server refused the recipient \"a@b.example\"."
        std::string answer;  ///< the server's own words
    };
    [[nodiscard]] const std::vector<Refusal>& refused_recipients() const { return recipients_; }
    /// Of anything but a recipient; blank while there was none.
    [[nodiscard]] const Refusal& refusal() const { return refusal_; }
    [[nodiscard]] bool is_over() const { return step_ == Step::Quit; }

    /// The lines for the person since the last call, bounded in number and length whatever the server says.
    std::vector<std::string> take_lines();

private:
    enum class Step { Greeting, Hello, Tls, Login, Sender, Recipient, Message, Quit };

    void tell(std::string line);
    [[nodiscard]] std::string refused_what() const;

    std::string user_;
    size_t size_;
    Step step_ = Step::Greeting;
    std::string address_;  ///< of the sender or recipient that was told last
    std::string answer_;   ///< lines so far
    std::vector<Refusal> recipients_;
    Refusal refusal_;
    std::vector<std::string> lines_;
    size_t told_ = 0;
};

/// A line from outside for a person to read: without control characters, as UTF-8, of a length that fits a list.
std::string readable(std::string_view line);

}  // namespace velora::smtp
