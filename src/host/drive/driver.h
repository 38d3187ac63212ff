#pragma once

#include <array>
#include <deque>
#include <iosfwd>

#include "forms/desk.h"
#include "forms/hands.h"
#include "host/drive/answer.h"
#include "host/drive/host_calls.h"
#include "host/drive/scripted_user.h"

namespace velora::drive {

/// Runs the forms by a script: a command is one JSON object on a line, and so is its answer, which is written when the
/// program waits for a command again.
class Driver {
public:
    Driver(forms::Desk& desk, ScriptedUser& user, forms::Hands& hands, HostCalls calls, std::istream& in,
           std::ostream& out);
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;
    ~Driver();

    /// Until the input ends; all forms are closed then. False when a line was no JSON, which ends it too.
    bool run();
    /// The number of the latest line.
    [[nodiscard]] size_t line() const { return line_; }

private:
    using Action = void (Driver::*)(const Json&);
    struct Verb {
        const char* key;
        Action action;
    };
    static const std::vector<Verb>& verbs();

    /// Reads and runs commands until the form is unloaded; without one until the input ends.
    void wait_for_commands(forms::Form* until);
    bool read(Json& command);
    void obey(const Json& command);

    void open(const Json& command);
    void options(const Json& command);
    void email(const Json& command);
    void type(const Json& command);
    void enter(const Json& command);
    void click(const Json& command);
    void select(const Json& command);
    void expand(const Json& command);
    void key(const Json& command);
    void pick(const Json& command);
    void close(const Json& command);
    void state(const Json& command);
    void answer(const Json& command);
    void during(const Json& command);

    bool host_may_call();
    /// The form that a command acts on, in front now; null after a refusal.
    forms::Form* form_of(const Json& command);
    /// The control of a command with the focus in it, if it is one that takes it; null after a refusal.
    template <class Sort>
    Sort* reach(const Json& command, const char* verb);
    forms::Control* reach_control(const Json& command, const char* verb, bool (*fits)(const forms::Control&));
    void mail_event(int32_t percent);
    bool refuse(const char* why);

    forms::Desk& desk_;
    ScriptedUser& user_;
    forms::Hands& hands_;
    HostCalls calls_;
    std::istream& in_;
    Answer answer_;
    std::array<size_t, 2> watches_{};
    std::deque<Json> during_;
    size_t line_ = 0;
    bool at_end_ = false;
    bool broken_ = false;
    bool in_mail_event_ = false;  ///< its command has had its answer already
};

}  // namespace velora::drive
