#pragma once

#include <atomic>
#include <filesystem>
#include <string>

namespace velora {

/// The name of a file or folder in the making, beside the place that it is to take: "NAME.velora-SIXTEEN_DIGITS.part".
///
/// A part is removed when its name goes before it was finished, when a signal ends the program (see
/// `remove_parts_on_signals`), and, after a power failure or a kill, by the next run that makes something in the
/// folder. So that a run knows what others still work on, the maker of a part holds it with `hold`.
class Part {
public:
    /// @param place  what the part is to become; parts of dead programs in its folder are removed
    explicit Part(const std::filesystem::path& place);
    ~Part();
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// Marks the open part as one in work, for as long as the descriptor is open.
    /// @return false when another program took it for a dead one's in between: make it again
    [[nodiscard]] static bool hold(int descriptor);

    /// The part has its final name, or none at all.
    void finished() { is_finished_ = true; }

    struct Registered;

private:
    std::filesystem::path path_;
    bool is_finished_ = false;
    Registered* registered_;
};

/// From now on the signals that end a program (Ctrl-C, SIGTERM, SIGHUP, SIGPIPE) remove its parts first, and a file
/// that grows beyond what is allowed is an error of writing instead of the program's end. Signals that the program was
/// told to ignore stay ignored.
void remove_parts_on_signals();

}  // namespace velora
