#include "support/mail_server.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace velora::test {

MailServer::MailServer(const std::string& folder, std::vector<std::string> arguments) : folder_(folder)
{
    arguments.insert(arguments.begin(),
                     {"/usr/bin/python3", VELORA_SOURCE_DIR "/tests/support/mail_server.py", folder});
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (::pipe2(in.data(), O_CLOEXEC) != 0 || ::pipe2(out.data(), O_CLOEXEC) != 0) std::abort();
    pid_ = ::fork();
    if (pid_ == 0) {
        ::dup2(in[0], STDIN_FILENO);
        ::dup2(out[1], STDOUT_FILENO);
        std::vector<char*> words;
        for (std::string& argument : arguments) words.push_back(argument.data());
        words.push_back(nullptr);
        ::execvp(words.front(), words.data());
        ::_exit(127);
    }
    ::close(in[0]);
    ::close(out[1]);
    input_ = in[1];
    std::string line;
    for (char c = 0; ::read(out[0], &c, 1) == 1 && c != '\n';) line += c;
    ::close(out[0]);
    std::istringstream(line) >> address_ >> port_;
}

MailServer::~MailServer()
{
    ::close(input_);
    ::waitpid(pid_, nullptr, 0);
}

std::vector<std::string> MailServer::mail(int number) const
{
    std::ifstream file(folder_ + "/mail-" + std::to_string(number));
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
}

bool make_certificate(const std::string& file)
{
    const std::string command =
        "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 36500 -subj /CN=mail.test "
        "-addext subjectAltName=IP:127.0.0.1 -keyout '" +
        file + "' -out '" + file + ".pem' >/dev/null 2>&1 && cat '" + file + ".pem' >>'" + file + "'";
    return std::system(command.c_str()) == 0;
}

}  // namespace velora::test
