#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velora {

/// Bytes in base64 with padding, on one line (RFC 4648, section 4).
std::string to_base64(std::string_view bytes);

/// The bytes of a base64 text; none for what is no such text. Blanks and line ends are passed over, and padding may be
/// missing.
std::optional<std::string> from_base64(std::string_view text);

}  // namespace velora
