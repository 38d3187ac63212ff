#pragma once

#include <QString>
#include <functional>

#include "forms/controls/form.h"

class QWidget;

namespace velora::windows {

/// What the binding of a control asks of the form that it is part of.
class BoundForm {
public:
    BoundForm() = default;
    BoundForm(const BoundForm&) = delete;
    BoundForm& operator=(const BoundForm&) = delete;
    virtual ~BoundForm() = default;

    [[nodiscard]] virtual forms::Form& form() const = 0;
    /// Whether the form may be gone.
    [[nodiscard]] virtual bool is_detached() const = 0;
    /// Whether a script acts instead of a person.
    [[nodiscard]] virtual bool is_scripted() const = 0;
    /// The widget of a control; null where it has none.
    [[nodiscard]] virtual QWidget* widget_of(const forms::Control& control) const = 0;

    /// Runs what a person did. A fault that no form took does not go through the toolkit.
    virtual void act(const std::function<void()>& what) = 0;
    /// Moves the form's focus, and the widgets' with it. False when it stays where it was.
    virtual bool enter(forms::Control& control) = 0;
    /// Runs `change`, during which the toolkit's own moves of the focus mean nothing.
    virtual void without_focus_moves(const std::function<void()>& change) = 0;
    virtual void show_status(const QString& status) = 0;
};

}  // namespace velora::windows
