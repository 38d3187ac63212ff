#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/mail_transport.h"
#include "values/fault.h"

namespace velora::test {

/// A mail component that keeps what it was to send and plays the events that it was told.
class FakeMail final : public MailTransport {
public:
    using Step = std::function<void(MailEvents&)>;

    void Send(const MailProperties& mail, MailEvents& events) override
    {
        sent.push_back(mail);
        while (!steps.empty()) {
            const Step step = steps.front();
            steps.pop_front();
            if (events.is_cancelled()) {
                ++cancelled;
                steps.clear();
                return;
            }
            step(events);
        }
    }

    std::deque<Step> steps;
    std::vector<MailProperties> sent;
    int cancelled = 0;
};

/// Every property by its name and value, as they are set.
std::vector<std::string> properties_of(const MailProperties& mail);

}  // namespace velora::test
