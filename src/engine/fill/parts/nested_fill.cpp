#include "engine/fill/parts/nested_fill.h"

#include <algorithm>

#include "engine/fill/rows/arithmetic.h"
#include "engine/fill/rows/nested_rows.h"
#include "engine/fill/rows/row_store.h"
#include "engine/plan/plan_names.h"

namespace velora::engine {

namespace {

constexpr double kMostEmptyRows = 1'000'000;
constexpr size_t kMostLate = 500;  // subreports that rows name; each may hold others

ParameterValues parameters_of(const Run& around, const NestedPlan& nested, Moment moment);

/// No value gives no row; what is no list does not either, with a warning.
std::unique_ptr<TableSource> rows_of_list(const Run& around, const Value& value)
{
    if (value.is_null()) return std::make_unique<EmptyRows>(0);
    const auto* text = value.get_if<std::string>();
    auto rows = text != nullptr ? nested_rows(*text) : nullptr;
    if (rows) return rows;
    around.tell("the rows of a report inside the report are no list that can be read; its place stays empty");
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

const NestedPlan* plan_of(Run& around, const NestedPlan& nested, Moment moment)
{
    if (!nested.late) return &nested;
    const auto name = nested.late->name.text(around.at(moment));
    if (nested.report && name == nested.late->at_opening) return &nested;
    if (!name) {
        around.tell("a subreport has no name in a row; its place stays empty");
        return nullptr;
    }
    auto& opened = around.late->opened;
    const auto key = std::make_pair(&nested, *name);
    if (const auto known = opened.find(key); known != opened.end()) return known->second.get();
    if (opened.size() >= kMostLate) {
        around.tell("the rows name more than " + std::to_string(kMostLate) +
                    " different subreports; the place of the others stays empty");
        return nullptr;
    }
    std::vector<std::string> warnings;
    const auto plan = opened[key] = open_late(nested, *name, warnings);
    for (const auto& warning : warnings) around.tell(warning);
    return plan.get();
}

namespace {

/// A nested report while it is filled, and as long as a text of it waits for the end of the outermost one.
struct NestedRun {
    NestedRun(Run& around, const NestedPlan& nested, Moment moment);

    std::unique_ptr<TableSource> source;
    std::optional<RowStore> own;  ///< for reports inside this one that read its rows too
    std::optional<StoredTable> stored;
    Rows rows;
    Document document;
    PageList pages;
    PageBook book;
    std::vector<int> row_ends;
    Run run;
    std::shared_ptr<void> filler;

private:
    TableSource& table(const NestedPlan& nested)
    {
        if (nested.own_rows || !nested.report->shares_rows) return *source;
        static const std::function<bool()> never;
        own.emplace(*source, never);
        return stored.emplace(*own);
    }
};

NestedRun::NestedRun(Run& around, const NestedPlan& nested, Moment moment)
    : source(rows_of(around, nested, moment)),
      rows(rows_for(around, nested, table(nested), moment)),
      book(pages, document),
      run{*nested.report, rows, around.measurer, document, book, around.images, around.warn}
{
    document.styles = around.document.styles;
    document.page_width = nested.report->definition->page.width;
    document.page_height = 0;
    *document.sources = nested.report->sources;
    book.hold_all();
    run.wants_values = around.wants_values;
    run.ignore_pagination = true;
    run.store = own ? &*own : around.store;
    run.row_ends = &row_ends;
    run.run_query = around.run_query;
    run.late = around.late;
    run.master = around.master;
    run.is_inside = true;
    run.fill = around.fill;
    filler = run.fill(run);
}

/// What waits in the pages of a nested report, each of which comes to keep the report.
std::vector<Waiting> left_waiting(const std::shared_ptr<NestedRun>& nested)
{
    auto waiting = nested->book.take_waiting({model::EvaluationTime::Master, kNoGroup, nullptr});
    std::vector<uint32_t> first{0};  // of each page's elements, of which there is usually one
    for (const auto& page : nested->pages.pages) {
        first.push_back(first.back() + static_cast<uint32_t>(page.elements.size()));
    }
    for (auto& each : waiting) {
        each.path.front() += first[each.page - 1];
        using Both = std::pair<std::shared_ptr<void>, std::shared_ptr<NestedRun>>;
        const auto both = std::make_shared<Both>(each.notes, nested);
        each.notes = std::shared_ptr<void>(both, each.notes.get());
    }
    return waiting;
}

}  // namespace

NestedPrint fill_nested(Run& around, const NestedPlan& nested, Moment moment)
{
    const auto filled = std::make_shared<NestedRun>(around, nested, moment);
    NestedPrint print;
    print.waiting = left_waiting(filled);
    for (auto& page : filled->pages.pages) {
        std::move(page.elements.begin(), page.elements.end(), std::back_inserter(print.elements));
    }
    filled->pages.pages.clear();
    for (const auto& value : nested.returns) {
        print.returned.push_back(value.value.evaluate(filled->rows.at(Moment::Now)));
    }
    print.row_ends = std::move(filled->row_ends);
    print.height = filled->document.page_height;
    print.sources = *filled->document.sources;
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
