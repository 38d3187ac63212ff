#include "engine/picture/bounded_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>

namespace velora::engine {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kLongest = std::chrono::seconds(10);
constexpr rlim_t kMostSeconds = 8;  // of a processor
constexpr rlim_t kMostMemory = rlim_t{1} << 30;
constexpr size_t kMostAnswer = size_t{256} << 20;

void limit(int what, rlim_t most)
{
    const rlimit limits{most, most};
    ::setrlimit(static_cast<__rlimit_resource>(what), &limits);
}

[[noreturn]] void work_and_leave(int out, const std::function<std::string()>& work)
{
    limit(RLIMIT_CPU, kMostSeconds);
#ifndef __SANITIZE_ADDRESS__  // whose own map alone is far larger
    limit(RLIMIT_DATA, kMostMemory);
#endif
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);  // it has nothing to write
    for (const int signal : {SIGTERM, SIGINT, SIGXCPU, SIGSEGV, SIGABRT}) ::signal(signal, SIG_DFL);
    std::string answer;
    try {
        answer = work();
    } catch (...) {
        ::_exit(1);  // none of this process's handlers and destructors may run twice
    }
    for (size_t sent = 0; sent < answer.size();) {
        const ssize_t count = ::write(out, answer.data() + sent, answer.size() - sent);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) ::_exit(1);
        sent += static_cast<size_t>(count);
    }
    ::_exit(0);
}

/// Reads until the process closes its end. @return whether that came in time
bool read_all(int in, std::string& answer)
{
    const auto end = Clock::now() + kLongest;
    std::array<char, 65536> buffer{};
    while (answer.size() <= kMostAnswer) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd wait{in, POLLIN, 0};
        const int ready = left <= 0 ? 0 : ::poll(&wait, 1, static_cast<int>(left));
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return false;
        const ssize_t count = ::read(in, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return count == 0;
        answer.append(buffer.data(), static_cast<size_t>(count));
    }
    return false;
}

}  // namespace

std::string answer_of_process(const std::function<std::string()>& work)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        work_and_leave(ends[1], work);
    }
    ::close(ends[1]);
    std::string answer;
    const bool in_time = child > 0 && read_all(ends[0], answer);
    ::close(ends[0]);
    if (child < 0) return {};
    if (!in_time) ::kill(child, SIGKILL);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    const bool is_whole = in_time && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return is_whole ? answer : std::string();
}

}  // namespace velora::engine
