#pragma once

#include <string>
#include <vector>

#include "support/server_process.h"

namespace velora::test {

/// An SMTP server in a process of its own for the length of a scope; see mail_server.py for what it can be told.
class MailServer {
public:
    explicit MailServer(const std::string& folder, std::vector<std::string> arguments = {});

    [[nodiscard]] const std::string& address() const { return address_; }  ///< "none" where the machine has none
    [[nodiscard]] int port() const { return port_; }
    [[nodiscard]] std::string place() const { return address_ + ":" + std::to_string(port_); }

    /// What arrived as the `number`th mail, in lines; none when it did not.
    [[nodiscard]] std::vector<std::string> mail(int number = 1) const;

private:
    std::string folder_;
    ServerProcess process_;
    std::string address_;
    int port_ = 0;
};

/// Makes a key with its own certificate for 127.0.0.1, both in one file. False on a machine that cannot.
bool make_certificate(const std::string& file);

}  // namespace velora::test
