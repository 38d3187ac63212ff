#include "windows/widget_hands.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTableView>
#include <QTestKeyEvent>
#include <QTestMouseEvent>
#include <QToolBar>
#include <QTreeWidget>
#include <QWindow>

#include "windows/key_names.h"
#include "windows/rows_binding.h"
#include "windows/text_bindings.h"
#include "windows/texts.h"
#include "windows/tree_and_month.h"

namespace velora::windows {

namespace {

/// Where a click means the button: on its mark, since what is beside a short caption is no part of it.
QPoint middle_of(const QWidget& widget)
{
    if (qobject_cast<const QPushButton*>(&widget) != nullptr) return widget.rect().center();
    constexpr int kIntoTheMark = 8;
    return {kIntoTheMark, widget.height() / 2};
}

forms::Form& form_of(const forms::Control& control)
{
    return dynamic_cast<forms::Form&>(control.form());
}

void close_menus()
{
    while (auto* popup = QApplication::activePopupWidget()) popup->close();
}

}  // namespace

Binding* WidgetHands::binding_of(const forms::Control& control) const
{
    const FormWindow* window = windows_.window_of(form_of(control));
    return window != nullptr ? window->binding_of(control) : nullptr;
}

void WidgetHands::finish()
{
    windows_.settle();
    windows_.rethrow();
}

void WidgetHands::hand_over(const std::function<void()>& what)
{
    ++handed_over_;
    windows_.act(what);
}

bool WidgetHands::click(QWidget& widget, const QPoint& at)
{
    QWidget& window = *widget.window();
    const QPoint place = widget.mapTo(&window, at);
    const QWidget* met = window.childAt(place);
    const bool reaches =
        window.isVisible() && (met == &widget || widget.isAncestorOf(met) || (&window == &widget && met == nullptr));
    if (!reaches || window.windowHandle() == nullptr) return false;
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, place);
    return true;
}

bool WidgetHands::enter(forms::Control& control)
{
    windows_.settle();
    if (form_of(control).focus() == &control) return true;
    Binding* binding = binding_of(control);
    if (binding == nullptr) return control.form().enter(control);
    QWidget& widget = binding->widget();
    QWidget& target = widget.focusProxy() != nullptr ? *widget.focusProxy() : widget;
    if (widget.window()->isActiveWindow() && target.isVisible() && !target.hasFocus()) {
        target.setFocus(Qt::TabFocusReason);
    } else {
        ++handed_over_;
        binding->form().enter(control);
    }
    finish();
    return form_of(control).focus() == &control;
}

void WidgetHands::type(forms::TextBox& box, const std::string& text)
{
    Binding* binding = binding_of(box);
    if (binding == nullptr) return box.type(text);
    QInputMethodEvent all_at_once;
    all_at_once.setCommitString(shown(text));
    if (auto* line = qobject_cast<QLineEdit*>(&binding->widget())) {
        line->selectAll();
        if (text.empty()) {
            if (!line->text().isEmpty()) QTest::keyClick(line, Qt::Key_Delete);
        } else {
            QCoreApplication::sendEvent(line, &all_at_once);
        }
        if (box.on_enter) QTest::keyClick(line, Qt::Key_Return);
    } else if (auto* area = qobject_cast<QPlainTextEdit*>(&binding->widget())) {
        dynamic_cast<PlainTextBinding&>(*binding).expect(text);
        area->selectAll();
        if (!text.empty()) {
            QCoreApplication::sendEvent(area, &all_at_once);
        } else if (!area->document()->isEmpty()) {
            QTest::keyClick(area, Qt::Key_Delete);
        }
    }
    finish();
}

template <class Sort>
void WidgetHands::press_widget(Sort& control)
{
    Binding* binding = binding_of(control);
    if (binding == nullptr || !click(binding->widget(), middle_of(binding->widget()))) {
        hand_over([&] { control.press(); });
    }
    finish();
}

void WidgetHands::press(forms::Button& button)
{
    press_widget(button);
}

void WidgetHands::press(forms::CheckBox& box)
{
    press_widget(box);
}

void WidgetHands::press(forms::OptionButton& option)
{
    press_widget(option);
}

bool WidgetHands::click_entry(FormWindow& window, QAction& action)
{
    QMenu* menu = nullptr;
    for (QObject* object : action.associatedObjects()) {
        if (menu == nullptr) menu = qobject_cast<QMenu*>(object);
    }
    if (menu == nullptr) return false;
    if (menu == window.actions().popup()) {
        window.actions().show_popup(window.mapToGlobal(QPoint(0, 0)));
    } else {
        auto* bar = window.menuBar();
        if (!click(*bar, bar->actionGeometry(menu->menuAction()).center())) return false;
    }
    QCoreApplication::processEvents();
    const bool clicked = menu->isVisible() && click(*menu, menu->actionGeometry(&action).center());
    close_menus();
    return clicked;
}

void WidgetHands::press(forms::Clickable& clickable)
{
    FormWindow* window = windows_.window_of(form_of(clickable));
    QAction* action = window != nullptr ? window->actions().action_of(clickable) : nullptr;
    QWidget* button = action != nullptr && window->actions().tool_bar() != nullptr
                          ? window->actions().tool_bar()->widgetForAction(action)
                          : nullptr;
    const bool is_line = action != nullptr && action->isSeparator();  // nothing to click on
    const bool clicked = action != nullptr && !is_line &&
                         (button != nullptr ? click(*button, button->rect().center()) : click_entry(*window, *action));
    if (!clicked) hand_over([&] { clickable.press(); });
    finish();
}

bool WidgetHands::choose_item(QComboBox& box, int index)
{
    if (!click(box, box.rect().center()) || !box.view()->isVisible()) return false;
    box.view()->setCurrentIndex(box.model()->index(index, box.modelColumn()));
    QTest::keyClick(box.view(), Qt::Key_Return);
    return true;
}

void WidgetHands::choose(forms::RowChoice& rows, int index)
{
    Binding* binding = binding_of(rows);
    bool done = false;
    if (binding != nullptr) {
        if (auto* box = qobject_cast<QComboBox*>(&binding->widget())) {
            done = choose_item(*box, index);
        } else if (auto* view = qobject_cast<QTreeView*>(&binding->widget()); view != nullptr && index >= 0) {
            const QModelIndex row = view->model()->index(index, 0);
            view->scrollTo(row);
            const QRect place = view->visualRect(row) & view->viewport()->rect();
            done = !place.isEmpty() && click(*view->viewport(), place.center());
        }
    }
    if (!done) hand_over([&] { rows.choose(index); });  // no click chooses none
    finish();
}

void WidgetHands::choose(forms::Tree& tree, const std::string& key)
{
    auto* binding = dynamic_cast<TreeBinding*>(binding_of(tree));
    auto* item = binding != nullptr ? binding->item_of(key) : nullptr;
    bool done = false;
    if (item != nullptr && (item->parent() == nullptr || item->parent()->isExpanded())) {
        auto& view = dynamic_cast<QTreeWidget&>(binding->widget());
        view.scrollToItem(item);
        done = click(*view.viewport(), view.visualItemRect(item).center());
    }
    if (!done) hand_over([&] { tree.choose(key); });
    finish();
}

void WidgetHands::open(forms::Tree& tree, const std::string& key)
{
    auto* binding = dynamic_cast<TreeBinding*>(binding_of(tree));
    auto* item = binding != nullptr ? binding->item_of(key) : nullptr;
    const auto* node = tree.find(key);
    if (node != nullptr && (node->expanded || !tree.has_children(key))) return;  // nothing to open
    bool done = false;
    if (item != nullptr && (item->parent() == nullptr || item->parent()->isExpanded())) {
        auto& view = dynamic_cast<QTreeWidget&>(binding->widget());
        view.scrollToItem(item);
        const QRect text = view.visualItemRect(item);
        done = click(*view.viewport(), QPoint(text.left() - view.indentation() / 2, text.center().y()));
    }
    if (!done || (node != nullptr && !tree.find(key)->expanded)) hand_over([&] { tree.open(key); });
    finish();
}

void WidgetHands::pick(forms::MonthView& month, const DateTime& date)
{
    auto* binding = dynamic_cast<MonthBinding*>(binding_of(month));
    const QDate day = QDate::fromString(shown(date.date_only().iso()), Qt::ISODate);
    bool done = false;
    if (binding != nullptr && day.isValid()) {
        auto& calendar = dynamic_cast<QCalendarWidget&>(binding->widget());
        calendar.setCurrentPage(day.year(), day.month());
        auto* days = calendar.findChild<QTableView*>();
        // The days of a month follow each other behind its first.
        bool in_month = false;
        for (int cell = 0; days != nullptr && !done && cell < 7 * 6; ++cell) {
            const QModelIndex at = days->model()->index(1 + cell / 7, cell % 7);
            const int number = at.data().toInt();
            in_month = in_month || number == 1;
            if (in_month && number == day.day()) done = click(*days->viewport(), days->visualRect(at).center());
        }
    }
    if (!done) hand_over([&] { month.pick(date); });
    finish();
}

/// A key that means nothing to the form does nothing, here as without widgets.
void WidgetHands::press_key(forms::Control& control, const std::string& key)
{
    Binding* binding = binding_of(control);
    const auto keys = key_named(key);
    const bool is_known = control.has_key(key) || form_of(control).has_shortcut(key);
    if (binding == nullptr || keys.key() == Qt::Key_unknown) {
        hand_over([&] { Hands::press_key(control, key); });
    } else if (is_known) {
        QTest::keyClick(binding->widget().window()->windowHandle(), keys.key(), keys.keyboardModifiers());
    }
    finish();
}

void WidgetHands::close(forms::Form& form)
{
    FormWindow* window = windows_.window_of(form);
    if (window == nullptr || !window->isVisible()) {
        hand_over([&] { form.unload(); });
    } else {
        window->close();
    }
    finish();
}

}  // namespace velora::windows
