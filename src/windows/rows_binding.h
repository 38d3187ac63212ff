#pragma once

#include "forms/controls/lists.h"
#include "windows/binding.h"
#include "windows/rows_model.h"

class QTreeView;

namespace velora::windows {

/// A list box, or a list of several columns.
class RowsBinding final : public Binding {
public:
    RowsBinding(BoundForm& form, forms::RowChoice& rows, QTreeView& widget);
    bool take_key(QKeyEvent& key) override;

    void choose(int row);

private:
    void show_more() override;
    void wire_columns(const forms::ListView& view);
    void fetch_more();
    void sort_by(int column);
    void fit_columns(int before);

    forms::RowChoice& rows_;
    forms::ListView* columns_;  ///< null for a list box
    QTreeView& widget_;
    RowsModel model_;
};

}  // namespace velora::windows
