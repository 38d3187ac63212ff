#pragma once

#include <QAbstractTableModel>
#include <functional>

#include "forms/controls/lists.h"

namespace velora::windows {

/// The rows that a control holds at the moment, read as they are painted.
class RowsModel final : public QAbstractTableModel {
public:
    explicit RowsModel(const forms::RowChoice& rows, QObject* parent);

    /// The control's rows are others now, or more.
    void follow();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] const std::string& cell(int row, int column) const;

    const forms::RowChoice& rows_;
    const forms::ListBox* box_;
    const forms::ListView* view_;
    int count_ = 0;
    int columns_ = 0;
};

}  // namespace velora::windows
