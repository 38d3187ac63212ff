#include "adapters/odbc_text/connection_string.h"

#include <stdexcept>

#include "values/text.h"

namespace velora::odbc {

namespace {

constexpr std::string_view kOpening = "${";

/// The value of an attribute: between braces where it would end too early without them, in which a closing brace of
/// its own is doubled. What stands in braces already, or is more than a value, stays as it is.
std::string guarded(const std::string& value, std::string_view before)
{
    const bool breaks = value.find_first_of(";{}") != std::string::npos || trimmed(value) != value;
    if (before.ends_with("={")) return replaced(value, "}", "}}");
    return breaks && before.ends_with('=') ? "{" + replaced(value, "}", "}}") + "}" : value;
}

/// Where the attribute that begins at `at` ends: its semicolon, which does not count between braces. A closing brace
/// that is doubled ends nothing.
size_t end_of_attribute(std::string_view text, size_t at)
{
    bool in_braces = false;
    for (; at < text.size(); ++at) {
        if (text[at] == '{') in_braces = true;
        if (text[at] == '}' && in_braces) {
            const bool is_doubled = at + 1 < text.size() && text[at + 1] == '}';
            if (is_doubled) ++at;
            in_braces = is_doubled;
        }
        if (text[at] == ';' && !in_braces) break;
    }
    return at;
}

/// The first attribute stands behind the scheme in velora.ini.
bool is_secret(std::string_view name)
{
    if (name.starts_with("odbc:")) name.remove_prefix(5);
    return same_name(name, "PWD") || same_name(name, "PASSWORD");
}

}  // namespace

std::string with_environment(std::string_view text, const std::function<std::string(const char*)>& environment)
{
    std::string whole;
    while (true) {
        const size_t mark = text.find(kOpening);
        whole += text.substr(0, mark);
        if (mark == std::string_view::npos) return whole;
        const size_t end = text.find('}', mark);
        if (end == std::string_view::npos) throw std::invalid_argument("a \"${\" has no closing brace");
        const std::string name(text.substr(mark + kOpening.size(), end - mark - kOpening.size()));
        const std::string value = name.empty() ? "" : environment(name.c_str());
        if (value.empty()) throw std::invalid_argument("the environment variable \"" + name + "\" is not set");
        whole += guarded(value, whole);
        text.remove_prefix(end + 1);
    }
}

std::string without_passwords(std::string_view text)
{
    std::string shown;
    for (size_t at = 0; at < text.size();) {
        const size_t end = end_of_attribute(text, at);
        const auto attribute = text.substr(at, end - at);
        const size_t sign = attribute.find('=');
        const bool hides = sign != std::string_view::npos && is_secret(trimmed(attribute.substr(0, sign)));
        shown += hides ? std::string(attribute.substr(0, sign + 1)) + "***" : std::string(attribute);
        if (end < text.size()) shown += ';';
        at = end + 1;
    }
    return shown;
}

}  // namespace velora::odbc
