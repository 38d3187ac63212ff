#pragma once

#include <iosfwd>
#include <string>

#include "forms/builder_call.h"
#include "host/drive/form_state.h"
#include "platform/user_interface.h"

namespace velora::drive {

/// What happened since a command was read. There is at most one command whose answer is still to be written.
class Answer {
public:
    explicit Answer(std::ostream& out) : out_(out) {}

    void begin();
    /// Writes the answer of the command that was begun, if there is one.
    void write();

    void refuse(const std::string& why);
    void add_box(const MessageBox& box);
    void add_opened(const std::string& form) { opened_.push_back(form); }
    void add_closed(const std::string& form) { closed_.push_back(form); }
    void add_run(const forms::BuilderCall& call);
    void add_progress(int32_t percent) { progress_.push_back(percent); }
    void set_state(Json state) { state_ = std::move(state); }

private:
    std::ostream& out_;
    bool begun_ = false;
    std::string why_;
    Json boxes_, opened_, closed_, runs_, progress_, state_;
};

}  // namespace velora::drive
