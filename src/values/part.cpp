#include "values/part.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <mutex>
#include <random>
#include <set>

#include "values/hex.h"
#include "values/utf8.h"

namespace velora {

/// One name that a signal removes. Kept for ever and used again, since a signal may come at any moment.
struct Part::Registered {
    std::atomic<char*> path{nullptr};
    std::atomic<bool> is_taken{true};
    Registered* next = nullptr;
};

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kMark = ".velora-";
constexpr std::string_view kEnd = ".part";
constexpr size_t kDigits = 16;
constexpr size_t kLongestName = 255;

std::atomic<Part::Registered*> registry{nullptr};

static_assert(std::atomic<char*>::is_always_lock_free, "a signal reads the names of the parts");

Part::Registered* enter(const std::string& path)
{
    Part::Registered* entry = registry.load();
    while (entry != nullptr && entry->is_taken.exchange(true)) entry = entry->next;
    if (entry == nullptr) {
        entry = new Part::Registered;
        entry->next = registry.load();
        while (!registry.compare_exchange_weak(entry->next, entry)) {
        }
    }
    entry->path = ::strdup(path.c_str());
    return entry;
}

void leave(Part::Registered* entry)
{
    std::free(entry->path.exchange(nullptr));  // null when a signal has taken it
    entry->is_taken = false;
}

/// Removes a file or a folder with all that is in it, by nothing but system calls.
void remove_at_once(int folder, const char* name)
{
    if (::unlinkat(folder, name, 0) == 0 || (errno != EISDIR && errno != EPERM)) return;
    const int inside = ::openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (inside < 0) return;
    alignas(dirent64) char entries[4096];
    for (ssize_t size; (size = ::getdents64(inside, entries, sizeof entries)) > 0;) {
        for (ssize_t at = 0; at < size;) {
            const auto* entry = reinterpret_cast<const dirent64*>(entries + at);
            at += entry->d_reclen;
            const bool is_own = std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0;
            if (!is_own) remove_at_once(inside, entry->d_name);
        }
    }
    ::close(inside);
    ::unlinkat(folder, name, AT_REMOVEDIR);
}

extern "C" void remove_parts_and_end(int signal)
{
    for (auto* entry = registry.load(); entry != nullptr; entry = entry->next) {
        if (const char* path = entry->path.exchange(nullptr)) remove_at_once(AT_FDCWD, path);
    }
    ::raise(signal);  // its handler is the usual one again
}

bool is_part_name(std::string_view name)
{
    if (!name.ends_with(kEnd)) return false;
    name.remove_suffix(kEnd.size());
    if (name.size() < kMark.size() + kDigits) return false;
    const std::string_view digits = name.substr(name.size() - kDigits);
    name.remove_suffix(kDigits);
    return name.ends_with(kMark) && std::ranges::all_of(digits, [](char c) { return hex_value(c) >= 0; });
}

/// A part that nobody holds is a dead program's.
void remove_when_dead(const fs::path& part)
{
    const int descriptor = ::open(part.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return;
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) remove_at_once(AT_FDCWD, part.c_str());
    ::close(descriptor);
}

/// Once for each folder that this program writes to.
void sweep(const fs::path& folder)
{
    static std::mutex guard;
    static std::set<fs::path> swept;
    {
        const std::lock_guard lock(guard);
        if (!swept.insert(folder).second) return;
    }
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        if (is_part_name(entry->path().filename().native())) remove_when_dead(entry->path());
    }
}

fs::path folder_of(const fs::path& place)
{
    return place.has_parent_path() ? place.parent_path() : fs::path(".");
}

fs::path part_name(const fs::path& place)
{
    std::random_device random;
    std::string ending(kMark);
    append_hex(ending, uint64_t{random()} << 32 | random(), kDigits);
    ending += kEnd;
    const std::string name = place.filename().native();
    // A name that is itself too long for the folder is refused under a part's name that is too long as well.
    const bool fits = name.size() > kLongestName || name.size() + ending.size() <= kLongestName;
    return place.parent_path() / (std::string(fits ? name : cut_to_bytes(name, kLongestName - ending.size())) + ending);
}

}  // namespace

Part::Part(const fs::path& place) : path_(part_name(place)), registered_(nullptr)
{
    sweep(folder_of(place));
    registered_ = enter(path_.native());
}

Part::~Part()
{
    if (!is_finished_) remove_at_once(AT_FDCWD, path_.c_str());
    leave(registered_);
}

bool Part::hold(int descriptor)
{
    ::flock(descriptor, LOCK_EX | LOCK_NB);  // where the file system knows no locks, nobody sweeps either
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && status.st_nlink > 0;
}

void remove_parts_on_signals()
{
    std::signal(SIGXFSZ, SIG_IGN);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        struct sigaction before {};
        if (::sigaction(signal, nullptr, &before) != 0 || before.sa_handler == SIG_IGN) continue;
        struct sigaction ending {};
        ending.sa_handler = remove_parts_and_end;
        ending.sa_flags = static_cast<int>(SA_RESETHAND);
        ::sigaction(signal, &ending, nullptr);
    }
}

}  // namespace velora
