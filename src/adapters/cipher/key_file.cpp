#include "adapters/cipher/key_file.h"

#include <fcntl.h>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "values/atomic_file.h"
#include "values/fault.h"

namespace velora::cipher {

namespace {

namespace fs = std::filesystem;

class Descriptor {
public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    [[nodiscard]] int get() const { return descriptor_; }

private:
    int descriptor_;
};

Fault refusal(const fs::path& path, const std::string& reason)
{
    return {fault::kPathAccess, "The key file " + path.string() + " cannot be used: " + reason, path.string()};
}

void check_owner(const fs::path& path, int descriptor)
{
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) throw refusal(path, std::strerror(errno));
    if (!S_ISREG(status.st_mode)) throw refusal(path, "it is not a file");
    if (status.st_uid != ::geteuid()) throw refusal(path, "it belongs to another user");
    if ((status.st_mode & 077) != 0) {
        throw refusal(path, "others can read it. Take their permissions away (chmod 600) to use it again");
    }
}

/// Of two programs that make the key at once the first one wins.
void make_key(const fs::path& path)
{
    SecretKey key;
    randombytes_buf(key.data(), SecretKey::kSize);
    AtomicFile file(path, {.permissions = 0600, .first_wins = true, .leaves_copies = false});
    file.write({reinterpret_cast<const char*>(key.data()), SecretKey::kSize});
    file.finish();
}

}  // namespace

SecretKey::SecretKey(SecretKey&& other) noexcept : bytes_(other.bytes_)
{
    sodium_memzero(other.bytes_.data(), kSize);
}

SecretKey::~SecretKey()
{
    sodium_memzero(bytes_.data(), kSize);
}

std::optional<SecretKey> read_key(const fs::path& path)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.get() < 0) {
        if (errno == ENOENT) return std::nullopt;
        throw refusal(path, std::strerror(errno));
    }
    check_owner(path, file.get());
    std::optional<SecretKey> key(std::in_place);
    unsigned char one_more = 0;
    const auto size = ::read(file.get(), key->data(), SecretKey::kSize);
    if (size != static_cast<ssize_t>(SecretKey::kSize) || ::read(file.get(), &one_more, 1) != 0) {
        throw refusal(path, "it does not hold a key");
    }
    return key;
}

SecretKey read_or_make_key(const fs::path& path)
{
    if (auto key = read_key(path)) return std::move(*key);
    std::error_code error;
    if (path.has_parent_path()) fs::create_directories(path.parent_path(), error);
    if (error) throw refusal(path, error.message());
    make_key(path);
    auto key = read_key(path);
    if (!key) throw refusal(path, "it vanished");
    return std::move(*key);
}

}  // namespace velora::cipher
