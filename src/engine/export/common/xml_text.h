#pragma once

#include <charconv>
#include <string>
#include <string_view>

namespace velora::engine {

/// Appends character data for an element or an attribute in double quotes. What XML cannot carry becomes "?".
void append_xml_text(std::string& xml, std::string_view text);

/// Appends ` name="value"`.
void append_attribute(std::string& xml, const char* name, std::string_view value);

/// The shortest text that reads back as the same number.
template <class Number>
void append_number(std::string& text, Number number)
{
    char digits[32];
    const auto result = std::to_chars(digits, digits + sizeof digits, number);
    text.append(digits, result.ptr);
}

template <class Number>
void append_number_attribute(std::string& xml, const char* name, Number number)
{
    xml += ' ';
    xml += name;
    xml += "=\"";
    append_number(xml, number);
    xml += '"';
}

}  // namespace velora::engine
