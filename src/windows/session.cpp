#include "windows/session.h"

#include <QEventLoop>
#include <QKeyEvent>
#include <QSettings>

#include "windows/dialogs.h"
#include "windows/texts.h"
#include "windows/widget_hands.h"

namespace velora::windows {

Session::Session(forms::Desk& desk, const forms::ToolkitOptions& options)
    : desk_(desk),
      is_scripted_(options.is_scripted),
      dialogs_(std::make_unique<Dialogs>(*this)),
      hands_(std::make_unique<WidgetHands>(*this))
{
    if (!options.places.empty()) places_ = std::make_unique<QSettings>(shown(options.places), QSettings::IniFormat);
    watches_ = {desk.opened.watch([this](forms::Form& form) { add_window(form); }),
                desk.closed.watch([this](forms::Form& form) { drop_window(form); }),
                desk.came_to_front.watch([this](forms::Form& form) { raise_window(form); })};
    if (!is_scripted_) {
        desk.run_until_unloaded = [this](forms::Form& form) { run_until_unloaded(form); };
        desk.while_waiting = [this] { QCoreApplication::processEvents(); };
        desk.asks_for_printing = true;
    }
    qApp->installEventFilter(this);
    for (forms::Form* form : desk.forms()) add_window(*form);
}

Session::~Session()
{
    qApp->removeEventFilter(this);
    desk_.opened.forget(watches_[0]);
    desk_.closed.forget(watches_[1]);
    desk_.came_to_front.forget(watches_[2]);
    if (!is_scripted_) {
        desk_.run_until_unloaded = nullptr;
        desk_.while_waiting = nullptr;
    }
    for (const auto& window : windows_) window->detach();
}

UserInterface& Session::user()
{
    return *dialogs_;
}

forms::Hands& Session::hands()
{
    return *hands_;
}

void Session::run()
{
    while (!windows_.empty()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        sweep();
        rethrow();
    }
}

void Session::stay_alive(const forms::Form& usable)
{
    usable_ = &usable;
    let_people_cancel();
    if (std::exchange(is_cancelled_, false)) throw fault::of(fault::kCancelled);
}

void Session::show_progress(size_t done, size_t total)
{
    for (const auto& window : windows_) {
        if (window->form().pointer() == forms::Pointer::Hourglass) window->show_progress(done, total);
    }
    let_people_cancel();
    if (std::exchange(is_cancelled_, false)) throw fault::of(fault::kCancelled);
}

void Session::let_people_cancel()
{
    ++at_work_;
    const bool was_waiting = std::exchange(is_waiting_, true);
    QCoreApplication::processEvents();
    is_waiting_ = was_waiting;
    --at_work_;
}

/// The button that cancels the work, and the viewer of the pages that are coming.
bool Session::is_of_work(const FormWindow& window, const QObject& target) const
{
    return &target == window.cancel_button() || &window.form() == usable_;
}

/// What a person does elsewhere than on what belongs to the work waits for nothing: it is dropped. Escape, and closing
/// the window of pages that are coming, cancel it.
bool Session::bar(const FormWindow& window, QObject& target, QEvent& event)
{
    switch (event.type()) {
        case QEvent::Close:
            if (&window.form() == usable_) cancel_work();
            event.ignore();
            return true;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
            return !is_of_work(window, target);
        case QEvent::KeyPress:
            if (dynamic_cast<QKeyEvent&>(event).key() == Qt::Key_Escape) cancel_work();
            return !is_of_work(window, target);
        default:
            return false;
    }
}

void Session::run_until_unloaded(forms::Form& form)
{
    while (!form.is_unloaded()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void Session::act(const std::function<void()>& what)
{
    ++at_work_;
    try {
        what();
    } catch (...) {
        failure_ = std::current_exception();  // it must not go through the toolkit
    }
    if (--at_work_ > 0) return;
    is_cancelled_ = false;  // it came too late
    usable_ = nullptr;
}

void Session::rethrow()
{
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void Session::settle()
{
    QCoreApplication::processEvents();
    sweep();
}

/// Forms and windows that were closed stay until no procedure of any form runs.
void Session::sweep()
{
    if (at_work_ > 0) return;
    gone_.clear();
    if (!is_scripted_) desk_.sweep();
}

FormWindow* Session::window_of(const forms::Form& form) const
{
    const auto found = std::ranges::find_if(windows_, [&](const auto& window) { return &window->form() == &form; });
    return found == windows_.end() ? nullptr : found->get();
}

void Session::add_window(forms::Form& form)
{
    windows_.push_back(std::make_unique<FormWindow>(*this, form));
}

void Session::drop_window(forms::Form& form)
{
    const auto found = std::ranges::find_if(windows_, [&](const auto& window) { return &window->form() == &form; });
    if (found == windows_.end()) return;
    if (usable_ == &form) usable_ = nullptr;
    (*found)->detach();
    (*found)->hide();
    gone_.push_back(std::move(*found));
    windows_.erase(found);
    FormWindow* behind = desk_.front() != nullptr ? window_of(*desk_.front()) : nullptr;
    if (behind != nullptr) behind->activateWindow();
}

void Session::raise_window(forms::Form& form)
{
    FormWindow* window = window_of(form);
    if (window == nullptr) return;
    const auto modality = desk_.is_modal(form) ? Qt::ApplicationModal : Qt::NonModal;
    if (window->windowModality() != modality) {
        window->hide();  // it counts when a window is shown
        window->setWindowModality(modality);
    }
    window->show();
    window->raise();
    window->activateWindow();
    window->follow_focus();
}

bool Session::eventFilter(QObject* target, QEvent* event)
{
    auto* widget = qobject_cast<QWidget*>(target);
    if (widget == nullptr) return false;
    auto* window = dynamic_cast<FormWindow*>(widget->window());
    if (window == nullptr || window->is_detached()) return false;
    if (is_waiting_ && bar(*window, *target, *event)) return true;
    return window->take(*target, *event);
}

}  // namespace velora::windows
