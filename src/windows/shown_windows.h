#pragma once

#include "forms/desk.h"
#include "windows/form_window.h"
#include "windows/window_owner.h"

namespace velora::windows {

/// The windows that are up, for those who act on them.
class ShownWindows : public WindowOwner {
public:
    [[nodiscard]] virtual forms::Desk& desk() const = 0;
    [[nodiscard]] virtual FormWindow* window_of(const forms::Form& form) const = 0;

    /// Handles what is pending, and frees the windows that were closed as far as none of them is at work.
    virtual void settle() = 0;
    /// Shows how far the work is under way of which a form has the hourglass, and lets people cancel it.
    /// @throws Fault 20545 when one did
    virtual void show_progress(size_t done, size_t total) = 0;
    /// Throws the fault that no form took.
    virtual void rethrow() = 0;
};

}  // namespace velora::windows
