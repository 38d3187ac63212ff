#pragma once

#include <string>
#include <string_view>

namespace velora::engine {

/// Appends text so that it is text anywhere in HTML, also between double quotes. Control characters and broken UTF-8
/// become U+FFFD; line feeds and tabs stay.
void html_append(std::string& out, std::string_view utf8);
std::string html_escaped(std::string_view utf8);

/// The address when a click on it cannot run a program in the page: http, https, ftp, mailto, tel, file or relative.
/// Empty for others.
std::string_view html_safe_address(std::string_view address);

/// Text as a fragment identifier: everything but letters, digits, "-" and "_" is written as "." and two hex digits.
std::string html_identifier(std::string_view name);

std::string base64(std::string_view bytes);

/// "image/png", "image/jpeg", "image/svg+xml", told by the content; empty when it is none of them.
std::string_view image_media_type(std::string_view bytes);

}  // namespace velora::engine
