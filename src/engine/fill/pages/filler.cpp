#include "engine/fill/pages/filler.h"

#include "engine/fill/parts/chart_part.h"

namespace velora::engine {

using model::WhenNoData;

namespace {

/// Stands for a page without an end; far from where adding heights would overflow.
constexpr int kEndlessPage = 1 << 29;

}  // namespace

Filler::GroupState::GroupState(Run& run, const GroupPlan& group_plan) : plan(group_plan), group(*group_plan.group)
{
    for (const auto& band : plan.headers) {
        headers.push_back(std::make_unique<Band>(run, band));
    }
    for (const auto& band : plan.footers) {
        footers.push_back(std::make_unique<Band>(run, band));
    }
}

bool Filler::GroupState::has_min_details(int without) const
{
    const int wanted = group.min_details_to_start_from_top;
    return wanted <= 0 || wanted <= details - without;
}

Filler::Filler(Run& run)
    : run_(run),
      plan_(run.plan),
      definition_(*run.plan.definition),
      page_(run.plan.definition->page),
      across_(page_.order == model::PrintOrder::Horizontal),
      background_(run, plan_.background),
      title_(run, plan_.title),
      page_header_(run, plan_.page_header),
      column_header_(run, plan_.column_header),
      column_footer_(run, plan_.column_footer),
      page_footer_(run, plan_.page_footer),
      last_page_footer_(run, plan_.last_page_footer),
      summary_(run, plan_.summary),
      no_data_(run, plan_.no_data),
      changed_(plan_.groups.size(), true),
      page_height_(run.ignore_pagination ? kEndlessPage : page_.height)
{
    for (const auto& band : plan_.details) {
        details_.push_back(std::make_unique<Band>(run, band));
    }
    groups_.reserve(plan_.groups.size());
    for (const auto& group : plan_.groups) {
        groups_.emplace_back(run, group);
    }
    column_footer_y_ = page_bottom() - page_footer_.height() - column_footer_.height();
    last_column_footer_y_ = page_bottom() - last_page_footer_.height() - column_footer_.height();
}

void Filler::fill()
{
    if (run_.rows.next()) {
        begin_report();
        begin_body();
        details();
        while (next_row()) {
        }
        group_footers(true);
        summary();
    } else {
        no_data();
    }
    if (run_.ignore_pagination) run_.document.page_height = std::max(page_.height, y_ + page_.bottom);
    resolve_page(Moment::Now, true);
    for (const auto& chart : run_.charts) {
        chart->finish();
    }
    resolve({model::EvaluationTime::Report, kNoGroup, nullptr}, Moment::Now);
    run_.book.finish();
}

void Filler::begin_part(model::Moment part)
{
    run_.rows.begin(part, changed_);
    for (const auto& chart : run_.charts) {
        chart->begin(part, changed_);
    }
}

void Filler::begin_report()
{
    begin_part(model::Moment::Report);
    run_.book.begin_page();
    set_column(0);
    y_ = page_.top;
    background();
}

void Filler::begin_body()
{
    title();
    page_header(Moment::Now);
    column_headers(Moment::Now);
    fresh_y_ = y_;
    group_headers(true);
}

bool Filler::next_row()
{
    row_on_page_ = false;
    row_on_column_ = false;
    if (!run_.rows.next()) return false;
    if (!groups_.empty()) {
        run_.rows.find_group_changes(changed_);
        group_footers(false);
        resolve_groups(Moment::Old, false);
    }
    begin_part(model::Moment::Group);
    group_headers(false);
    details();
    return true;
}

void Filler::no_data()
{
    const auto kind = definition_.when_no_data.value_or(WhenNoData::NoPages);
    if (kind == WhenNoData::BlankPage) run_.book.begin_page();
    if (kind == WhenNoData::AllSectionsNoDetail) {
        begin_report();
        begin_body();
        group_footers(true);
        summary();
    }
    if (kind == WhenNoData::NoDataSection) {
        begin_report();
        place_on_pages(no_data_);
    }
}

void Filler::title()
{
    if (!title_.decide(Moment::Now)) return;
    place_on_pages(title_);
    is_usual_page_ = title_.height() == 0;
    if (!definition_.title_new_page) return;
    end_page(Moment::Now);
    add_page(false);
}

void Filler::background()
{
    if (background_.height() > page_room() || !background_.decide(Moment::Now)) return;
    background_.evaluate(Moment::Now);
    background_.prepare(page_room());
    background_.emit(x_, y_);
    note_row(Moment::Now);
}

void Filler::mark_new_page_or_column()
{
    for (Band* band : {&title_, &page_header_, &column_header_, &column_footer_, &page_footer_, &last_page_footer_,
                       &summary_, &no_data_}) {
        band->new_page_or_column();
    }
    for (const auto& band : details_) {
        band->new_page_or_column();
    }
    for (const auto& group : groups_) {
        for (const auto& band : group.headers) band->new_page_or_column();
        for (const auto& band : group.footers) band->new_page_or_column();
    }
}

void Filler::mark_new_group(size_t changed)
{
    for (Band* band : {&title_, &page_header_, &column_header_, &column_footer_, &page_footer_, &last_page_footer_,
                       &summary_, &no_data_}) {
        band->new_group(changed);
    }
    for (const auto& band : details_) {
        band->new_group(changed);
    }
    for (const auto& group : groups_) {
        for (const auto& band : group.headers) band->new_group(changed);
        for (const auto& band : group.footers) band->new_group(changed);
    }
}

}  // namespace velora::engine
