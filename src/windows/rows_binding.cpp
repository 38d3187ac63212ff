#include "windows/rows_binding.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTreeView>

#include "windows/texts.h"

namespace velora::windows {

RowsBinding::RowsBinding(BoundForm& form, forms::RowChoice& rows, QTreeView& widget)
    : Binding(form, rows, widget),
      rows_(rows),
      columns_(dynamic_cast<forms::ListView*>(&rows)),
      widget_(widget),
      model_(rows, nullptr)
{
    widget.setModel(&model_);
    widget.setRootIsDecorated(false);
    widget.setItemsExpandable(false);
    widget.setUniformRowHeights(true);  // a long list is not measured row by row
    widget.setAllColumnsShowFocus(true);
    widget.setEditTriggers(QAbstractItemView::NoEditTriggers);
    widget.header()->setVisible(false);
    QObject::connect(&widget, &QTreeView::clicked, &widget, [this](const QModelIndex& at) { choose(at.row()); });
    if (columns_ != nullptr) wire_columns(*columns_);
}

void RowsBinding::wire_columns(const forms::ListView& view)
{
    const bool titled = std::ranges::any_of(view.columns(), [](const std::string& title) { return !title.empty(); });
    widget_.header()->setVisible(titled);
    widget_.header()->setStretchLastSection(true);
    if (view.sort_by) {
        widget_.header()->setSectionsClickable(true);
        widget_.header()->setSortIndicatorShown(true);
        widget_.header()->setSortIndicator(0, Qt::AscendingOrder);
        QObject::connect(widget_.header(), &QHeaderView::sectionClicked, &widget_,
                         [this](int column) { sort_by(column); });
    }
    QObject::connect(&widget_, &QTreeView::doubleClicked, &widget_,
                     [this] { act([this] { columns_->double_click.fire(); }); });
    // Only a person who scrolls asks for more rows, not the widget that lays out what it has.
    const auto* bar = widget_.verticalScrollBar();
    QObject::connect(bar, &QScrollBar::actionTriggered, &widget_, [this, bar] {
        if (bar->sliderPosition() + bar->pageStep() >= bar->maximum()) fetch_more();
    });
}

void RowsBinding::choose(int row)
{
    act([this, row] { rows_.choose(row); });
}

void RowsBinding::fetch_more()
{
    if (columns_->fetch_more) act([this] { columns_->fetch_more(); });
}

void RowsBinding::sort_by(int column)
{
    auto* header = widget_.header();
    // The toolkit has turned the mark by itself.
    act([&] { columns_->sort_by(column, header->sortIndicatorOrder() == Qt::DescendingOrder); });
}

/// The widget moves its own mark; a row that it came to is chosen.
bool RowsBinding::take_key(QKeyEvent& key)
{
    if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_Escape) return false;
    if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return false;
    if (rows_.selected() < 0) {  // the toolkit has a mark of its own, which a person does not see
        const QSignalBlocker silent(widget_.selectionModel());
        widget_.setCurrentIndex({});
    }
    static_cast<QObject&>(widget_).event(&key);
    const int row = widget_.currentIndex().row();
    if (columns_ != nullptr && row >= 0 && row + 1 >= rows_.count()) fetch_more();
    if (row >= 0 && row != rows_.selected()) choose(row);
    return true;
}

/// Columns are as wide as their texts; those of a list that comes piece by piece as those of its first.
void RowsBinding::fit_columns(int before)
{
    if (columns_ == nullptr || model_.rowCount() == before || (before > 0 && columns_->fetch_more)) return;
    for (int column = 0; column + 1 < model_.columnCount(); ++column) widget_.resizeColumnToContents(column);
}

void RowsBinding::show_more()
{
    name_for_readers(widget_, rows_.label(), rows_.tip());
    const int before = model_.rowCount();
    model_.follow();
    fit_columns(before);
    auto* selection = widget_.selectionModel();
    const QSignalBlocker silent(selection);
    if (rows_.selected() < 0) {
        selection->clear();
        widget_.viewport()->update();
        return;
    }
    const QModelIndex at = model_.index(rows_.selected(), 0);
    if (widget_.currentIndex() == at && selection->isRowSelected(at.row())) return;
    selection->setCurrentIndex(at, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    widget_.scrollTo(at);
    widget_.viewport()->update();
}

}  // namespace velora::windows
