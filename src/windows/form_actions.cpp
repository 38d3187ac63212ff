#include "windows/form_actions.h"

#include <QAction>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

#include "forms/controls/text_box.h"
#include "windows/icons.h"
#include "windows/texts.h"

namespace velora::windows {

FormActions::FormActions(QMainWindow& window, WindowOwner& owner, forms::Form& form)
    : window_(window), owner_(owner), form_(form)
{
    add_menus();
    add_tool_bar();
}

void FormActions::detach()
{
    detached_ = true;
    for (const auto& [control, watch] : watches_) control->changed.forget(watch);
    actions_.clear();
}

QAction* FormActions::add_action(QMenu& menu, forms::Control& control)
{
    auto* action = menu.addAction(QString());
    action->setObjectName(shown(control.name()));
    const auto refresh = [action, &control] {
        const auto* entry = dynamic_cast<const forms::MenuEntry*>(&control);
        action->setSeparator(entry != nullptr && entry->is_separator());
        action->setText(action->isSeparator() ? QString() : with_mnemonic(caption_of(control), {}));
        if (entry != nullptr) action->setShortcut(QKeySequence(shown(entry->shortcut)));
        action->setVisible(control.visible());
        action->setEnabled(control.enabled());
    };
    refresh();
    watches_.emplace_back(&control, control.changed.watch(refresh));
    QObject::connect(action, &QAction::triggered, &window_, [this, &control] {
        if (!detached_) owner_.act([&] { dynamic_cast<forms::Clickable&>(control).press(); });
    });
    actions_.emplace(&control, action);
    return action;
}

void FormActions::add_menus()
{
    for (const auto& menu : form_.menus) {
        auto* shown_menu = window_.menuBar()->addMenu(shown(menu.caption));
        for (auto* entry : menu.entries) add_action(*shown_menu, *entry);
    }
    if (form_.popup.entries.empty()) return;
    popup_ = new QMenu(&window_);
    for (auto* entry : form_.popup.entries) add_action(*popup_, *entry)->setShortcut({});
}

/// Buttons, and between them the boxes for which the layout has no place, in the order of the form.
void FormActions::add_tool_bar()
{
    if (form_.toolbar.empty()) return;
    window_.statusBar()->setSizeGripEnabled(false);
    constexpr size_t kManyButtons = 8;
    tool_bar_ = window_.addToolBar(QString());
    tool_bar_->setObjectName("toolbar");
    tool_bar_->setMovable(false);
    tool_bar_->setContextMenuPolicy(Qt::PreventContextMenu);
    tool_bar_->setToolButtonStyle(form_.toolbar.size() > kManyButtons ? Qt::ToolButtonIconOnly
                                                                      : Qt::ToolButtonTextUnderIcon);
    for (forms::Control* control : form_.controls()) {
        if (auto* button = dynamic_cast<forms::ToolButton*>(control)) add_tool(*button);
        const bool is_box = dynamic_cast<forms::TextBox*>(control) != nullptr;
        if (is_box && window_.findChild<QWidget*>(shown(control->name())) == nullptr) add_tool_box(*control);
    }
}

void FormActions::add_tool(forms::ToolButton& button)
{
    auto* action = new QAction(tool_bar_);
    action->setObjectName(shown(button.name()));
    const auto refresh = [this, action, &button] {
        action->setText(with_mnemonic(button.caption(), {}));
        const QString keys = QKeySequence(shown(button.shortcut)).toString(QKeySequence::NativeText);
        const QString tip = shown(button.tip().empty() ? button.caption() : button.tip());
        action->setToolTip(keys.isEmpty() ? tip : tip + " (" + keys + ")");
        action->setIcon(icon_of(button.name(), window_.palette()));
        action->setVisible(button.visible());
        action->setEnabled(button.enabled());
    };
    refresh();
    watches_.emplace_back(&button, button.changed.watch(refresh));
    QObject::connect(action, &QAction::triggered, &window_, [this, &button] {
        if (!detached_) owner_.act([&] { button.press(); });
    });
    tool_bar_->addAction(action);
    actions_.emplace(&button, action);
}

void FormActions::add_tool_box(const forms::Control& box)
{
    constexpr int kLetters = 14;
    auto* widget = new QLineEdit(tool_bar_);
    widget->setObjectName(shown(box.name()));
    widget->setPlaceholderText(shown(box.label()));
    widget->setFixedWidth(window_.fontMetrics().averageCharWidth() * kLetters);
    tool_bar_->addWidget(widget);
}

QAction* FormActions::action_of(const forms::Control& control) const
{
    const auto found = actions_.find(&control);
    return found == actions_.end() ? nullptr : found->second;
}

bool FormActions::show_popup(const QPoint& at)
{
    if (popup_ == nullptr) return false;
    popup_->popup(at);
    return true;
}

void FormActions::refresh_icons()
{
    if (tool_bar_ == nullptr) return;
    for (QAction* action : tool_bar_->actions()) {
        if (!action->icon().isNull()) action->setIcon(icon_of(action->objectName().toStdString(), window_.palette()));
    }
}

}  // namespace velora::windows
