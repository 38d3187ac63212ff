#include "engine/plan/nested_plan.h"

#include <algorithm>

#include "engine/definition/file_beside.h"
#include "engine/expression/constant.h"
#include "engine/plan/load.h"
#include "engine/plan/nested_definition.h"
#include "engine/plan/plan_names.h"
#include "engine/plan/refusals.h"
#include "values/text.h"

namespace velora::engine {

namespace fs = std::filesystem;

namespace {

constexpr size_t kMostNested = 16;
constexpr size_t kMostReports = 500;   // a report that holds another thrice, which does so too, and so on
constexpr size_t kMostComponents = 4;  // each may read all rows for every row of the one around it
constexpr std::string_view kOwnRows = "$P{REPORT_DATA_SOURCE}";
constexpr std::string_view kOwnParameters = "$P{REPORT_PARAMETERS_MAP}";

void tell(const Around& around, Position place, const char* element, const std::string& text)
{
    around.warnings.push_back(Warning{place, element, text}.line());
}

/// What stands in the parentheses of a data source that makes empty rows; none for another data source.
std::optional<std::string_view> empty_rows(std::string_view source)
{
    constexpr std::string_view kName = "JREmptyDataSource";
    const size_t name = source.find(kName);
    const size_t open = source.find('(');
    const size_t close = source.rfind(')');
    const bool is_call = source.starts_with("new ") && close != std::string_view::npos && close + 1 == source.size();
    if (!is_call || name == std::string_view::npos || name + kName.size() != open) return std::nullopt;
    return trimmed(source.substr(open + 1, close - open - 1));
}

/// What stands before the first comma that is inside no brackets.
std::string_view first_argument(std::string_view arguments)
{
    int depth = 0;
    size_t end = 0;
    for (; end < arguments.size() && (depth > 0 || arguments[end] != ','); ++end) {
        if (arguments[end] == '(' || arguments[end] == '{') ++depth;
        if (arguments[end] == ')' || arguments[end] == '}') --depth;
    }
    return trimmed(arguments.substr(0, end));
}

/// What a data source takes its rows from that goes over a list, or is a list itself: "$F{lines}",
/// "new JRBeanCollectionDataSource($F{lines})". None for another data source.
std::optional<std::string_view> listed_rows(std::string_view source)
{
    constexpr std::string_view kClone = ".cloneDataSource()";
    if (source.ends_with(kClone)) source = trimmed(source.substr(0, source.size() - kClone.size()));
    while (source.starts_with("((") && source.ends_with(')')) source = trimmed(source.substr(1, source.size() - 2));
    if (source.starts_with("(")) {  // a cast
        const size_t end = source.find(')');
        if (end == std::string_view::npos) return std::nullopt;
        source = trimmed(source.substr(end + 1));
    }
    const bool reference = source.starts_with("$F{") || source.starts_with("$P{") || source.starts_with("$V{");
    if (reference && source.find('}') + 1 == source.size()) return source;
    const size_t open = source.find('(');
    if (!source.starts_with("new ") || open == std::string_view::npos || !source.ends_with(')')) return std::nullopt;
    const std::string_view made = trimmed(source.substr(4, open - 4));
    const bool known = made.ends_with("JRBeanCollectionDataSource") || made.ends_with("JRMapCollectionDataSource") ||
                       made.ends_with("JRBeanArrayDataSource") || made.ends_with("JRMapArrayDataSource");
    if (!known) return std::nullopt;
    return listed_rows(first_argument(source.substr(open + 1, source.size() - open - 2)));
}

/// Whether the nested report has a query that fetches its rows.
bool has_query(const ReportPlan& report)
{
    return !trimmed(report.definition->data.query.text.text).empty();
}

/// Finds out where the rows come from. False, and a warning, when that is nothing the engine can read.
bool plan_rows(NestedPlan& nested, const model::ExpressionText& source, const model::ExpressionText& connection,
               Position place, const char* element, const Around& around)
{
    const std::string_view text = trimmed(source.text);
    if (text.empty() || text == kOwnRows) {
        if (!connection.present() || (nested.report && !has_query(*nested.report))) return true;
        nested.own_rows = false;
        nested.query = true;
        return true;
    }
    if (const auto list = listed_rows(text)) {
        nested.own_rows = false;
        nested.collection = compile(*list, around.names, source.place, element);
        return true;
    }
    const auto count = empty_rows(text);
    if (!count) {
        tell(around, place, element,
             "takes its rows from '" + std::string(text) + "', which is not read; the place stays empty");
        return false;
    }
    nested.own_rows = false;
    if (!count->empty()) nested.empty_rows = compile(*count, around.names, source.place, element);
    return true;
}

void plan_parameters(NestedPlan& nested, const std::vector<std::pair<std::string, model::ExpressionText>>& parameters,
                     const Around& around)
{
    for (const auto& [name, text] : parameters) {
        if (!text.present()) continue;
        nested.parameters.emplace_back(name, compile(text.text, around.names, text.place, "parameter"));
    }
}

/// What the nested report hands back, where there are such variables and a way to count them on.
void plan_returns(NestedPlan& nested, const std::vector<model::ReturnValue>& returns, const char* element,
                  const Around& around)
{
    using model::Calculation;
    const PlanNames names(*nested.report, around.opening.refusals);
    for (const auto& value : returns) {
        const auto to = around.names.variable(value.to_variable);
        const bool needs_more =
            value.calculation == Calculation::Average || value.calculation == Calculation::Variance ||
            value.calculation == Calculation::StandardDeviation || value.calculation == Calculation::DistinctCount;
        if (!to || needs_more) {
            tell(around, value.place, element,
                 to ? "a return value is not handed back as an average, a spread or a count of different values"
                    : "there is no variable '" + value.to_variable + "' for a return value");
            continue;
        }
        const std::string text = value.from.present() ? value.from.text : "$V{" + value.from_variable + "}";
        const Position place = value.from.present() ? value.from.place : value.place;
        nested.returns.push_back({compile(text, names, place, "returnValue"), to->slot, value.calculation});
    }
}

std::unique_ptr<NestedPlan> plan_run(model::Definition definition, const model::Element& element,
                                     const model::DatasetRun& run, const char* name, const Around& around)
{
    auto nested = std::make_unique<NestedPlan>();
    Opening inside = around.opening;
    if (++inside.components > kMostComponents) {
        throw DefinitionError(element.place, name,
                              "more than " + std::to_string(kMostComponents) + " lists and tables stand in each other");
    }
    nested->report = around.make_plan(std::make_shared<model::Definition>(std::move(definition)), std::move(inside));
    const auto& more = nested->report->warnings;
    around.warnings.insert(around.warnings.end(), more.begin(), more.end());
    if (!plan_rows(*nested, run.source, run.connection, element.place, name, around)) return nullptr;
    plan_parameters(*nested, run.parameters, around);
    plan_returns(*nested, run.returns, name, around);
    return nested;
}

/// What an expression gives before there is any row: parameters have their defaults. None when it asks for more.
std::optional<std::string> known_at_opening(const Expression& expression, const Around& around)
{
    if (!looks_at_parameters_only(expression)) return std::nullopt;
    std::vector<Value> parameters;
    for (const auto& parameter : around.plan.parameters) {
        const Expression& value = parameter.default_value;
        parameters.push_back(looks_at_parameters_only(value) ? evaluate_constant(value, parameters) : Value());
    }
    return constant_text(expression, parameters);
}

/// The file of a subreport; for a compiled one the definition that it was made of.
std::optional<fs::path> subreport_file(const model::Definition& definition, const std::string& name)
{
    std::vector<fs::path> names{name};
    if (names[0].extension() == ".jasper")
        names = {fs::path(name).replace_extension(".jrxml"), fs::path(name).replace_extension(".rpt")};
    std::error_code error;
    for (const auto& each : names) {
        auto file = file_beside(definition.folder, each);
        if (file && fs::is_regular_file(*file, error)) return file;
    }
    return std::nullopt;
}

std::string not_there(const std::string& name)
{
    return "there is no definition '" + name + "' in the folder of the report; the place stays empty";
}

/// Where a row names the file, it cannot lead out of the folder, absolute or not.
bool stands_below(const fs::path& file, const fs::path& folder)
{
    std::error_code error;
    const auto relative = fs::relative(file, folder.empty() ? fs::path(".") : folder, error);
    return !error && !relative.empty() && *relative.begin() != "..";
}

std::shared_ptr<const ReportPlan> open_subreport(const fs::path& file, Position place, const Around& around)
{
    const std::string name = file.filename().string();
    const auto& files = around.opening.files;
    if (std::find(files.begin(), files.end(), file) != files.end()) {
        throw DefinitionError(place, "subreport", "'" + name + "' is a part of itself");
    }
    if (files.size() >= kMostNested) {
        throw DefinitionError(place, "subreport",
                              "more than " + std::to_string(kMostNested) + " reports stand in each other");
    }
    if (++*around.opening.reports > kMostReports) {
        throw DefinitionError(place, "subreport",
                              "more than " + std::to_string(kMostReports) + " reports stand in this one");
    }
    std::vector<Warning> met;
    try {
        std::optional<Refusals::Within> within;
        if (around.opening.refusals != nullptr) within.emplace(*around.opening.refusals, name);
        auto definition = std::make_shared<model::Definition>(load_definition(file, met));
        make_endless(*definition);
        auto plan = around.make_plan(std::move(definition), around.opening);
        for (const auto& warning : met) around.warnings.push_back(name + ": " + warning.line());
        for (const auto& warning : plan->warnings) around.warnings.push_back(name + ": " + warning);
        return plan;
    } catch (const DefinitionError& error) {
        throw DefinitionError(place, "subreport", name + ": " + error.what());
    }
}

}  // namespace

std::unique_ptr<NestedPlan> plan_list(const model::Element& element, const model::ListComponent& list, Around around)
{
    return plan_run(list_definition(*around.plan.definition, element, list), element, list.run, "list", around);
}

std::unique_ptr<NestedPlan> plan_table(const model::Element& element, const model::TableComponent& table, Around around)
{
    return plan_run(table_definition(*around.plan.definition, element, table), element, table.run, "table", around);
}

std::unique_ptr<NestedPlan> plan_dataset_run(const model::Element& element, const model::DatasetRun& run, Around around)
{
    return plan_run(dataset_definition(*around.plan.definition, run, element.place), element, run, "chart", around);
}

std::unique_ptr<NestedPlan> plan_subreport(const model::Element& element, const model::Subreport& subreport,
                                           Around around)
{
    const Expression name =
        compile(subreport.expression.text, around.names, subreport.expression.place, "subreportExpression");
    auto nested = std::make_unique<NestedPlan>();
    nested->framed = false;
    const auto known = known_at_opening(name, around);
    if (name && !name.references().empty()) {
        nested->late = std::make_shared<LateName>(
            LateName{name, known.value_or(""), element, around.plan, around.opening, around.make_plan});
    }
    const auto file = known ? subreport_file(*around.plan.definition, *known) : std::nullopt;
    if (!file && !nested->late) {
        tell(around, element.place, "subreport", not_there(known.value_or("")));
        return nullptr;
    }
    if (file) nested->report = open_subreport(*file, element.place, around);
    if (!plan_rows(*nested, subreport.source, subreport.connection, element.place, "subreport", around)) return nullptr;
    plan_parameters(*nested, subreport.parameters, around);
    const std::string_view map = trimmed(subreport.parameters_map.text);
    nested->hands_on_parameters = map == kOwnParameters;
    if (!map.empty() && map != kOwnParameters) {
        tell(around, element.place, "subreport", "the parameters of '" + std::string(map) + "' are not handed on");
    }
    if (nested->report) plan_returns(*nested, subreport.returns, "subreport", around);
    return nested;
}

std::shared_ptr<const NestedPlan> open_late(const NestedPlan& nested, const std::string& name,
                                            std::vector<std::string>& warnings)
{
    const LateName& late = *nested.late;
    const PlanNames names(late.around, nullptr);
    Opening opening = late.opening;
    opening.reports = std::make_shared<size_t>(0);
    opening.refusals = nullptr;  // what it refuses is told at once
    const Around around{late.around, names, opening, warnings, late.make_plan};
    try {
        const auto file = subreport_file(*late.around.definition, name);
        if (!file || !stands_below(*file, late.around.definition->folder)) {
            tell(around, late.element.place, "subreport", not_there(name));
            return nullptr;
        }
        auto opened = std::make_shared<NestedPlan>(nested);
        opened->late = nullptr;
        opened->returns.clear();
        opened->report = open_subreport(*file, late.element.place, around);
        opened->query = opened->query && has_query(*opened->report);
        plan_returns(*opened, std::get<model::Subreport>(late.element.body).returns, "subreport", around);
        return opened;
    } catch (const DefinitionError& error) {
        warnings.push_back(std::string(error.what()) + "; the place stays empty");
        return nullptr;
    }
}

}  // namespace velora::engine
