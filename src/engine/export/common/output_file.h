#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace velora::engine {

/// A file that comes into being as a whole: bytes go to a temporary file beside it, which `finish` renames.
/// Destroyed unfinished, it removes the temporary file.
///
/// A link leads to the file that is written. What is neither file nor folder, such as a device or a pipe, is never
/// replaced: `finish` writes the finished bytes into it.
class OutputFile {
public:
    /// @throws Fault 75 with file name and reason
    explicit OutputFile(std::filesystem::path target);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// @throws Fault 75 with file name and reason, a full disk for example
    void write(std::string_view bytes);
    void finish();

    [[nodiscard]] const std::filesystem::path& target() const { return target_; }

private:
    struct Close {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };
    void pour_into_target();
    [[noreturn]] void fail(int error) const;

    std::filesystem::path target_;  ///< as it was named
    bool replaceable_;
    std::filesystem::path place_;  ///< what takes the finished file
    std::filesystem::path temporary_;
    std::unique_ptr<std::FILE, Close> file_;
};

}  // namespace velora::engine
