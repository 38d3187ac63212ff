#include "adapters/sqlite_core/date_collation.h"

#include <sqlite3.h>

#include <chrono>

#include "values/text.h"

namespace velora::sqlite {

namespace {

constexpr int64_t kMicroseconds = 1'000'000;

/// Reads unsigned numbers and single characters off the front of a text.
class Reader {
public:
    explicit Reader(std::string_view text) : at_(text.data()), end_(at_ + text.size()) {}

    [[nodiscard]] bool done() const { return at_ == end_; }

    bool take(char expected)
    {
        if (at_ == end_ || *at_ != expected) return false;
        ++at_;
        return true;
    }

    /// A number of at most `most` digits; tells how many there were.
    bool number(int& value, int most, int* digits = nullptr)
    {
        const char* start = at_;
        value = 0;
        while (at_ != end_ && *at_ >= '0' && *at_ <= '9' && at_ - start < most) value = value * 10 + (*at_++ - '0');
        if (digits != nullptr) *digits = static_cast<int>(at_ - start);
        return at_ != start;
    }

    /// The digits behind a decimal point as millionths; more than six are passed over.
    bool millionths(int& value)
    {
        int digits = 0;
        if (!number(value, 6, &digits)) return false;
        for (; digits < 6; ++digits) value *= 10;
        int rest = 0;
        number(rest, 3);
        return true;
    }

private:
    const char* at_;
    const char* end_;
};

struct Day {
    int year = 0, month = 0, day = 0;
};

bool read_day(Reader& reader, DateOrder order, Day& result)
{
    int first = 0, second = 0, third = 0, digits = 0, third_digits = 0;
    if (!reader.number(first, 4, &digits)) return false;
    const char mark = digits == 4 && reader.take('-') ? '-' : '/';
    if (mark == '/' && !reader.take('/')) return false;
    if (!reader.number(second, 2) || !reader.take(mark) || !reader.number(third, 4, &third_digits)) return false;
    if (digits == 4 || order == DateOrder::YearMonthDay) {
        result = {first, second, third};
    } else {
        digits = third_digits;
        result = order == DateOrder::MonthDayYear ? Day{third, first, second} : Day{third, second, first};
    }
    if (digits <= 2) result.year += result.year < 50 ? 2000 : 1900;
    return true;
}

/// "AM" or "PM" behind an hour of twelve, as servers take it, where it stands there.
bool read_half(Reader& reader, int& hour)
{
    while (reader.take(' ')) {
    }
    const bool after_noon = reader.take('P') || reader.take('p');
    if (!after_noon && !reader.take('A') && !reader.take('a')) return true;
    if (!reader.take('M') && !reader.take('m')) return false;
    if (hour < 1 || hour > 12) return false;
    hour = hour % 12 + (after_noon ? 12 : 0);
    return true;
}

bool read_time(Reader& reader, int64_t& microseconds)
{
    int hour = 0, minute = 0, second = 0, fraction = 0;
    if (!reader.number(hour, 2) || !reader.take(':') || !reader.number(minute, 2)) return false;
    if (reader.take(':')) {
        if (!reader.number(second, 2)) return false;
        if (reader.take('.') && !reader.millionths(fraction)) return false;
    }
    if (!read_half(reader, hour) || hour > 23 || minute > 59 || second > 59) return false;
    microseconds = ((hour * 60 + minute) * 60 + second) * kMicroseconds + fraction;
    return true;
}

/// A day that the calendar has.
bool is_valid(const Day& day)
{
    if (day.month < 1 || day.day < 1 || day.day > 31) return false;  // beyond a byte the calendar sees another day
    return std::chrono::year_month_day{std::chrono::year(day.year),
                                       std::chrono::month(static_cast<unsigned>(day.month)),
                                       std::chrono::day(static_cast<unsigned>(day.day))}
        .ok();
}

int compare_bytes(std::string_view left, std::string_view right)
{
    const int order = left.compare(right);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

int compare_dates(void* order, int left_size, const void* left, int right_size, const void* right)
{
    const std::string_view a(static_cast<const char*>(left), static_cast<size_t>(left_size));
    const std::string_view b(static_cast<const char*>(right), static_cast<size_t>(right_size));
    const auto date_order = static_cast<DateOrder>(reinterpret_cast<uintptr_t>(order));
    const auto left_key = date_key(a, date_order);
    const auto right_key = date_key(b, date_order);
    if (!left_key && !right_key) return compare_bytes(a, b);
    if (!left_key || !right_key) return left_key ? 1 : -1;
    return *left_key < *right_key ? -1 : *left_key > *right_key ? 1 : 0;
}

}  // namespace

std::optional<int64_t> date_key(std::string_view text, DateOrder order)
{
    Reader reader(trimmed(text));
    Day day;
    if (!read_day(reader, order, day) || !is_valid(day)) return std::nullopt;
    int64_t time = 0;
    if (!reader.done()) {
        if (!reader.take('T') && !reader.take(' ')) return std::nullopt;
        while (reader.take(' ')) {
        }
        if (!read_time(reader, time) || !reader.done()) return std::nullopt;
    }
    // Months of 32 days keep the order without a calendar.
    const int64_t days = (day.year * 12 + day.month) * 32 + day.day;
    return days * 86'400 * kMicroseconds + time;
}

void add_date_collation(sqlite3* database, DateOrder order)
{
    sqlite3_create_collation_v2(database, "VLDATE", SQLITE_UTF8, reinterpret_cast<void*>(static_cast<uintptr_t>(order)),
                                compare_dates, nullptr);
}

}  // namespace velora::sqlite
