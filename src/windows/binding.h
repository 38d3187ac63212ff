#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "forms/controls/control.h"
#include "windows/bound_form.h"

namespace velora::windows {

/// A control and the widget that shows it. What a person does to the widget goes to the control; what the control then
/// says is shown. Nothing is decided here.
class Binding {
public:
    Binding(BoundForm& form, forms::Control& control, QWidget& widget);
    Binding(const Binding&) = delete;
    Binding& operator=(const Binding&) = delete;
    virtual ~Binding() = default;
    /// The control may be gone from now on.
    virtual void detach();

    [[nodiscard]] forms::Control& control() const { return control_; }
    [[nodiscard]] QWidget& widget() const { return widget_; }
    [[nodiscard]] BoundForm& form() const { return form_; }

    /// Makes the widget say what the control says.
    void show();
    /// A key that is not one of the form's own. @return whether nothing else is to see it
    virtual bool take_key(QKeyEvent&) { return false; }
    /// Whether a right click is the widget's own affair.
    [[nodiscard]] virtual bool has_own_menu() const { return false; }
    /// The letter that a key together with Alt stands for.
    virtual void set_mnemonic(QChar) {}
    [[nodiscard]] virtual bool wants_mnemonic() const { return false; }

protected:
    virtual void show_more() {}
    /// A person did something: runs the control's side of it and shows what came of it.
    void act(const std::function<void()>& what);
    template <class... Arguments, class Watcher>
    void watch(forms::Notice<Arguments...>& notice, Watcher watcher)
    {
        forget_.push_back([&notice, number = notice.watch(watcher)] { notice.forget(number); });
    }

private:
    BoundForm& form_;
    forms::Control& control_;
    QWidget& widget_;
    std::vector<std::function<void()>> forget_;
};

}  // namespace velora::windows
