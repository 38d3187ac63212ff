#include "engine/fill/pages/report_parts.h"

#include "engine/fill/parts/chart_part.h"

namespace velora::engine {

using model::EvaluationTime;

void ReportParts::begin(model::Moment part)
{
    run_.rows.begin(part, groups_.changed());
    for (const auto& chart : run_.charts) {
        chart->begin(part, groups_.changed());
    }
}

void ReportParts::resolve(EvaluationTime time, Moment moment)
{
    run_.book.resolve({time, kNoGroup, nullptr}, moment);
}

void ReportParts::resolve_groups(Moment moment, bool all)
{
    for (size_t index = 0; index < groups_.size(); ++index) {
        const bool has_ended = groups_.has_changed(index) && groups_[index].footer_printed;
        if (all || has_ended) run_.book.resolve({EvaluationTime::Group, static_cast<int>(index), nullptr}, moment);
    }
}

void ReportParts::resolve_page(Moment moment, bool is_last)
{
    resolve_groups(moment, is_last);
    resolve(EvaluationTime::Column, moment);
    resolve(EvaluationTime::Page, moment);
}

void ReportParts::end_groups(Moment moment)
{
    resolve_groups(moment, false);
}

void ReportParts::end_column(Moment moment)
{
    resolve_groups(moment, false);
    resolve(EvaluationTime::Column, moment);
    begin(model::Moment::Column);
}

void ReportParts::end_page(Moment moment, bool is_last)
{
    resolve_page(moment, is_last);
    begin(model::Moment::Page);
}

void ReportParts::end_band(const Band& band, Moment moment)
{
    run_.book.resolve({EvaluationTime::Band, kNoGroup, &band}, moment);
}

void ReportParts::end_report()
{
    resolve_page(Moment::Now, true);
    for (const auto& chart : run_.charts) {
        chart->finish();
    }
    resolve(EvaluationTime::Report, Moment::Now);
    if (run_.is_inside) return;
    run_.master->pages = run_.book.page_number();
    resolve(EvaluationTime::Master, Moment::Now);
}

}  // namespace velora::engine
