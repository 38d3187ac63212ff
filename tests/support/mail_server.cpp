#include "support/mail_server.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace velora::test {
namespace {

std::vector<std::string> with_folder(const std::string& folder, std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), folder);
    return arguments;
}

}  // namespace

MailServer::MailServer(const std::string& folder, std::vector<std::string> arguments)
    : folder_(folder), process_("mail_server.py", with_folder(folder, std::move(arguments)))
{
    std::istringstream(process_.line()) >> address_ >> port_;
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
