#include "windows/form_window.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>

#include "forms/controls/buttons.h"
#include "windows/binder.h"
#include "windows/key_names.h"
#include "windows/page_binding.h"
#include "windows/texts.h"
#include "windows/ui_file.h"

namespace velora::windows {

namespace {

constexpr double kOfTheScreen = 0.85;  // for a window that opens maximised, when it is made smaller

/// Forms of one sort share a layout and a place: "frmViewer 2" is one more "frmViewer".
QString sort_of(const forms::Form& form)
{
    return shown(form.name().substr(0, form.name().find(' ')));
}

QWidget* make_own(const QString& name, QWidget* parent)
{
    if (name == "PageArea") return new PageArea(parent);
    if (name == "PageGuide") return new PageGuide(parent);
    return nullptr;
}

}  // namespace

FormWindow::FormWindow(WindowOwner& owner, forms::Form& form) : owner_(owner), form_(form)
{
    lay_out();
    actions_ = std::make_unique<FormActions>(*this, owner, form);
    bind_controls();
    assign_mnemonics();
    for (const auto& binding : bindings_) binding->show();
    watch_ = form.changed.watch([this] { show_form(); });
    focus_watch_ = form.focus_changed.watch([this] { follow_focus(); });
    show_form();
    adjustSize();
    if (shows_pages()) {  // over the whole screen, each time
        resize(screen()->availableSize() * kOfTheScreen);
        setWindowState(Qt::WindowMaximized);
    } else if (owner.places() != nullptr) {
        restoreGeometry(owner.places()->value(sort_of(form)).toByteArray());
    }
}

FormWindow::~FormWindow()
{
    detach();
}

void FormWindow::detach()
{
    if (std::exchange(detached_, true)) return;
    if (owner_.places() != nullptr && isVisible()) owner_.places()->setValue(sort_of(form_), saveGeometry());
    form_.changed.forget(watch_);
    form_.focus_changed.forget(focus_watch_);
    actions_->detach();
    for (const auto& binding : bindings_) binding->detach();  // they may be at work
    by_widget_.clear();
    by_control_.clear();
}

bool FormWindow::shows_pages() const
{
    return std::ranges::any_of(form_.controls(), [](const forms::Control* control) {
        return dynamic_cast<const forms::PageArea*>(control) != nullptr;
    });
}

void FormWindow::lay_out()
{
    load_ui(":/ui/" + sort_of(form_) + ".ui", *this, make_own);
    setObjectName(shown(form_.name()));
}

void FormWindow::bind_controls()
{
    for (forms::Control* control : form_.controls()) {
        auto* widget = findChild<QWidget*>(shown(control->name()));
        if (widget == nullptr) continue;
        auto binding = bind(*this, *control, *widget);
        if (!binding) continue;
        by_widget_.emplace(widget, binding.get());
        by_control_.emplace(control, binding.get());
        bindings_.push_back(std::move(binding));
    }
}

/// Labels that are no controls themselves say what the form says of the control beside them, notes its tip.
void FormWindow::assign_mnemonics()
{
    Mnemonics letters;
    for (const auto& menu : form_.menus) letters.take_marked(menu.caption);
    for (const auto& binding : bindings_) {
        if (binding->wants_mnemonic()) binding->set_mnemonic(letters.choose(caption_of(binding->control())));
    }
    for (auto* label : findChildren<QLabel*>()) {
        const auto beside = label->buddy() != nullptr ? by_widget_.find(label->buddy()) : by_widget_.end();
        if (beside == by_widget_.end() || by_widget_.contains(label)) continue;
        if (label->objectName().startsWith("note")) {
            label->setText(with_mnemonic(beside->second->control().tip(), {}));
            continue;
        }
        const std::string& text = beside->second->control().label();
        label->setText(with_mnemonic(text, letters.choose(text)));
    }
}

void FormWindow::show_form()
{
    setWindowTitle(shown(form_.caption()));
    if (form_.pointer() == forms::Pointer::Hourglass) {
        setCursor(Qt::WaitCursor);
    } else {
        unsetCursor();
        if (progress_ != nullptr) progress_->parentWidget()->hide();
    }
}

void FormWindow::show_progress(size_t done, size_t total)
{
    if (actions_->tool_bar() == nullptr) return;  // a dialog has no status line
    if (progress_ == nullptr) add_progress();
    constexpr size_t kSteps = 1000;
    progress_->setRange(0, total > 0 ? static_cast<int>(kSteps) : 0);
    if (total > 0) progress_->setValue(static_cast<int>(std::min(done, total) * kSteps / total));
    progress_->parentWidget()->show();
}

void FormWindow::add_progress()
{
    auto* line = new QWidget(this);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    progress_ = new QProgressBar(line);
    progress_->setTextVisible(false);
    progress_->setMaximumHeight(fontMetrics().height());
    auto* cancel = new QPushButton("Cancel", line);
    cancel->setObjectName("cancelRun");
    cancel->setFocusPolicy(Qt::NoFocus);
    name_for_readers(*progress_, "Progress", {});
    name_for_readers(*cancel, "Cancel", "Cancel the report");
    connect(cancel, &QPushButton::clicked, this, [this] { owner_.cancel_work(); });
    cancel_ = cancel;
    row->addWidget(progress_);
    row->addWidget(cancel);
    statusBar()->addPermanentWidget(line);
}

Binding* FormWindow::binding_of(const forms::Control& control) const
{
    const auto found = by_control_.find(&control);
    return found == by_control_.end() ? nullptr : found->second;
}

QWidget* FormWindow::widget_of(const forms::Control& control) const
{
    const Binding* binding = binding_of(control);
    return binding == nullptr ? nullptr : &binding->widget();
}

Binding* FormWindow::binding_around(const QObject* object) const
{
    for (; object != nullptr && object != this; object = object->parent()) {
        const auto found = by_widget_.find(object);
        if (found != by_widget_.end()) return found->second;
    }
    return nullptr;
}

void FormWindow::show_status(const QString& status)
{
    statusBar()->showMessage(status);
}

void FormWindow::without_focus_moves(const std::function<void()>& change)
{
    ++quiet_;
    change();
    --quiet_;
    if (quiet_ == 0) follow_focus();
}

void FormWindow::follow_focus()
{
    if (detached_ || quiet_ > 0) return;
    const Binding* focused = form_.focus() != nullptr ? binding_of(*form_.focus()) : nullptr;
    QWidget* target = focused != nullptr ? &focused->widget() : centralWidget();
    if (focusWidget() == target ||
        (focusWidget() != nullptr && target != centralWidget() && target->isAncestorOf(focusWidget())))
        return;
    ++quiet_;
    target->setFocus(Qt::OtherFocusReason);
    --quiet_;
}

bool FormWindow::enter(forms::Control& control)
{
    bool entered = false;
    owner_.act([&] { entered = form_.enter(control); });
    follow_focus();
    return entered;
}

bool FormWindow::take(QObject& target, QEvent& event)
{
    switch (event.type()) {
        case QEvent::ShortcutOverride:
            if (!form_.has_shortcut(key_name(dynamic_cast<QKeyEvent&>(event)))) return false;
            event.accept();  // so that it comes as a key and asks the form
            return true;
        case QEvent::KeyPress:
            return take_key(target, dynamic_cast<QKeyEvent&>(event));
        case QEvent::FocusIn:
            return take_focus_in(target, dynamic_cast<QFocusEvent&>(event));
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            return dynamic_cast<QMouseEvent&>(event).button() == Qt::LeftButton && take_press(target);
        case QEvent::ContextMenu: {
            const auto* binding = binding_around(&target);
            if (binding != nullptr && binding->has_own_menu()) return false;
            return actions_->show_popup(dynamic_cast<QContextMenuEvent&>(event).globalPos());
        }
        default:
            return false;
    }
}

bool FormWindow::take_key(QObject& target, QKeyEvent& event)
{
    const bool backward = event.key() == Qt::Key_Backtab;
    if ((event.key() == Qt::Key_Tab || backward) && !event.modifiers().testFlag(Qt::ControlModifier)) {
        step_focus(!backward);
        return true;
    }
    Binding* binding = binding_around(&target);
    const std::string name = key_name(event);
    bool taken = false;
    if (binding != nullptr) owner_.act([&] { taken = binding->control().press_key(name); });
    if (taken || detached_) return true;
    if (binding != nullptr && binding->take_key(event)) return true;
    if (!form_.has_shortcut(name)) return false;
    owner_.act([&] { form_.press_shortcut(name); });
    follow_focus();
    return true;
}

/// On to the next control in the order of the form, round the end.
void FormWindow::step_focus(bool forward)
{
    std::vector<forms::Control*> order;
    for (forms::Control* control : form_.controls()) {
        const Binding* binding = binding_of(*control);
        const bool fits = control->takes_focus() && control->is_usable() && binding != nullptr;
        if (fits || control == form_.focus()) order.push_back(control);
    }
    if (order.empty()) return;
    const auto here = std::ranges::find(order, form_.focus());
    const size_t count = order.size();
    size_t at = forward ? 0 : count - 1;
    if (here != order.end()) at = (static_cast<size_t>(here - order.begin()) + (forward ? 1 : count - 1)) % count;
    enter(*order[at]);
}

/// The toolkit has given the focus to a widget: a person's doing asks the form, all else is undone.
bool FormWindow::take_focus_in(QObject& target, QFocusEvent& event)
{
    if (quiet_ > 0) return false;
    Binding* binding = binding_around(&target);
    if (binding == nullptr || &binding->control() == form_.focus()) return false;
    const auto reason = event.reason();
    const bool meant = reason == Qt::MouseFocusReason || reason == Qt::TabFocusReason ||
                       reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
    if (meant && enter(binding->control())) return false;
    follow_focus();
    return true;
}

/// The focus goes to what is clicked before the click does anything; a box that keeps the focus takes the click away.
bool FormWindow::take_press(QObject& target)
{
    Binding* binding = binding_around(&target);
    if (binding == nullptr || !binding->control().takes_focus() || !binding->control().is_usable()) return false;
    return !enter(binding->control());
}

void FormWindow::closeEvent(QCloseEvent* event)
{
    if (detached_) return event->accept();
    event->ignore();  // the form says what becomes of it
    owner_.act([this] { form_.unload(); });
}

void FormWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || detached_) return;
    for (const auto& binding : bindings_) binding->show();
    actions_->refresh_icons();
}

}  // namespace velora::windows
