#include "windows/rows_model.h"

#include "windows/texts.h"

namespace velora::windows {

RowsModel::RowsModel(const forms::RowChoice& rows, QObject* parent)
    : QAbstractTableModel(parent),
      rows_(rows),
      box_(dynamic_cast<const forms::ListBox*>(&rows)),
      view_(dynamic_cast<const forms::ListView*>(&rows))
{
}

void RowsModel::follow()
{
    const int count = rows_.count();
    const int columns = view_ != nullptr ? static_cast<int>(view_->columns().size()) : 1;
    if (columns == columns_ && count == count_) return;
    if (columns == columns_ && count > count_) {
        beginInsertRows({}, count_, count - 1);
        count_ = count;
        return endInsertRows();
    }
    beginResetModel();
    count_ = count;
    columns_ = columns;
    endResetModel();
}

int RowsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count_;
}

int RowsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : columns_;
}

const std::string& RowsModel::cell(int row, int column) const
{
    if (box_ != nullptr) return box_->items()[static_cast<size_t>(row)];
    return view_->rows()[static_cast<size_t>(row)][static_cast<size_t>(column)];
}

QVariant RowsModel::data(const QModelIndex& index, int role) const
{
    // The control may have changed already when the widget has not yet been told.
    if (!index.isValid() || index.row() >= rows_.count()) return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return shown(cell(index.row(), index.column()));
    return {};
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || view_ == nullptr) return {};
    return shown(view_->columns().at(static_cast<size_t>(section)));
}

}  // namespace velora::windows
