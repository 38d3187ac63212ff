#pragma once

#include <array>
#include <filesystem>
#include <optional>

namespace velora::cipher {

/// A secret key, wiped when it goes.
class SecretKey {
public:
    static constexpr size_t kSize = 32;

    SecretKey() = default;
    SecretKey(const SecretKey&) = delete;
    SecretKey& operator=(const SecretKey&) = delete;
    SecretKey(SecretKey&& other) noexcept;
    SecretKey& operator=(SecretKey&&) = delete;
    ~SecretKey();

    [[nodiscard]] unsigned char* data() { return bytes_.data(); }
    [[nodiscard]] const unsigned char* data() const { return bytes_.data(); }

private:
    std::array<unsigned char, kSize> bytes_{};
};

/// The key of a file; none when there is no such file.
/// @throws Fault 75 when others than its owner can read it, when it belongs to someone else, or is no key
std::optional<SecretKey> read_key(const std::filesystem::path& path);

/// The key of a file, which is made when it is missing: its owner alone can read it.
/// @throws Fault 75 as `read_key`, and when it cannot be made
SecretKey read_or_make_key(const std::filesystem::path& path);

}  // namespace velora::cipher
