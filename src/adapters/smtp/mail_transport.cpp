#include "adapters/smtp/mail_transport.h"

#include <fmt/format.h>

#include <array>
#include <ctime>
#include <optional>
#include <ostream>
#include <random>

#include "adapters/smtp/mime_message.h"
#include "adapters/smtp/smtp_send.h"
#include "values/fault.h"

namespace velora {
namespace {

constexpr int kSecondsOfHour = 3600;
constexpr int kSecondsOfMinute = 60;

/// A local day and time with its distance from universal time (RFC 5322, 3.3).
std::string date_header(const DateTime& day, int32_t second_of_day)
{
    constexpr std::array kDays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto at = DateTime(day.serial_day(), second_of_day).parts();
    std::tm local{};
    local.tm_year = at.year - 1900;
    local.tm_mon = at.month - 1;
    local.tm_mday = at.day;
    local.tm_hour = at.hour;
    local.tm_min = at.minute;
    local.tm_sec = at.second;
    local.tm_isdst = -1;
    std::mktime(&local);
    const long east = local.tm_gmtoff / kSecondsOfMinute;
    return fmt::format("{}, {:02} {} {:04} {:02}:{:02}:{:02} {}{:02}{:02}", kDays[day.weekday()], at.day,
                       kMonths[at.month - 1], at.year, at.hour, at.minute, at.second, east < 0 ? '-' : '+',
                       std::abs(east) / 60, std::abs(east) % 60);
}

int32_t present_second_of_day()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    return std::min(local.tm_hour * kSecondsOfHour + local.tm_min * kSecondsOfMinute + local.tm_sec, 86'399);
}

std::string random_id()
{
    std::random_device random;
    return fmt::format("{:08x}{:08x}{:08x}{:08x}", random(), random(), random(), random());
}

struct Ready {
    smtp::CheckedMail checked;
    std::string message;
};

/// What `make` gives; none where it cannot, which is told.
template <class Make>
auto attempt(MailEvents& events, Make make) -> std::optional<decltype(make())>
{
    std::string reason;
    try {
        return make();
    } catch (const smtp::MailRefused& refused) {
        reason = refused.what();
    } catch (const Fault& caught) {
        reason = caught.description();
    }
    events.SendFailed(reason);
    return std::nullopt;
}

std::optional<Ready> made_ready(const MailProperties& mail, const smtp::Stamp& stamp, MailEvents& events)
{
    return attempt(events, [&] {
        Ready ready{smtp::check(mail), {}};
        ready.message = smtp::mime_message(mail, ready.checked, stamp);
        return ready;
    });
}

class SmtpMailTransport final : public MailTransport {
public:
    SmtpMailTransport(const Clock& clock, MailServerRules rules) : clock_(clock), rules_(std::move(rules)) {}

    void Send(const MailProperties& mail, MailEvents& events) override
    {
        const auto ready = made_ready(mail, {date_header(clock_.now(), present_second_of_day()), random_id()}, events);
        if (!ready) return;
        const auto send = attempt(events, [&] {
            return std::make_unique<smtp::SmtpSend>(ready->checked, mail, ready->message, rules_, events);
        });
        if (send) (*send)->run();
    }

private:
    const Clock& clock_;
    MailServerRules rules_;
};

class MailWriter final : public MailTransport {
public:
    MailWriter(const Clock& clock, std::ostream& out) : clock_(clock), out_(out) {}

    void Send(const MailProperties& mail, MailEvents& events) override
    {
        const auto ready = made_ready(mail, {date_header(clock_.now(), 0), "dry-run"}, events);
        if (!ready) return;
        out_.write(ready->message.data(), static_cast<std::streamsize>(ready->message.size())).flush();
        if (out_) return events.SendSuccesful();
        events.SendFailed("The message cannot be written.");
    }

private:
    const Clock& clock_;
    std::ostream& out_;
};

}  // namespace

std::unique_ptr<MailTransport> smtp_mail_transport(const Clock& clock, MailServerRules rules)
{
    return std::make_unique<SmtpMailTransport>(clock, std::move(rules));
}

std::unique_ptr<MailTransport> mail_writer(const Clock& clock, std::ostream& out)
{
    return std::make_unique<MailWriter>(clock, out);
}

}  // namespace velora
