#pragma once

#include <sys/resource.h>

#include <csignal>

namespace velora::test {

/// Files may grow to so many bytes, as on a disk without room.
class SmallDisk {
public:
    explicit SmallDisk(rlim_t most) : handler_(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &before_);
        rlimit small = before_;
        small.rlim_cur = most;
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallDisk()
    {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

private:
    rlimit before_{};
    void (*handler_)(int);
};

}  // namespace velora::test
