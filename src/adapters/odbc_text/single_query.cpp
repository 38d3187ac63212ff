#include "adapters/odbc_text/single_query.h"

#include <algorithm>
#include <array>
#include <string>

#include "values/text.h"

namespace velora::odbc {

namespace {

bool is_of_word(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// The words of a text in lower case, wherever they stand.
template <class Take>
void each_word(std::string_view text, Take take)
{
    for (size_t at = 0; at < text.size();) {
        if (!is_of_word(text[at])) {
            ++at;
            continue;
        }
        const size_t begin = at;
        while (at < text.size() && is_of_word(text[at])) ++at;
        take(lower_ascii(text.substr(begin, at - begin)));
    }
}

}  // namespace

std::string_view refusal_of(std::string_view statement)
{
    constexpr auto kQueries = std::to_array<std::string_view>({"select", "with", "values", "table"});
    constexpr auto kFiles = std::to_array<std::string_view>({"outfile", "dumpfile", "load_file"});
    constexpr std::string_view kBlanks = " \t\r\n;";
    const size_t end = statement.find_last_not_of(kBlanks);
    statement = statement.substr(0, end == std::string_view::npos ? 0 : end + 1);
    if (statement.find(';') != std::string_view::npos) return "a query may hold no semicolon but at its end";
    std::string first;
    bool names_file = false;
    each_word(statement, [&](std::string word) {
        names_file = names_file || std::ranges::find(kFiles, word) != kFiles.end();
        if (first.empty()) first = std::move(word);
    });
    if (std::ranges::find(kQueries, first) == kQueries.end())
        return "only a query may be run, which begins with SELECT";
    if (names_file) return "a query may name no file of the server";
    return {};
}

}  // namespace velora::odbc
