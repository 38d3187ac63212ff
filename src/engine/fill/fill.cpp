#include "engine/fill/fill.h"

#include <algorithm>

#include "engine/expression/cell.h"
#include "engine/expression/written_date.h"
#include "engine/fill/file_properties.h"
#include "engine/fill/pages/filler.h"
#include "engine/fill/parts/images.h"
#include "engine/fill/rows/row_store.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora::engine {

namespace {

void describe(Document& document, const ReportPlan& plan, const FillOptions& options)
{
    const model::Definition& definition = *plan.definition;
    const model::PageLayout& page = definition.page;
    document.name = definition.name;
    document.page_width = page.width;
    document.page_height = page.height;
    document.top_margin = page.top;
    document.left_margin = page.left;
    document.bottom_margin = page.bottom;
    document.right_margin = page.right;
    document.landscape = page.orientation == model::Orientation::Landscape;
    document.locale = options.surroundings.locale;
    document.time_zone = options.surroundings.time_zone;
    document.created = options.created;
    document.title = definition.name;
    document.default_font = resolve_look(plan.styles->find({}), 0, {}, LookKind::Text).style.font;
    *document.sources = plan.sources;
}

/// Tells each warning once: a picture that is missing is missing on every row.
std::function<void(const std::string&)> once(const std::function<void(const std::string&)>& warn)
{
    constexpr size_t kMostWarnings = 1000;
    auto told = std::make_shared<std::set<std::string>>();
    return [warn, told](const std::string& warning) {
        if (warn && told->size() < kMostWarnings && told->insert(warning).second) warn(warning);
    };
}

/// A definition that reads nothing and does not say what is to happen without data is printed once.
bool reads_nothing(const model::Definition& definition, const TableSource& table)
{
    return !definition.when_no_data && definition.data.fields.empty() && !definition.data.query.text.present() &&
           table.fields().empty();
}

/// Asks between the rows whether the run is still wanted.
class StoppableTable : public TableSource {
public:
    /// @param at_least  rows that are there even when the table has none
    StoppableTable(TableSource& table, const std::function<bool()>& cancelled, size_t at_least)
        : table_(table), cancelled_(cancelled), at_least_(at_least)
    {
    }

    [[nodiscard]] const std::vector<Field>& fields() const override { return table_.fields(); }
    bool next() override
    {
        if (cancelled_ && cancelled_()) throw fault::of(fault::kCancelled);
        if (table_.next()) {
            ++count_;
            return true;
        }
        return count_++ < at_least_;
    }
    void rewind() override
    {
        table_.rewind();
        count_ = 0;
    }
    [[nodiscard]] const Value& cell(size_t field) const override { return table_.cell(field); }

private:
    TableSource& table_;
    const std::function<bool()>& cancelled_;
    size_t at_least_;
    size_t count_ = 0;
};

std::shared_ptr<void> fill_pages(Run& run)
{
    auto filler = std::make_shared<Filler>(run);
    filler->fill();
    return filler;
}

}  // namespace

void fill(const CompiledReport& report, TableSource& table, Measurer& measurer, const FillOptions& options,
          PageSink& sink)
{
    const ReportPlan& plan = report.plan();
    Document document;
    describe(document, plan, options);
    const auto warn = once(options.warn);
    StoppableTable rows_of(table, options.cancelled, reads_nothing(*plan.definition, table) ? 1 : 0);
    std::optional<RowStore> store;
    if (plan.shares_rows) store.emplace(rows_of, options.cancelled);
    std::optional<StoredTable> stored;
    if (store) stored.emplace(*store);
    TableSource& own_rows = stored ? static_cast<TableSource&>(*stored) : rows_of;
    Rows rows(plan, own_rows, options.parameters, {{}, options.surroundings, options.resources, {}}, warn);
    const auto folder = options.folder.empty() ? std::filesystem::path(plan.definition->folder) : options.folder;
    read_file_properties(document, plan, {rows.at(Moment::Now), folder, warn});
    PageBook book(sink, document);
    Images images(folder);

    Run run{plan, rows, measurer, document, book, images, warn};
    run.fill = fill_pages;
    if (store) run.store = &*store;
    run.run_query = &options.run_query;
    run.late = std::make_shared<LateReports>();
    run.master = std::make_shared<MasterReport>();
    run.wants_values = sink.wants_values();
    run.ignore_pagination = plan.definition->ignore_pagination;
    for (size_t slot = 0; slot < plan.parameters.size(); ++slot) {
        const auto* ignore = rows.parameter(slot).get_if<bool>();
        if (ignore && plan.parameters[slot].name == "IS_IGNORE_PAGINATION") run.ignore_pagination = *ignore;
    }
    if (run.ignore_pagination) book.hold_all();
    run.fill(run);
}

Value parameter_from_text(const CompiledReport& report, std::string_view name, std::string_view text)
{
    const auto& declared = report.definition().data.parameters;
    const auto& all = report.plan().parameters;
    const auto found = std::ranges::find(all, name, &ParameterPlan::name);
    if (found == all.end()) {
        std::string names;
        for (const auto& one : declared) names += (names.empty() ? "'" : ", '") + one.name + "'";
        throw DefinitionError({}, "",
                              "there is no parameter '" + std::string(name) + "'" +
                                  (names.empty() ? "; it has none" : "; it has " + names));
    }
    Value given = std::string(text);
    if (is_date(found->value_class)) {
        if (const auto date = written_date(text)) given = *date;
    }
    Value value = cell::to_value(cell::from(given, found->value_class));
    const bool truth = found->value_class != ValueClass::Boolean || same_name(text, "true") || same_name(text, "false");
    if (!value.is_null() && truth) return value;
    throw DefinitionError({}, "",
                          "the parameter '" + std::string(name) + "' is of the class " +
                              std::string(class_name(found->value_class)) + ", and \"" + std::string(text) +
                              "\" is none");
}

std::map<std::string, Value, std::less<>> parameter_values(const CompiledReport& report, const FillOptions& options)
{
    EmptyTable nothing;
    const Rows rows(report.plan(), nothing, options.parameters, {{}, options.surroundings, options.resources, {}}, {});
    std::map<std::string, Value, std::less<>> values;
    for (size_t slot = 0; slot < report.plan().parameters.size(); ++slot) {
        values[report.plan().parameters[slot].name] = rows.parameter(slot);
    }
    return values;
}

}  // namespace velora::engine
