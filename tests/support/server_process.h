#pragma once

#include <string>
#include <vector>

namespace velora::test {

/// A script of this folder in a process of its own, which serves for the length of a scope: it writes a line when it
/// is ready, and ends with its input.
class ServerProcess {
public:
    /// @param script  "mail_server.py"
    explicit ServerProcess(const std::string& script, std::vector<std::string> arguments = {});
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    [[nodiscard]] const std::string& line() const { return line_; }

private:
    int pid_ = -1;
    int input_ = -1;
    std::string line_;
};

}  // namespace velora::test
