#include "engine/fill/pages/page_space.h"

namespace velora::engine {

namespace {

/// Stands for a page without an end; far from where adding heights would overflow.
constexpr int kEndlessPage = 1 << 29;

}  // namespace

PageSpace::PageSpace(Run& run)
    : run_(run),
      layout_(run.plan.definition->page),
      page_height_(run.ignore_pagination ? kEndlessPage : layout_.height),
      column_end_(page_bottom() - run.plan.page_footer.height - run.plan.column_footer.height),
      last_column_end_(page_bottom() - run.plan.last_page_footer.height - run.plan.column_footer.height)
{
}

void PageSpace::begin_page()
{
    set_column(0);
    y_ = layout_.top;
    is_usual_ = true;
}

void PageSpace::set_column(int column)
{
    run_.column = column;
    if (column == 0) {
        go_to_left_margin();
    } else {
        go_to_column_edge();
    }
    run_.rows.variables().assign(kColumnNumber, column + 1);
}

void PageSpace::go_to_column_edge()
{
    const int distance = run_.column * column_step();
    x_ = layout_.right_to_left ? layout_.width - layout_.right - layout_.column_width - distance
                               : layout_.left + distance;
}

}  // namespace velora::engine
