#include "engine/expression/date_letters.h"

#include <algorithm>
#include <array>

namespace velora::engine {

namespace {

struct Letter {
    char letter;
    size_t longest;  ///< as many as ICU is to see
};
constexpr auto kLetters = std::to_array<Letter>({{'E', 4}, {'M', 4}, {'L', 4}, {'G', 1}, {'a', 1}, {'z', 4}, {'Z', 1}});

/// Hands each run of a letter, and each other character, to `visit`; quoted ones are no letters.
template <class Visit>
void each_run(std::string_view pattern, Visit visit)
{
    bool quoted = false;
    for (size_t at = 0; at < pattern.size();) {
        const char c = pattern[at];
        quoted = quoted != (c == '\'');
        const bool letter = !quoted && ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'));
        const size_t end = letter ? std::min(pattern.find_first_not_of(c, at), pattern.size()) : at + 1;
        visit(letter, pattern.substr(at, end - at));
        at = end;
    }
}

}  // namespace

std::string icu_date_pattern(std::string_view pattern, std::optional<int> weekday)
{
    std::string out;
    each_run(pattern, [&](bool letter, std::string_view run) {
        const auto known = std::ranges::find(kLetters, run.front(), &Letter::letter);
        if (letter && run.front() == 'u' && weekday) {
            out.append(run.size() - 1, '0');
            out += static_cast<char>('0' + (*weekday == 0 ? 7 : *weekday));  // the week begins with Monday
        } else {
            out += letter && known != kLetters.end() ? run.substr(0, known->longest) : run;
        }
    });
    return out;
}

bool shows_day_number(std::string_view pattern)
{
    bool found = false;
    each_run(pattern, [&](bool letter, std::string_view run) { found = found || (letter && run.front() == 'u'); });
    return found;
}

}  // namespace velora::engine
