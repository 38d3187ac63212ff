#include "engine/export/common/short_number.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velora::engine {

void append_short_number(std::string& out, double number)
{
    constexpr double kMost = 1e7;  // beyond what a page can hold; keeps hostile sizes printable
    auto thousandths = std::llround(std::clamp(std::isfinite(number) ? number : 0.0, -kMost, kMost) * 1000);
    if (thousandths < 0) {
        out += '-';
        thousandths = -thousandths;
    }
    std::array<char, 24> digits;
    char* at = digits.data() + digits.size();
    auto whole = thousandths / 1000;
    auto rest = thousandths % 1000;
    if (rest != 0) {
        int places = 3;
        for (; rest % 10 == 0; rest /= 10) --places;
        for (; places > 0; --places, rest /= 10) *--at = static_cast<char>('0' + rest % 10);
        *--at = '.';
    }
    do {
        *--at = static_cast<char>('0' + whole % 10);
        whole /= 10;
    } while (whole != 0);
    out.append(at, digits.data() + digits.size());
}

std::string short_number(double number)
{
    std::string text;
    append_short_number(text, number);
    return text;
}

}  // namespace velora::engine
