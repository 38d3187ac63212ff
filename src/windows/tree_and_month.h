#pragma once

#include <map>

#include "forms/controls/month_view.h"
#include "forms/controls/tree.h"
#include "windows/binding.h"

class QCalendarWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace velora::windows {

class TreeBinding final : public Binding {
public:
    TreeBinding(BoundForm& form, forms::Tree& tree, QTreeWidget& widget);
    bool take_key(QKeyEvent& key) override;

    void choose(const std::string& node);
    [[nodiscard]] QTreeWidgetItem* item_of(const std::string& node) const;

private:
    void show_more() override;
    void add_missing();

    forms::Tree& tree_;
    QTreeWidget& widget_;
    std::map<std::string, QTreeWidgetItem*> items_;
};

/// A month that comes up beside the box for which it was opened.
class MonthBinding final : public Binding {
public:
    MonthBinding(BoundForm& form, forms::MonthView& month, QCalendarWidget& widget);
    bool take_key(QKeyEvent& key) override;

    void pick(const QDate& date);

private:
    void show_more() override;
    void place();

    forms::MonthView& month_;
    QCalendarWidget& widget_;
};

}  // namespace velora::windows
