#pragma once

#include <string>
#include <string_view>

namespace velora::engine {

/// Appends text so that it is text anywhere in HTML, also between double quotes. Control characters and broken UTF-8
/// become U+FFFD; line feeds and tabs stay.
void html_append(std::string& out, std::string_view utf8);
std::string html_escaped(std::string_view utf8);

}  // namespace velora::engine
