#pragma once

#include <QApplication>
#include <exception>
#include <memory>
#include <vector>

#include "forms/toolkit.h"
#include "windows/shown_windows.h"

namespace velora::windows {

class Dialogs;
class WidgetHands;

/// The windows of a desk.
class Session final : public forms::Toolkit, public ShownWindows, private QObject {
public:
    Session(forms::Desk& desk, const forms::ToolkitOptions& options);
    ~Session() override;

    UserInterface& user() override;
    forms::Hands& hands() override;
    void run() override;
    void stay_alive(const forms::Form& usable) override;

    [[nodiscard]] forms::Desk& desk() const override { return desk_; }
    [[nodiscard]] FormWindow* window_of(const forms::Form& form) const override;
    [[nodiscard]] bool is_scripted() const override { return is_scripted_; }
    [[nodiscard]] QSettings* places() const override { return places_.get(); }
    void act(const std::function<void()>& what) override;
    void settle() override;
    void show_progress(size_t done, size_t total) override;
    void cancel_work() override { is_cancelled_ = true; }
    void rethrow() override;

private:
    bool eventFilter(QObject* target, QEvent* event) override;
    void let_people_cancel();
    bool bar(const FormWindow& window, QObject& target, QEvent& event);
    [[nodiscard]] bool is_of_work(const FormWindow& window, const QObject& target) const;
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
    bool is_waiting_ = false;  ///< long work lets people look on and cancel it
    bool is_cancelled_ = false;
    const forms::Form* usable_ = nullptr;  ///< meanwhile: the one form on whose pages they may move about
    std::exception_ptr failure_;
};

}  // namespace velora::windows
