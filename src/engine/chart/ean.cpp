#include <algorithm>
#include <array>

#include "engine/chart/barcode.h"

namespace velora::engine {
namespace {

// Modules of a digit in the left half; the right half has the inverse of A, and B is that one mirrored.
constexpr std::array<std::string_view, 10> kLeftA = {"0001101", "0011001", "0010011", "0111101", "0100011",
                                                     "0110001", "0101111", "0111011", "0110111", "0001011"};
// How the left half tells the first of thirteen digits.
constexpr std::array<std::string_view, 10> kFirstDigit = {"AAAAAA", "AABABB", "AABBAB", "AABBBA", "ABAABB",
                                                          "ABBAAB", "ABBBAA", "ABABAB", "ABABBA", "ABBABA"};

char check_digit(std::string_view digits)
{
    int sum = 0;
    int weight = 3;
    for (size_t at = digits.size(); at-- > 0; weight = 4 - weight) sum += (digits[at] - '0') * weight;
    return static_cast<char>('0' + (10 - sum % 10) % 10);
}

void add(BarRow& row, std::string_view modules)
{
    for (const char module : modules) row.push_back(module == '1');
}

void add_digit(BarRow& row, char digit, char set)
{
    std::string modules(kLeftA[static_cast<size_t>(digit - '0')]);
    if (set != 'A') {
        for (char& module : modules) module = module == '1' ? '0' : '1';
    }
    if (set == 'B') std::reverse(modules.begin(), modules.end());
    add(row, modules);
}

}  // namespace

std::string ean_digits(std::string_view code, size_t length)
{
    const std::string name = "EAN-" + std::to_string(length);
    if (!std::all_of(code.begin(), code.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        throw BarcodeError(name + " holds digits only");
    }
    if (code.size() != length && code.size() != length - 1) {
        throw BarcodeError(name + " takes " + std::to_string(length - 1) + " digits, or " + std::to_string(length) +
                           " with the check digit");
    }
    std::string digits(code.substr(0, length - 1));
    digits.push_back(check_digit(digits));
    if (code.size() == length && code.back() != digits.back()) {
        throw BarcodeError("the check digit is " + std::string(1, code.back()) + " and should be " + digits.back());
    }
    return digits;
}

BarRow ean_bars(std::string_view digits)
{
    const bool long_form = digits.size() == 13;
    const std::string_view sets = long_form ? kFirstDigit[static_cast<size_t>(digits[0] - '0')] : "AAAA";
    if (long_form) digits.remove_prefix(1);
    const size_t half = digits.size() / 2;
    BarRow row;
    add(row, "101");
    for (size_t at = 0; at < half; ++at) add_digit(row, digits[at], sets[at]);
    add(row, "01010");
    for (size_t at = half; at < digits.size(); ++at) add_digit(row, digits[at], 'C');
    add(row, "101");
    return row;
}

}  // namespace velora::engine
