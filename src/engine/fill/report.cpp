#include "engine/fill/report.h"

#include "engine/fill/filler.h"
#include "engine/fill/images.h"
#include "engine/fill/row_store.h"
#include "values/fault.h"

namespace velora::engine {

namespace {

Value::Type cell_type(ValueClass value_class)
{
    if (is_integer(value_class)) return Value::Type::Integer;
    switch (value_class) {
        case ValueClass::Boolean:
            return Value::Type::Boolean;
        case ValueClass::Float:
            return Value::Type::Single;
        case ValueClass::Double:
            return Value::Type::Double;
        case ValueClass::Decimal:
            return Value::Type::Fixed;
        case ValueClass::Date:
            return Value::Type::Date;
        default:
            return Value::Type::Text;
    }
}

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
    const auto property = [&](const char* name, std::string& target) {
        if (const auto value = model::property_value(definition.data.properties, name)) target = *value;
    };
    property("net.sf.jasperreports.export.pdf.metadata.title", document.title);
    property("net.sf.jasperreports.export.pdf.metadata.author", document.author);
    property("net.sf.jasperreports.export.pdf.metadata.subject", document.subject);
    property("net.sf.jasperreports.export.pdf.metadata.keywords", document.keywords);
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

}  // namespace

Report::Report(std::shared_ptr<const model::Definition> definition) : plan_(make_plan(std::move(definition)))
{
    for (const auto& field : plan_->fields) {
        fields_.push_back({field.name, cell_type(field.value_class)});
    }
}

const model::Definition& Report::definition() const
{
    return *plan_->definition;
}

const std::vector<std::string>& Report::warnings() const
{
    return plan_->warnings;
}

void fill(const Report& report, TableSource& table, Measurer& measurer, const FillOptions& options, PageSink& sink)
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
    PageBook book(sink, document);
    Images images(options.folder.empty() ? std::filesystem::path(plan.definition->folder) : options.folder);

    Run run{plan, rows, measurer, document, book, images, warn};
    if (store) run.store = &*store;
    run.wants_values = sink.wants_values();
    run.ignore_pagination = plan.definition->ignore_pagination;
    for (size_t slot = 0; slot < plan.parameters.size(); ++slot) {
        const auto* ignore = rows.parameter(slot).get_if<bool>();
        if (ignore && plan.parameters[slot].name == "IS_IGNORE_PAGINATION") run.ignore_pagination = *ignore;
    }
    if (run.ignore_pagination) book.hold_all();
    Filler(run).fill();
}

}  // namespace velora::engine
