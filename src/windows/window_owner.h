#pragma once

#include <functional>

class QSettings;

namespace velora::windows {

/// What the window of a form asks of what holds the windows together.
class WindowOwner {
public:
    WindowOwner() = default;
    WindowOwner(const WindowOwner&) = delete;
    WindowOwner& operator=(const WindowOwner&) = delete;
    virtual ~WindowOwner() = default;

    /// Whether a script acts instead of a person.
    [[nodiscard]] virtual bool is_scripted() const = 0;
    /// Where window places are kept; null for nowhere.
    [[nodiscard]] virtual QSettings* places() const = 0;
    /// Runs what a person did to a form. A fault that no form took waits until the toolkit has returned.
    virtual void act(const std::function<void()>& what) = 0;
    /// A person wants the work that is under way to end.
    virtual void cancel_work() = 0;
};

}  // namespace velora::windows
