#include "windows/tree_and_month.h"

#include <QCalendarWidget>
#include <QHeaderView>
#include <QKeyEvent>
#include <QTreeWidget>

#include "windows/texts.h"

namespace velora::windows {

namespace {

std::string key_of(const QTreeWidgetItem* item)
{
    return item->data(0, Qt::UserRole).toString().toStdString();
}

}  // namespace

TreeBinding::TreeBinding(BoundForm& form, forms::Tree& tree, QTreeWidget& widget)
    : Binding(form, tree, widget), tree_(tree), widget_(widget)
{
    widget.header()->setVisible(false);
    widget.setExpandsOnDoubleClick(true);
    QObject::connect(&widget, &QTreeWidget::itemClicked, &widget,
                     [this](QTreeWidgetItem* item) { choose(key_of(item)); });
    QObject::connect(&widget, &QTreeWidget::itemExpanded, &widget,
                     [this](QTreeWidgetItem* item) { act([this, node = key_of(item)] { tree_.open(node); }); });
    QObject::connect(&widget, &QTreeWidget::itemCollapsed, &widget,
                     [this](QTreeWidgetItem* item) { act([this, node = key_of(item)] { tree_.close(node); }); });
}

void TreeBinding::choose(const std::string& node)
{
    act([&] { tree_.choose(node); });
}

QTreeWidgetItem* TreeBinding::item_of(const std::string& node) const
{
    const auto found = items_.find(node);
    return found == items_.end() ? nullptr : found->second;
}

bool TreeBinding::take_key(QKeyEvent& key)
{
    if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_Escape) return false;
    static_cast<QObject&>(widget_).event(&key);
    const auto* item = widget_.currentItem();
    if (item != nullptr && key_of(item) != tree_.selected()) choose(key_of(item));
    return true;
}

void TreeBinding::add_missing()
{
    for (const auto& node : tree_.nodes()) {
        if (items_.contains(node.key)) continue;
        auto* parent = item_of(node.parent);
        auto* item = parent != nullptr ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(&widget_);
        item->setText(0, shown(node.text));
        item->setData(0, Qt::UserRole, shown(node.key));
        items_.emplace(node.key, item);
    }
}

void TreeBinding::show_more()
{
    name_for_readers(widget_, tree_.label().empty() ? form().form().caption() : tree_.label(), tree_.tip());
    add_missing();
    for (const auto& node : tree_.nodes()) {
        auto* item = item_of(node.key);
        item->setExpanded(node.expanded);
        const auto group = node.grey ? QPalette::Disabled : QPalette::Active;
        item->setForeground(0, widget_.palette().brush(group, QPalette::Text));
    }
    if (auto* item = item_of(tree_.selected()); item != nullptr && item != widget_.currentItem()) {
        // A node that the form chooses does not open its parent.
        widget_.setAutoScroll(item->parent() == nullptr || item->parent()->isExpanded());
        widget_.setCurrentItem(item);
        widget_.setAutoScroll(true);
    }
    widget_.resizeColumnToContents(0);
    widget_.setMinimumWidth(widget_.columnWidth(0) + 2 * widget_.frameWidth() + widget_.indentation());
}

MonthBinding::MonthBinding(BoundForm& form, forms::MonthView& month, QCalendarWidget& widget)
    : Binding(form, month, widget), month_(month), widget_(widget)
{
    widget.setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    widget.setGridVisible(false);
    widget.setAutoFillBackground(true);
    QObject::connect(&widget, &QCalendarWidget::clicked, &widget, [this](const QDate& date) { pick(date); });
}

void MonthBinding::pick(const QDate& date)
{
    const auto picked = DateTime::from_iso(date.toString(Qt::ISODate).toStdString());
    if (picked) act([&] { month_.pick(picked->date_only()); });
}

bool MonthBinding::take_key(QKeyEvent& key)
{
    if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
    pick(widget_.selectedDate());
    return true;
}

void MonthBinding::show_more()
{
    name_for_readers(widget_, month_.label(), month_.tip());
    const QDate date = QDate::fromString(shown(month_.date().date_only().iso()), Qt::ISODate);
    if (date.isValid()) widget_.setSelectedDate(date);
    if (month_.visible()) place();
}

/// Below the box, or above it where there is no room.
void MonthBinding::place()
{
    const QWidget* around = widget_.parentWidget();
    const QWidget* beside = month_.beside != nullptr ? form().widget_of(*month_.beside) : nullptr;
    widget_.adjustSize();
    QPoint at;
    if (beside != nullptr) {
        at = beside->mapTo(around, QPoint(0, beside->height()));
        if (at.y() + widget_.height() > around->height()) at.setY(around->height() - widget_.height());
        if (at.x() + widget_.width() > around->width()) at.setX(around->width() - widget_.width());
    }
    widget_.move(std::max(0, at.x()), std::max(0, at.y()));
    widget_.raise();
}

}  // namespace velora::windows
