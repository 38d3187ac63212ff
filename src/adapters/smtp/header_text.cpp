#include "adapters/smtp/header_text.h"

#include <algorithm>

#include "values/base64.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora::smtp {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr size_t kLongestLine = 76;
constexpr size_t kLongestWord = 60;         // that stands in a header as it is
constexpr size_t kBytesOfEncodedWord = 45;  // 60 letters of base64, within the 75 of an encoded word
constexpr size_t kLettersOfPiece = 60;      // of a parameter that goes over several lines
constexpr size_t kBytesOfBase64Line = 57;

constexpr char kHexDigits[] = "0123456789ABCDEF";

std::string hex(char mark, char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return {mark, kHexDigits[code >> 4], kHexDigits[code & 15]};
}

bool is_printable(char c)
{
    return c >= ' ' && c <= '~';
}

size_t longest_word(std::string_view text)
{
    size_t longest = 0;
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find(' ', begin), text.size());
        longest = std::max(longest, end - begin);
        begin = end + 1;
    }
    return longest;
}

/// A text that every reader takes as it stands.
bool is_plain(std::string_view text)
{
    return std::ranges::all_of(text, is_printable) && text.find("=?") == std::string_view::npos &&
           trimmed(text).size() == text.size() && longest_word(text) <= kLongestWord;
}

/// Breaks the line before words that would make it too long.
std::string folded(std::string_view text, size_t column)
{
    std::string lines;
    while (!text.empty()) {
        const size_t word = text.find_first_not_of(' ');
        const size_t end = std::min(text.find(' ', word), text.size());
        if (column + end > kLongestLine && word > 0) {
            lines += kLineEnd;
            column = 0;
        }
        lines += text.substr(0, end);
        column += end;
        text.remove_prefix(end);
    }
    return lines;
}

std::string encoded_words(std::string_view text)
{
    std::string words;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view part = cut_to_bytes(rest, kBytesOfEncodedWord);
        words += (words.empty() ? "" : "\r\n ") + ("=?UTF-8?B?" + to_base64(part)) + "?=";
        rest.remove_prefix(part.size());
    }
    return words;
}

std::string quoted(std::string_view text)
{
    return "\"" + replaced(replaced(text, "\\", "\\\\"), "\"", "\\\"") + "\"";
}

bool is_token(std::string_view text, std::string_view marks)
{
    return std::ranges::all_of(text, [&](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               marks.find(c) != std::string_view::npos;
    });
}

std::string phrase(std::string_view name)
{
    const std::string text = well_formed(trimmed(name));
    if (!is_plain(text) || text.size() > kLongestWord) return encoded_words(text);
    return is_token(text, " !#$%&'*+-/=?^_`{|}~") ? text : quoted(text);
}

std::string percent_encoded(char byte)
{
    return is_token({&byte, 1}, "!#$&+-.^_`{|}~") ? std::string(1, byte) : hex('%', byte);
}

}  // namespace

std::string text_field(std::string_view name, std::string_view text)
{
    const std::string clean = well_formed(text);
    std::string field = std::string(name) + ": ";
    field += is_plain(clean) ? folded(clean, field.size()) : encoded_words(clean);
    return field.append(kLineEnd);
}

std::string mailbox_field(std::string_view name, const std::vector<Mailbox>& mailboxes)
{
    std::string list;
    for (const Mailbox& mailbox : mailboxes) {
        const std::string named = phrase(mailbox.name);
        list += list.empty() ? "" : ",\r\n ";
        list += named.empty() ? mailbox.address : named + " <" + mailbox.address + ">";
    }
    return list.empty() ? "" : std::string(name) + ": " + list + "\r\n";
}

std::string parameter(std::string_view name, std::string_view value)
{
    const std::string clean = well_formed(value);
    const std::string begin = ";\r\n " + std::string(name);
    if (std::ranges::all_of(clean, is_printable) && clean.size() <= kLongestWord) return begin + "=" + quoted(clean);

    std::vector<std::string> pieces(1);
    for (const char byte : clean) {
        const bool begins_character = (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
        if (pieces.back().size() >= kLettersOfPiece && begins_character) pieces.emplace_back();
        pieces.back() += percent_encoded(byte);
    }
    if (pieces.size() == 1) return begin + "*=UTF-8''" + pieces.front();
    std::string all;
    for (size_t at = 0; at < pieces.size(); ++at) {
        all += begin + "*" + std::to_string(at) + "*=" + (at == 0 ? "UTF-8''" : "") + pieces[at];
    }
    return all;
}

std::string quoted_printable(std::string_view text)
{
    const std::string clean = replaced(replaced(well_formed(text), "\r\n", "\n"), "\r", "\n");
    std::string lines;
    size_t column = 0;
    for (size_t at = 0; at < clean.size(); ++at) {
        const char c = clean[at];
        if (c == '\n') {
            lines += kLineEnd;
            column = 0;
            continue;
        }
        const bool ends_line = at + 1 == clean.size() || clean[at + 1] == '\n';
        const auto written = [&] {
            const bool needs_code =
                !is_printable(c) || c == '=' || (c == ' ' && ends_line) || (c == '.' && column == 0);
            return needs_code ? hex('=', c) : std::string(1, c);
        };
        if (column + written().size() >= kLongestLine) {
            lines += "=\r\n";
            column = 0;
        }
        const std::string letters = written();
        lines += letters;
        column += letters.size();
    }
    return column > 0 ? lines.append(kLineEnd) : lines;
}

std::string base64_lines(std::string_view bytes)
{
    std::string lines;
    lines.reserve(bytes.size() / kBytesOfBase64Line * (kLongestLine + 2) + kLongestLine + 2);
    for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), kBytesOfBase64Line))) {
        lines += to_base64(bytes.substr(0, kBytesOfBase64Line));
        lines += kLineEnd;
    }
    return lines;
}

std::string well_formed(std::string_view text)
{
    std::string clean;
    for (const auto [character, size, at] : Utf8Characters(text)) append_utf8(clean, character);
    return clean;
}

bool is_utf8(std::string_view text)
{
    for (const auto [character, size, at] : Utf8Characters(text)) {
        if (character == kReplacement && size == 1) return false;
    }
    return true;
}

}  // namespace velora::smtp
