#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/smtp/checked_mail.h"

namespace velora::smtp {

/// A header line of free text, folded, what is not plain in encoded words (RFC 2047), with its line end.
std::string text_field(std::string_view name, std::string_view text);

/// A header line of mailboxes; empty when there is none.
std::string mailbox_field(std::string_view name, const std::vector<Mailbox>& mailboxes);

/// A parameter behind a header's value, on a line of its own: `;\r\n filename="a.pdf"`. What is not plain or long is
/// encoded, in pieces (RFC 2231).
std::string parameter(std::string_view name, std::string_view value);

/// UTF-8 as quoted-printable lines (RFC 2045, 6.7) that end in CR LF. Every line end of the text is one of them. No
/// line begins with a full stop, which would be doubled on the way.
std::string quoted_printable(std::string_view text);

/// Bytes as base64 lines that end in CR LF.
std::string base64_lines(std::string_view bytes);

/// The text with U+FFFD in the place of bytes that are no UTF-8.
std::string well_formed(std::string_view text);

/// Whether every byte belongs to a character.
bool is_utf8(std::string_view text);

}  // namespace velora::smtp
