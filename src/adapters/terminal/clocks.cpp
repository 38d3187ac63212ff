#include "adapters/terminal/clocks.h"

#include <ctime>

namespace velora {

namespace {

class SystemClock final : public Clock {
public:
    DateTime now() const override
    {
        const std::time_t seconds = std::time(nullptr);
        std::tm local{};
        ::localtime_r(&seconds, &local);
        const int second = std::min(local.tm_sec, 59);  // a leap second is the last one of its minute
        return DateTime::from_ymd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                                  second)
            .value_or(DateTime());
    }
};

class FixedClock final : public Clock {
public:
    explicit FixedClock(DateTime moment) : moment_(moment) {}
    DateTime now() const override { return moment_; }

private:
    DateTime moment_;
};

}  // namespace

std::unique_ptr<Clock> system_clock()
{
    return std::make_unique<SystemClock>();
}

std::unique_ptr<Clock> fixed_clock(DateTime moment)
{
    return std::make_unique<FixedClock>(moment);
}

}  // namespace velora
