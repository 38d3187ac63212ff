#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velora::engine {

/// Bytes that are put away one piece after the other and come back by their place. What a small buffer does not hold
/// goes to a file for temporary things that nobody else can open and that is gone with the program, however it ends.
class ScratchBytes {
public:
    ScratchBytes() = default;
    ScratchBytes(const ScratchBytes&) = delete;
    ScratchBytes& operator=(const ScratchBytes&) = delete;
    ~ScratchBytes();

    /// @return its place
    /// @throws Fault  when there is no room for such files
    uint64_t append(std::string_view bytes);
    [[nodiscard]] std::string read(uint64_t at, size_t size) const;

    static constexpr size_t kBuffer = 1024 * 1024;
    [[nodiscard]] uint64_t in_file() const { return in_file_; }

private:
    void write_out();

    int file_ = -1;
    uint64_t in_file_ = 0;
    std::string waiting_;  ///< what comes behind the file's end
};

}  // namespace velora::engine
