#pragma once

#include <QMainWindow>
#include <memory>
#include <unordered_map>
#include <vector>

#include "forms/controls/form.h"
#include "windows/binding.h"
#include "windows/bound_form.h"
#include "windows/form_actions.h"
#include "windows/window_owner.h"

class QProgressBar;

namespace velora::windows {

/// The window of a form: its layout with a binding for each control, its menus and its toolbar. The form says where the
/// focus is; a key or a click that would move it asks the form first.
class FormWindow final : public QMainWindow, public BoundForm {
public:
    FormWindow(WindowOwner& owner, forms::Form& form);
    ~FormWindow() override;

    [[nodiscard]] forms::Form& form() const override { return form_; }
    /// Forgets the form, which may be gone from now on.
    void detach();
    [[nodiscard]] bool is_detached() const override { return detached_; }
    [[nodiscard]] bool is_scripted() const override { return owner_.is_scripted(); }
    void act(const std::function<void()>& what) override { owner_.act(what); }

    [[nodiscard]] Binding* binding_of(const forms::Control& control) const;
    /// The one whose widget it is, or stands in.
    [[nodiscard]] Binding* binding_around(const QObject* object) const;
    [[nodiscard]] FormActions& actions() const { return *actions_; }

    [[nodiscard]] QWidget* widget_of(const forms::Control& control) const override;
    bool enter(forms::Control& control) override;
    /// Gives the widget of the control that has the form's focus the toolkit's.
    void follow_focus();
    void without_focus_moves(const std::function<void()>& change) override;
    void show_status(const QString& status) override;
    /// How far long work is, with a button to cancel it; `total` is 0 where nobody knows. It goes with the hourglass.
    void show_progress(size_t done, size_t total);
    [[nodiscard]] const QObject* cancel_button() const { return cancel_; }

    /// What happens to the window or to something in it. @return whether that was all
    bool take(QObject& target, QEvent& event);

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void lay_out();
    [[nodiscard]] bool shows_pages() const;
    void bind_controls();
    void assign_mnemonics();
    void show_form();
    void add_progress();
    bool take_key(QObject& target, QKeyEvent& event);
    void step_focus(bool forward);
    bool take_focus_in(QObject& target, QFocusEvent& event);
    bool take_press(QObject& target);

    WindowOwner& owner_;
    forms::Form& form_;
    std::unique_ptr<FormActions> actions_;
    std::vector<std::unique_ptr<Binding>> bindings_;
    std::unordered_map<const QObject*, Binding*> by_widget_;
    std::unordered_map<const forms::Control*, Binding*> by_control_;
    QProgressBar* progress_ = nullptr;
    QObject* cancel_ = nullptr;
    size_t watch_ = 0, focus_watch_ = 0;
    int quiet_ = 0;
    bool detached_ = false;
};

}  // namespace velora::windows
