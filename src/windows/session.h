#pragma once

#include <QApplication>
#include <exception>
#include <memory>
#include <vector>

#include "forms/toolkit.h"
#include "windows/form_window.h"

class QSettings;

namespace velora::windows {

class Dialogs;
class WidgetHands;

/// The windows of a desk.
class Session final : public forms::Toolkit, private QObject {
public:
    Session(forms::Desk& desk, const forms::ToolkitOptions& options);
    ~Session() override;

    UserInterface& user() override;
    forms::Hands& hands() override;
    void run() override;
    void stay_alive(const forms::Form& usable) override;

    [[nodiscard]] forms::Desk& desk() const { return desk_; }
    [[nodiscard]] FormWindow* window_of(const forms::Form& form) const;
    [[nodiscard]] bool is_scripted() const { return is_scripted_; }
    /// Where window places are kept; null for nowhere.
    [[nodiscard]] QSettings* places() const { return places_.get(); }

    /// Runs what a person did to a form. A fault that no form took waits for `rethrow`.
    void act(const std::function<void()>& what);
    void rethrow();
    /// Handles what is pending, and frees the windows that were closed as far as none of them is at work.
    void settle();

private:
    bool eventFilter(QObject* target, QEvent* event) override;
    [[nodiscard]] bool is_barred(const FormWindow& window, const QObject& target, QEvent& event) const;
    void add_window(forms::Form& form);
    void drop_window(forms::Form& form);
    void raise_window(forms::Form& form);
    void sweep();
    void run_until_unloaded(forms::Form& form);

    forms::Desk& desk_;
    bool is_scripted_;
    std::unique_ptr<QSettings> places_;
    std::unique_ptr<Dialogs> dialogs_;
    std::unique_ptr<WidgetHands> hands_;
    std::vector<std::unique_ptr<FormWindow>> windows_;
    std::vector<std::unique_ptr<FormWindow>> gone_;
    std::vector<size_t> watches_;
    int at_work_ = 0;
    const forms::Form* usable_ = nullptr;  ///< while long work is under way: the one form that takes keys and clicks
    std::exception_ptr failure_;
};

}  // namespace velora::windows
