#include "engine/fill/parts/nested_fill.h"

#include <algorithm>

#include "engine/fill/rows/arithmetic.h"
#include "engine/fill/rows/nested_rows.h"
#include "engine/fill/rows/row_store.h"
#include "engine/plan/plan_names.h"

namespace velora::engine {

namespace {

constexpr double kMostEmptyRows = 1'000'000;

ParameterValues parameters_of(const Run& around, const NestedPlan& nested, Moment moment);

/// No value gives no row; what is no list does not either, with a warning.
std::unique_ptr<TableSource> rows_of_list(const Run& around, const Value& value)
{
    if (value.is_null()) return std::make_unique<EmptyRows>(0);
    const auto* text = value.get_if<std::string>();
    auto rows = text != nullptr ? nested_rows(*text) : nullptr;
    if (rows) return rows;
    around.tell("the rows of a report inside the report are no list; its place stays empty");
    return std::make_unique<EmptyRows>(0);
}

/// A table that somebody else keeps.
class SharedTable : public TableSource {
public:
    explicit SharedTable(std::shared_ptr<TableSource> table) : table_(std::move(table)) {}

    [[nodiscard]] const std::vector<Field>& fields() const override { return table_->fields(); }
    bool next() override { return table_->next(); }
    void rewind() override { table_->rewind(); }
    [[nodiscard]] const Value& cell(size_t field) const override { return table_->cell(field); }

private:
    std::shared_ptr<TableSource> table_;
};

/// The rows of the nested report's own query, with the values that its parameters have there.
std::unique_ptr<TableSource> rows_of_query(const Run& around, const NestedPlan& nested, Moment moment)
{
    if (!around.run_query || !*around.run_query) {
        around.tell("there is no database for the query of a report inside the report; its place stays empty");
        return std::make_unique<EmptyRows>(0);
    }
    EmptyTable nothing;
    const auto& shared = around.rows.shared();
    const Rows values(*nested.report, nothing, parameters_of(around, nested, moment),
                      {{}, shared.surroundings, shared.resources, {}}, {});
    const auto& parameters = nested.report->parameters;
    const auto value_of = [&](std::string_view name) -> std::optional<Value> {
        const auto found = std::ranges::find(parameters, name, &ParameterPlan::name);
        if (found == parameters.end()) return std::nullopt;
        return values.parameter(static_cast<size_t>(found - parameters.begin()));
    };
    return std::make_unique<SharedTable>((*around.run_query)(*nested.report->definition, value_of));
}

std::unique_ptr<TableSource> rows_of(const Run& around, const NestedPlan& nested, Moment moment)
{
    if (nested.own_rows) return std::make_unique<StoredTable>(*around.store);
    if (nested.query) return rows_of_query(around, nested, moment);
    if (nested.collection) return rows_of_list(around, nested.collection.evaluate(around.at(moment)));
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
    auto table = rows_of(around, nested, moment);
    // reports inside this one may read its rows too
    const std::function<bool()> never;
    std::optional<RowStore> own;
    if (!nested.own_rows && nested.report->shares_rows) {
        own.emplace(*table, never);
        table = std::make_unique<StoredTable>(*own);
    }
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
    run.store = own ? &*own : around.store;
    run.row_ends = &print.row_ends;
    run.run_query = around.run_query;
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
