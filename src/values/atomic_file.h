#pragma once

#include <sys/types.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "values/part.h"

namespace velora {

/// A file that comes into being as a whole: bytes go to a part beside it, which `finish` flushes to the disk and puts
/// in its place. Destroyed unfinished, it leaves the target as it was.
///
/// A link leads to the file that is written, and an earlier file hands on its permissions and its owner. What is
/// neither file nor folder, such as a device, a pipe or a stream of this program, is never replaced: `finish` writes
/// the finished bytes into it. "-" is a file name like any other.
class AtomicFile {
public:
    struct Options {
        mode_t permissions = 0666;  ///< of a new file, less what the user's mask takes away
        bool first_wins = false;    ///< a file that was made in between stays
        bool leaves_copies = true;  ///< of the bytes in this program's memory, which makes small writes quick
    };

    /// @throws Fault 75 with file name and reason
    explicit AtomicFile(std::filesystem::path target) : AtomicFile(std::move(target), Options()) {}
    AtomicFile(std::filesystem::path target, Options options);
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    ~AtomicFile() = default;

    /// @throws Fault 75 with file name and reason, a full disk for example
    void write(std::string_view bytes);
    void finish();

    [[nodiscard]] const std::filesystem::path& target() const { return target_; }

private:
    struct Close {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };
    using File = std::unique_ptr<std::FILE, Close>;

    void open_part();
    void take_place();
    void pour_into_target();
    [[noreturn]] void fail(int error) const;

    std::filesystem::path target_;  ///< as it was named
    std::filesystem::path place_;   ///< what takes the finished bytes
    Options options_;
    std::optional<Part> part_;  ///< none for what is not replaced
    File file_;                 ///< goes before the part does
};

/// Puts the content in the place of the file, whole or not at all. @throws Fault 75
void write_file(const std::filesystem::path& target, std::string_view content);

}  // namespace velora
