#pragma once

#include <cstdint>
#include <vector>

#include "forms/controls/text_box.h"

namespace velora::forms {

/// Rows of which one may be selected.
class RowChoice : public Control {
public:
    using Control::Control;

    [[nodiscard]] int selected() const { return selected_; }  ///< -1 for none
    [[nodiscard]] virtual int count() const = 0;
    /// By a procedure: fires `click` whenever an index is set. @throws Fault 380 for a row that is not there
    void select(int index);
    /// By a person; also on the row that is selected already.
    void choose(int index) { select(index); }

    Event click{form()};

protected:
    /// Fires nothing.
    void forget_selection() { selected_ = -1; }
    void row_removed(int index);

private:
    int selected_ = -1;
};

class ListBox final : public RowChoice {
public:
    using RowChoice::RowChoice;

    [[nodiscard]] const std::vector<std::string>& items() const { return items_; }
    [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
    void add(const std::string& text);
    /// Fires nothing. @throws Fault 5 for a row that is not there
    void remove(int index);
    void clear();  ///< fires nothing
    void accept(ControlVisitor& visitor) const override;

private:
    std::vector<std::string> items_;
};

/// A list that drops down; every item carries a number beside its text.
class DropDown final : public RowChoice {
public:
    using RowChoice::RowChoice;

    struct Item {
        std::string text;
        int32_t data = 0;
    };
    [[nodiscard]] const std::vector<Item>& items() const { return items_; }
    [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
    /// The number of the selected item, `otherwise` without a selection.
    [[nodiscard]] int32_t selected_data(int32_t otherwise) const;
    void add(const std::string& text, int32_t data = 0);
    void clear();

    [[nodiscard]] Back back() const { return back_; }
    void set_back(Back back);
    void accept(ControlVisitor& visitor) const override;

private:
    std::vector<Item> items_;
    Back back_ = Back::Window;
};

/// Rows of several columns. A long list brings its rows by and by.
class ListView final : public RowChoice {
public:
    using RowChoice::RowChoice;

    using Row = std::vector<std::string>;
    [[nodiscard]] const std::vector<std::string>& columns() const { return columns_; }
    void set_columns(std::vector<std::string> columns);
    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
    [[nodiscard]] int count() const override { return static_cast<int>(rows_.size()); }
    void add(Row row);
    void add_rows(std::vector<Row> rows);
    void clear();  ///< fires nothing

    /// Adds the next rows of a long list, false when there are none; without it the rows are all there.
    std::function<bool()> fetch_more;
    /// A person wants the rows in the order of a column; without it they stay as they are.
    std::function<void(int column, bool descending)> sort_by;
    Event double_click{form()};
    void accept(ControlVisitor& visitor) const override;

private:
    std::vector<std::string> columns_;
    std::vector<Row> rows_;
};

}  // namespace velora::forms
