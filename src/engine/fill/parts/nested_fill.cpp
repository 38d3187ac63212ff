#include "engine/fill/parts/nested_fill.h"

#include <algorithm>

#include "engine/fill/rows/arithmetic.h"
#include "engine/fill/rows/row_store.h"
#include "engine/plan/plan_names.h"

namespace velora::engine {

namespace {

constexpr double kMostEmptyRows = 1'000'000;

std::unique_ptr<TableSource> rows_of(const Run& around, const NestedPlan& nested, Moment moment)
{
    if (nested.own_rows) return std::make_unique<StoredTable>(*around.store);
    double count = 1;
    if (nested.empty_rows) count = as_double(nested.empty_rows.evaluate(around.at(moment)));
    return std::make_unique<EmptyRows>(static_cast<size_t>(std::clamp(count, 0.0, kMostEmptyRows)));
}

ParameterValues parameters_of(const Run& around, const NestedPlan& nested, Moment moment)
{
    ParameterValues values;
    const auto& known = around.plan.parameters;
    const size_t own = plan_parameters({}).size();
    for (size_t slot = 0; nested.hands_on_parameters && slot < known.size(); ++slot) {
        // what every report has is its own
        if (slot < own) continue;
        values[known[slot].name] = around.rows.parameter(slot);
    }
    for (const auto& [name, expression] : nested.parameters) {
        values[name] = expression.evaluate(around.at(moment));
    }
    return values;
}

Rows rows_for(const Run& around, const NestedPlan& nested, TableSource& table, Moment moment)
{
    const auto& shared = around.rows.shared();
    return Rows(*nested.report, table, parameters_of(around, nested, moment),
                {{}, shared.surroundings, shared.resources, {}}, around.warn);
}

}  // namespace

NestedPrint fill_nested(Run& around, const NestedPlan& nested, Moment moment)
{
    const auto table = rows_of(around, nested, moment);
    Rows rows = rows_for(around, nested, *table, moment);
    Document document;
    document.styles = around.document.styles;
    document.page_width = nested.report->definition->page.width;
    document.page_height = 0;
    *document.sources = nested.report->sources;
    PageList pages;
    PageBook book(pages, document);
    book.hold_all();
    NestedPrint print;
    Run run{*nested.report, rows, around.measurer, document, book, around.images, around.warn};
    run.wants_values = around.wants_values;
    run.ignore_pagination = true;
    run.store = around.store;
    run.row_ends = &print.row_ends;
    run.fill = around.fill;
    run.fill(run);
    for (auto& page : pages.pages) {
        std::move(page.elements.begin(), page.elements.end(), std::back_inserter(print.elements));
    }
    print.height = document.page_height;
    print.sources = std::move(*document.sources);
    return print;
}

void read_nested(Run& around, const NestedPlan& nested, Moment moment,
                 const std::function<void(const Environment&)>& take)
{
    const auto table = rows_of(around, nested, moment);
    Rows rows = rows_for(around, nested, *table, moment);
    std::vector<bool> changed(nested.report->groups.size(), true);
    for (bool first = true; rows.next(); first = false) {
        if (first) rows.begin(model::Moment::Report, changed);
        for (size_t group = 0; !first && group < changed.size(); ++group) {
            const Expression& key = nested.report->groups[group].expression;
            const bool outer = group > 0 && changed[group - 1];
            changed[group] = outer || (key && key.evaluate(rows.at(Moment::Old)) != key.evaluate(rows.at(Moment::Now)));
        }
        if (!first) rows.begin(model::Moment::Group, changed);
        rows.calculate();
        take(rows.at(Moment::Now));
    }
}

}  // namespace velora::engine
