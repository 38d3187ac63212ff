#include "values/text.h"

#include <algorithm>
#include <cstdint>

namespace velora {

namespace {

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool same_name(std::string_view left, std::string_view right)
{
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(), [](char a, char b) { return lower(a) == lower(b); });
}

std::string lower_ascii(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

std::string replaced(std::string_view text, std::string_view what, std::string_view by)
{
    if (what.empty()) return std::string(text);
    std::string result;
    size_t from = 0;
    for (size_t at = text.find(what); at != std::string_view::npos; at = text.find(what, from)) {
        result.append(text.substr(from, at - from)).append(by);
        from = at + what.size();
    }
    return result.append(text.substr(from));
}

size_t NameHash::operator()(std::string_view name) const
{
    uint64_t hash = 1469598103934665603ULL;  // FNV-1a
    for (const char c : name) hash = (hash ^ static_cast<unsigned char>(lower(c))) * 1099511628211ULL;
    return static_cast<size_t>(hash);
}

}  // namespace velora
