#pragma once

#include <memory>
#include <string>

#include "platform/stores.h"

namespace velora {

/// Scrambles with authenticated encryption (XChaCha20-Poly1305) under the key of a file, which the first scrambling
/// makes. The result is one line of base64 text. The empty text stays empty.
///
/// `scramble` and `unscramble` throw Fault 75 for a key file that others can read or that holds no key.
std::unique_ptr<PasswordCipher> key_file_cipher(std::string key_path);

}  // namespace velora
