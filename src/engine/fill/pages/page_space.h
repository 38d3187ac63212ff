#pragma once

#include "engine/fill/parts/run.h"

namespace velora::engine {

/// The room of the page that is being filled: its columns, and the place where the next band stands.
class PageSpace {
public:
    explicit PageSpace(Run& run);

    /// Goes to the upper left corner of a new page.
    void begin_page();

    [[nodiscard]] int x() const { return x_; }
    [[nodiscard]] int y() const { return y_; }
    void move_to(int y) { y_ = y; }
    void move_by(int distance) { y_ += distance; }

    /// Goes to a column; the first one stands at the left margin until `go_to_column_edge`, also where columns run
    /// from the right.
    void set_column(int column);
    void go_to_column_edge();
    void go_to_left_margin() { x_ = layout_.left; }
    [[nodiscard]] int column() const { return run_.column; }
    [[nodiscard]] bool is_last_column() const { return run_.column >= layout_.column_count - 1; }
    [[nodiscard]] int column_count() const { return layout_.column_count; }
    [[nodiscard]] int column_step() const { return layout_.column_width + layout_.column_spacing; }
    /// The rows run across the columns (horizontal order) and not down them.
    [[nodiscard]] bool runs_across() const { return layout_.order == model::PrintOrder::Horizontal; }

    void mark_column_top() { column_top_ = y_; }  ///< the page header ends here
    void mark_body_top() { body_top_ = y_; }      ///< all headers end here
    void set_usual(bool is_usual) { is_usual_ = is_usual; }
    void use_last_column_end() { column_end_ = last_column_end_; }

    [[nodiscard]] int page_top() const { return layout_.top; }
    [[nodiscard]] int page_bottom() const { return page_height_ - layout_.bottom; }
    [[nodiscard]] int column_top() const { return column_top_; }
    [[nodiscard]] int column_end() const { return column_end_; }
    /// The same on the last page, whose footer may have another height.
    [[nodiscard]] int last_column_end() const { return last_column_end_; }

    [[nodiscard]] int room() const { return column_end_ - y_; }
    [[nodiscard]] int page_room() const { return page_bottom() - y_; }
    /// Nothing but headers stands here yet.
    [[nodiscard]] bool at_top() const { return runs_across() ? run_.first_page_band : run_.first_column_band; }
    /// The same, and no other page leaves more room.
    [[nodiscard]] bool has_all_room() const { return y_ <= body_top_ && is_usual_; }

private:
    Run& run_;
    const model::PageLayout& layout_;
    int page_height_;
    int x_ = 0;
    int y_ = 0;
    int column_top_ = 0;
    int body_top_ = 0;
    int column_end_ = 0;
    int last_column_end_ = 0;
    bool is_usual_ = true;  ///< no title takes room
};

}  // namespace velora::engine
