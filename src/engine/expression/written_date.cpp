#include "engine/expression/written_date.h"

#include <algorithm>
#include <array>

#include "values/characters.h"
#include "values/text.h"

namespace velora::engine {
namespace {

constexpr auto kMonths =
    std::to_array<std::string_view>({"january", "february", "march", "april", "may", "june", "july", "august",
                                     "september", "october", "november", "december"});
constexpr auto kDays =
    std::to_array<std::string_view>({"monday", "tuesday", "wednesday", "thursday", "friday", "saturday", "sunday"});

/// Puts the words of a date into its parts, one after the other.
class WrittenDate {
public:
    explicit WrittenDate(std::string_view text) : text_(text) {}

    std::optional<DateTime> read()
    {
        while (at_ < text_.size()) {
            if (is_digit(text_[at_])) {
                if (!number()) return std::nullopt;
            } else if (is_letter(text_[at_])) {
                if (!word()) return std::nullopt;
            } else if (std::string_view(" ,./-").find(text_[at_++]) == std::string_view::npos) {
                return std::nullopt;
            }
        }
        if (year_ < 0 || month_ < 0 || day_ < 0) return std::nullopt;
        if (afternoon_ && (time_[0] < 1 || time_[0] > 12)) return std::nullopt;
        const int hour = afternoon_ ? time_[0] % 12 + (*afternoon_ ? 12 : 0) : time_[0];
        return DateTime::from_ymd(year_, month_, day_, hour, time_[1], time_[2]);
    }

private:
    bool number()
    {
        int value = 0;
        const size_t from = at_;
        for (; at_ < text_.size() && is_digit(text_[at_]); ++at_) {
            if (at_ - from >= 6) return false;
            value = value * 10 + (text_[at_] - '0');
        }
        const char before = from > 0 ? text_[from - 1] : ' ';
        const char behind = at_ < text_.size() ? text_[at_] : ' ';
        if (behind == ':' || before == ':') return part_of_time(value, behind == ':');
        if (at_ - from > 2) return set(year_, value);
        if (month_ < 0 && (behind == '/' || behind == '-' || (year_ >= 0 && before != ' '))) return set(month_, value);
        if (day_ < 0) return set(day_, value);
        return set(year_, value < 50 ? 2000 + value : 1900 + value);
    }

    bool part_of_time(int value, bool more)
    {
        if (parts_of_time_ == time_.size()) return false;
        time_[parts_of_time_++] = value;
        if (more) ++at_;
        return true;
    }

    static bool set(int& part, int value)
    {
        if (part >= 0) return false;
        part = value;
        return true;
    }

    bool word()
    {
        const size_t from = at_;
        while (at_ < text_.size() && is_letter(text_[at_])) ++at_;
        const std::string word = lower_ascii(text_.substr(from, at_ - from));
        if (word == "am" || word == "pm") {
            afternoon_ = word == "pm";
            return true;
        }
        if (word == "t" || word == "gmt" || word == "utc" || word == "z") return true;
        if (word.size() < 3) return false;
        const auto begins = [&](std::string_view name) { return name.starts_with(word); };
        if (std::ranges::any_of(kDays, begins)) return true;
        const auto month = std::ranges::find_if(kMonths, begins);
        return month != kMonths.end() && set(month_, static_cast<int>(month - kMonths.begin()) + 1);
    }

    std::string_view text_;
    size_t at_ = 0;
    int year_ = -1, month_ = -1, day_ = -1;
    std::array<int, 3> time_{};
    size_t parts_of_time_ = 0;
    std::optional<bool> afternoon_;
};

}  // namespace

std::optional<DateTime> written_date(std::string_view text)
{
    return WrittenDate(text).read();
}

}  // namespace velora::engine
