#pragma once

#include <string>

#include "forms/desk.h"
#include "forms/hands.h"
#include "platform/user_interface.h"

namespace velora::forms {

/// Shows the forms of a desk as windows, for as long as it lives. It comes from a module of its own, so that only who
/// opens a window pays for it.
class Toolkit {
public:
    Toolkit() = default;
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;
    virtual ~Toolkit() = default;

    /// Boxes and dialogs as a person sees them.
    virtual UserInterface& user() = 0;
    /// Acts on the widgets by keys and clicks.
    virtual Hands& hands() = 0;
    /// Lets people act until the last window is closed. What a procedure threw comes out here.
    virtual void run() = 0;
    /// Long work is under way: the windows are painted, and people may move about in this one.
    virtual void stay_alive(const forms::Form& usable) = 0;
};

struct ToolkitOptions {
    std::string places;        ///< file that remembers where windows stood and how large; blank for none
    bool is_scripted = false;  ///< a script acts; there need be no display
};

/// The one function of the module. @return null with the reason in `why`
using MakeToolkit = Toolkit* (*)(Desk& desk, const ToolkitOptions& options, std::string& why);
inline constexpr const char* kMakeToolkit = "velora_make_toolkit";

}  // namespace velora::forms
