#include <algorithm>
#include <array>

#include "engine/chart/barcode.h"

namespace velora::engine {
namespace {

// Widths of bar, gap, bar, … of each symbol.
// clang-format off
constexpr std::array<std::string_view, 107> kWidths = {
    "212222", "222122", "222221", "121223", "121322", "131222", "122213", "122312", "132212", "221213", "221312",
    "231212", "112232", "122132", "122231", "113222", "123122", "123221", "223211", "221132", "221231", "213212",
    "223112", "312131", "311222", "321122", "321221", "312212", "322112", "322211", "212123", "212321", "232121",
    "111323", "131123", "131321", "112313", "132113", "132311", "211313", "231113", "231311", "112133", "112331",
    "132131", "113123", "113321", "133121", "313121", "211331", "231131", "213113", "213311", "213131", "311123",
    "311321", "331121", "312113", "312311", "332111", "314111", "221411", "431111", "111224", "111422", "121124",
    "121421", "141122", "141221", "112214", "112412", "122114", "122411", "142112", "142211", "241211", "221114",
    "413111", "241112", "134111", "111242", "121142", "121241", "114212", "124112", "124211", "411212", "421112",
    "421211", "212141", "214121", "412121", "111143", "111341", "131141", "114113", "114311", "411113", "411311",
    "113141", "114131", "311141", "411131", "211412", "211214", "211232", "2331112"};
// clang-format on

constexpr int kStartA = 103, kStop = 106, kModulus = 103;
constexpr int kToC = 99, kToB = 100, kToA = 101;

enum class Set : uint8_t { A, B, C };

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

size_t digits_from(std::string_view text, size_t at)
{
    size_t end = at;
    while (end < text.size() && is_digit(text[end])) ++end;
    return end - at;
}

/// Which of the sets A and B the next character that is in only one of them asks for.
Set letters_from(std::string_view text, size_t at)
{
    for (; at < text.size(); ++at) {
        if (text[at] < ' ') return Set::A;
        if (text[at] >= '`') return Set::B;
    }
    return Set::B;
}

bool holds(Set set, char c)
{
    return set == Set::A ? c < '`' : c >= ' ';
}

/// Digits in pairs save room at an end from four on, between others from six on.
bool pays_for_pairs(std::string_view text, size_t at)
{
    const size_t digits = digits_from(text, at);
    const bool at_end = at == 0 || at + digits == text.size();
    return digits >= (at_end ? 4u : 6u) || (at == 0 && digits == 2 && text.size() == 2);
}

int symbol_of(Set set, char c)
{
    const int code = static_cast<unsigned char>(c);
    return set == Set::A && code < ' ' ? code + 64 : code - ' ';
}

/// The set that the character at `at` is written in, coming from `now`.
Set set_at(std::string_view text, size_t at, Set now)
{
    if (now == Set::C) return digits_from(text, at) >= 2 ? Set::C : letters_from(text, at);
    // an odd digit is better written before the pairs than behind them
    if (pays_for_pairs(text, at) && digits_from(text, at) % 2 == 0) return Set::C;
    return holds(now, text[at]) ? now : letters_from(text, at);
}

Set first_set(std::string_view text)
{
    return pays_for_pairs(text, 0) ? Set::C : letters_from(text, 0);
}

}  // namespace

std::vector<int> code128_symbols(std::string_view text)
{
    if (text.empty()) throw BarcodeError("the code is empty");
    const auto is_ascii = [](char c) { return static_cast<unsigned char>(c) < 128; };
    if (!std::all_of(text.begin(), text.end(), is_ascii)) {
        throw BarcodeError("Code 128 holds letters without accents, digits and signs");
    }
    constexpr int kSwitch[] = {kToA, kToB, kToC};
    Set set = first_set(text);
    std::vector<int> symbols{kStartA + static_cast<int>(set)};
    for (size_t at = 0; at < text.size();) {
        const Set next = set_at(text, at, set);
        if (next != set) symbols.push_back(kSwitch[static_cast<size_t>(next)]);
        set = next;
        if (set == Set::C) {
            symbols.push_back((text[at] - '0') * 10 + (text[at + 1] - '0'));
            at += 2;
        } else {
            symbols.push_back(symbol_of(set, text[at++]));
        }
    }
    int sum = symbols[0];
    for (size_t place = 1; place < symbols.size(); ++place) {
        sum = (sum + static_cast<int>(place % kModulus) * symbols[place]) % kModulus;
    }
    symbols.push_back(sum);
    symbols.push_back(kStop);
    return symbols;
}

BarRow code128_bars(const std::vector<int>& symbols)
{
    BarRow row;
    for (const int symbol : symbols) {
        bool dark = true;
        for (const char width : kWidths[static_cast<size_t>(symbol)]) {
            row.insert(row.end(), static_cast<size_t>(width - '0'), dark);
            dark = !dark;
        }
    }
    return row;
}

}  // namespace velora::engine
