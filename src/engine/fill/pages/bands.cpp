#include "engine/fill/pages/bands.h"

namespace velora::engine {

Bands::Bands(Run& run)
    : background(run, run.plan.background),
      title(run, run.plan.title),
      page_header(run, run.plan.page_header),
      column_header(run, run.plan.column_header),
      column_footer(run, run.plan.column_footer),
      page_footer(run, run.plan.page_footer),
      last_page_footer(run, run.plan.last_page_footer),
      summary(run, run.plan.summary),
      no_data(run, run.plan.no_data),
      groups(run)
{
    for (const auto& band : run.plan.details) {
        details.push_back(std::make_unique<Band>(run, band));
    }
}

template <class Action>
void Bands::each_but_background(Action action)
{
    for (Band* band :
         {&title, &page_header, &column_header, &column_footer, &page_footer, &last_page_footer, &summary, &no_data}) {
        action(*band);
    }
    for (const auto& band : details) action(*band);
    for (const Group& group : groups) {
        for (const auto& band : group.headers) action(*band);
        for (const auto& band : group.footers) action(*band);
    }
}

void Bands::new_page_or_column()
{
    each_but_background([](Band& band) { band.new_page_or_column(); });
}

void Bands::new_group(size_t group)
{
    each_but_background([group](Band& band) { band.new_group(group); });
}

}  // namespace velora::engine
