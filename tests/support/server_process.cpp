#include "support/server_process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

namespace velora::test {

ServerProcess::ServerProcess(const std::string& script, std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"/usr/bin/python3", VELORA_SOURCE_DIR "/tests/support/" + script});
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
    for (char c = 0; ::read(out[0], &c, 1) == 1 && c != '\n';) line_ += c;
    ::close(out[0]);
}

ServerProcess::~ServerProcess()
{
    constexpr auto kPatience = std::chrono::seconds(30);
    constexpr auto kStep = std::chrono::milliseconds(20);
    ::close(input_);
    for (auto waited = kStep; waited < kPatience; waited += kStep) {
        if (::waitpid(pid_, nullptr, WNOHANG) != 0) return;
        std::this_thread::sleep_for(kStep);
    }
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
}

}  // namespace velora::test
