#include "reports/like_pattern.h"

#include <unicode/unistr.h>

#include <algorithm>

#include "values/fault.h"

namespace velora {

namespace {

/// The characters of a text, letters in the one form that stands for both cases.
std::u32string folded(std::string_view text)
{
    auto folded = icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
    folded.foldCase();
    std::u32string characters;
    for (int32_t at = 0; at < folded.length(); at = folded.moveIndex32(at, 1)) {
        characters.push_back(static_cast<char32_t>(folded.char32At(at)));
    }
    return characters;
}

}  // namespace

LikePattern::LikePattern(std::string_view pattern)
{
    const auto text = folded(pattern);
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] == U'[') {
            const auto end = text.find(U']', at);
            if (end == std::u32string::npos) throw fault::of(fault::kInvalidPattern, std::string(pattern));
            add_set(std::u32string_view(text).substr(at + 1, end - at - 1), steps_);
            at = end;
        } else if (text[at] == U'*') {
            steps_.push_back({Kind::Many});
        } else if (text[at] == U'?') {
            steps_.push_back({Kind::One});
        } else if (text[at] == U'#') {
            steps_.push_back({Kind::Digit});
        } else {
            steps_.push_back({Kind::Set, false, {{text[at], text[at]}}});
        }
    }
}

/// What stands between the brackets. A hyphen at either end stands for itself, and a set of nothing takes nothing.
void LikePattern::add_set(std::u32string_view inside, std::vector<Step>& steps)
{
    if (inside.empty()) return;
    Step step{Kind::Set};
    if (inside.size() > 1 && inside.front() == U'!') {
        step.outside = true;
        inside.remove_prefix(1);
    }
    for (size_t at = 0; at < inside.size(); ++at) {
        const bool is_range = at + 2 < inside.size() && inside[at + 1] == U'-';
        const Range range{inside[at], is_range ? inside[at + 2] : inside[at]};
        if (range.last < range.first) throw fault::of(fault::kInvalidPattern);
        step.ranges.push_back(range);
        if (is_range) at += 2;
    }
    steps.push_back(std::move(step));
}

bool LikePattern::Step::takes(char32_t character) const
{
    if (kind == Kind::One) return true;
    if (kind == Kind::Digit) return character >= U'0' && character <= U'9';
    const bool is_inside = std::ranges::any_of(
        ranges, [&](const Range& range) { return range.first <= character && character <= range.last; });
    return is_inside != outside;
}

/// Walks text and pattern side by side; where they part, the latest "*" takes one more character. The earlier ones
/// need not be tried again, so that many of them cost no more than one.
bool LikePattern::matches(std::string_view text) const
{
    const auto characters = folded(text);
    constexpr size_t kNone = static_cast<size_t>(-1);
    size_t step = 0;
    size_t latest_many = kNone;
    size_t taken_by_many = 0;
    for (size_t at = 0; at < characters.size();) {
        if (step < steps_.size() && steps_[step].kind == Kind::Many) {
            latest_many = step++;
            taken_by_many = at;
        } else if (step < steps_.size() && steps_[step].takes(characters[at])) {
            ++step;
            ++at;
        } else if (latest_many != kNone) {
            step = latest_many + 1;
            at = ++taken_by_many;
        } else {
            return false;
        }
    }
    return std::all_of(steps_.begin() + static_cast<std::ptrdiff_t>(step), steps_.end(),
                       [](const Step& rest) { return rest.kind == Kind::Many; });
}

}  // namespace velora
