#include "engine/fill/pages/filler.h"

namespace velora::engine {

using model::WhenNoData;

Filler::Filler(Run& run)
    : run_(run),
      bands_(run),
      parts_(run, bands_.groups),
      space_(run),
      placer_(run, space_, parts_),
      frame_(run, bands_, space_, placer_, parts_),
      keeping_(run, bands_.groups, space_),
      flow_(run, bands_, space_, placer_, parts_, frame_, keeping_),
      groups_(run, bands_, space_, frame_, flow_, keeping_),
      details_(run, bands_, space_, placer_, frame_, flow_, keeping_),
      summary_(run, bands_, space_, placer_, parts_, frame_, flow_)
{
}

void Filler::fill()
{
    if (run_.rows.next()) {
        begin_body();
        details_.print();
        while (next_row()) {
        }
        groups_.footers(true);
        summary_.print();
    } else {
        no_data();
    }
    const model::PageLayout& page = run_.plan.definition->page;
    if (run_.ignore_pagination) run_.document.page_height = std::max(page.height, space_.y() + page.bottom);
    parts_.end_report();
    run_.book.finish();
}

void Filler::begin_body()
{
    parts_.begin(model::Moment::Report);
    frame_.begin_first_page();
    title();
    frame_.page_header(Moment::Now);
    frame_.column_headers(Moment::Now);
    space_.mark_body_top();
    groups_.headers(true);
}

void Filler::title()
{
    if (!bands_.title.decide(Moment::Now)) return;
    flow_.place_on_pages(bands_.title);
    space_.set_usual(bands_.title.height() == 0);
    if (!run_.plan.definition->title_new_page) return;
    parts_.end_page(Moment::Now);
    frame_.begin_page();
}

bool Filler::next_row()
{
    placer_.begin_row();
    if (!run_.rows.next()) return false;
    if (!bands_.groups.empty()) {
        bands_.groups.find_changes();
        groups_.footers(false);
        parts_.end_groups(Moment::Old);
    }
    parts_.begin(model::Moment::Group);
    groups_.headers(false);
    details_.print();
    return true;
}

void Filler::no_data()
{
    switch (run_.plan.definition->when_no_data.value_or(WhenNoData::NoPages)) {
        case WhenNoData::BlankPage:
            run_.book.begin_page();
            break;
        case WhenNoData::AllSectionsNoDetail:
            begin_body();
            groups_.footers(true);
            summary_.print();
            break;
        case WhenNoData::NoDataSection:
            parts_.begin(model::Moment::Report);
            frame_.begin_first_page();
            flow_.place_on_pages(bands_.no_data);
            break;
        case WhenNoData::NoPages:
            break;
    }
}

}  // namespace velora::engine
