#include "adapters/cipher/password_cipher.h"

#include <sodium.h>

#include <vector>

#include "adapters/cipher/key_file.h"
#include "values/fault.h"

namespace velora {

namespace {

using Bytes = std::vector<unsigned char>;

// The form of the text, bound into the seal: a later form cannot be taken for this one.
constexpr unsigned char kForm = 1;
constexpr size_t kNonceSize = crypto_aead_xchacha20poly1305_ietf_NPUBBYTES;
constexpr size_t kSealSize = crypto_aead_xchacha20poly1305_ietf_ABYTES;
constexpr size_t kHeadSize = 1 + kNonceSize;
constexpr int kBase64 = sodium_base64_VARIANT_ORIGINAL;

const unsigned char* bytes_of(std::string_view text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

std::string to_base64(const Bytes& bytes)
{
    std::string text(sodium_base64_ENCODED_LEN(bytes.size(), kBase64), '\0');
    sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), kBase64);
    text.pop_back();  // the closing zero
    return text;
}

std::optional<Bytes> from_base64(std::string_view text)
{
    Bytes bytes(text.size());
    size_t size = 0;
    const char* end = nullptr;
    if (sodium_base642bin(bytes.data(), bytes.size(), text.data(), text.size(), nullptr, &size, &end, kBase64) != 0 ||
        end != text.data() + text.size()) {
        return std::nullopt;
    }
    bytes.resize(size);
    return bytes;
}

class KeyFileCipher final : public PasswordCipher {
public:
    explicit KeyFileCipher(std::string key_path) : key_path_(std::move(key_path))
    {
        if (sodium_init() < 0) throw Fault(fault::kCannotCreate, "The encryption library cannot be started");
    }

    std::string scramble(std::string_view text) override
    {
        if (text.empty()) return {};
        const auto key = cipher::read_or_make_key(key_path_);
        Bytes sealed(kHeadSize + text.size() + kSealSize);
        sealed[0] = kForm;
        randombytes_buf(sealed.data() + 1, kNonceSize);
        crypto_aead_xchacha20poly1305_ietf_encrypt(sealed.data() + kHeadSize, nullptr, bytes_of(text), text.size(),
                                                   &kForm, 1, nullptr, sealed.data() + 1, key.data());
        return to_base64(sealed);
    }

    std::string unscramble(std::string_view text) override
    {
        if (text.empty()) return {};
        const auto sealed = from_base64(text);
        if (!sealed || sealed->size() < kHeadSize + kSealSize || sealed->front() != kForm) return {};
        const auto key = cipher::read_key(key_path_);
        if (!key) return {};
        std::string opened(sealed->size() - kHeadSize - kSealSize, '\0');
        const int status = crypto_aead_xchacha20poly1305_ietf_decrypt(
            reinterpret_cast<unsigned char*>(opened.data()), nullptr, nullptr, sealed->data() + kHeadSize,
            sealed->size() - kHeadSize, &kForm, 1, sealed->data() + 1, key->data());
        return status == 0 ? opened : std::string();
    }

private:
    std::string key_path_;
};

}  // namespace

std::unique_ptr<PasswordCipher> key_file_cipher(std::string key_path)
{
    return std::make_unique<KeyFileCipher>(std::move(key_path));
}

}  // namespace velora
