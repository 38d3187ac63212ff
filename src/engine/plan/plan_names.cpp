#include "engine/plan/plan_names.h"

#include <algorithm>

#include "values/number_text.h"

namespace velora::engine {

using model::Calculation;
using model::Moment;

namespace {

ValueClass class_or_object(std::string_view declared)
{
    return value_class(declared).value_or(ValueClass::Object);
}

std::optional<Name> look_up(const std::map<std::string, Name, std::less<>>& slots, std::string_view name)
{
    const auto found = slots.find(name);
    return found == slots.end() ? std::nullopt : std::optional(found->second);
}

VariablePlan built_in(std::string name, Calculation calculation, Moment reset, int64_t initial, int group = kNoGroup)
{
    VariablePlan plan;
    plan.name = std::move(name);
    plan.value_class = ValueClass::Integer;
    plan.calculation = calculation;
    plan.reset = reset;
    plan.reset_group = group;
    plan.fixed_expression = Value(int64_t{1});
    plan.fixed_initial = Value(initial);
    return plan;
}

/// What an average, a variance or a deviation is computed from; its name cannot be written in an expression.
size_t add_aggregate(std::vector<VariablePlan>& plans, const VariablePlan& of, Calculation calculation)
{
    VariablePlan plan = of;
    plan.name += '\n' + std::to_string(static_cast<int>(calculation));
    plan.calculation = calculation;
    if (calculation == Calculation::Count) plan.value_class = ValueClass::Long;
    plans.push_back(std::move(plan));
    return plans.size() - 1;
}

void add_declared(std::vector<VariablePlan>& plans, const model::Definition& definition,
                  const model::Variable& variable)
{
    VariablePlan plan;
    plan.name = variable.name;
    plan.value_class = class_or_object(variable.class_name);
    plan.calculation = variable.calculation;
    plan.reset = variable.reset;
    plan.increment = variable.increment;
    if (plan.reset == Moment::Group) plan.reset_group = group_index(definition, variable.reset_group, variable.place);
    if (plan.increment == Moment::Group) {
        plan.increment_group = group_index(definition, variable.increment_group, variable.place);
    }
    const bool spread = plan.calculation == Calculation::Variance || plan.calculation == Calculation::StandardDeviation;
    if (spread || plan.calculation == Calculation::Average) {
        plan.count = add_aggregate(plans, plan, Calculation::Count);
        plan.sum = add_aggregate(plans, plan, Calculation::Sum);
    }
    if (plan.calculation == Calculation::StandardDeviation) {
        plan.spread = add_aggregate(plans, plan, Calculation::Variance);
    }
    plans.push_back(std::move(plan));
}

}  // namespace

PlanNames::PlanNames(const ReportPlan& plan, Refusals* refusals) : refusals_(refusals)
{
    const auto add = [](Slots& slots, const auto& declared) {
        for (size_t slot = 0; slot < declared.size(); ++slot) {
            slots.try_emplace(declared[slot].name, Name{slot, declared[slot].value_class});
        }
    };
    add(fields_, plan.fields);
    add(variables_, plan.variables);
    add(parameters_, plan.parameters);
    if (plan.definition == nullptr) return;
    for (const auto& parameter : plan.definition->data.parameters) {
        const auto slot = parameters_.find(parameter.name);
        // A locale is a text that the run may give, whatever the definition says by default.
        const bool is_locale = parameter.class_name == "java.util.Locale";
        if (slot == parameters_.end() || is_locale || value_class(parameter.class_name)) continue;
        slot->second.stands_for = parameter.default_value.text;
    }
    definition_ = plan.definition.get();
}

bool PlanNames::goes_on_without(const DefinitionError& refused) const
{
    if (refusals_ != nullptr) refusals_->add(refused);
    return refusals_ != nullptr;
}

std::optional<Value> PlanNames::of_report(std::string_view name) const
{
    if (definition_ == nullptr) return std::nullopt;
    if (name == "getName") return Value(definition_->name);
    const model::PageLayout& page = definition_->page;
    const std::pair<std::string_view, int> sizes[] = {
        {"getPageWidth", page.width},
        {"getPageHeight", page.height},
        {"getLeftMargin", page.left},
        {"getRightMargin", page.right},
        {"getTopMargin", page.top},
        {"getBottomMargin", page.bottom},
        {"getColumnCount", page.column_count},
        {"getColumnWidth", page.column_width},
        {"getColumnSpacing", page.column_spacing},
    };
    const auto found = std::ranges::find(sizes, name, &std::pair<std::string_view, int>::first);
    return found == std::end(sizes) ? std::nullopt : std::optional(Value(int64_t{found->second}));
}

std::optional<Name> PlanNames::field(std::string_view name) const
{
    return look_up(fields_, name);
}

std::optional<Name> PlanNames::variable(std::string_view name) const
{
    return look_up(variables_, name);
}

std::optional<Name> PlanNames::parameter(std::string_view name) const
{
    return look_up(parameters_, name);
}

std::vector<ParameterPlan> plan_parameters(const model::Definition& definition)
{
    std::vector<ParameterPlan> plans{
        {"REPORT_LOCALE", ValueClass::Text, {}},
        {"REPORT_TIME_ZONE", ValueClass::Text, {}},
        {"REPORT_MAX_COUNT", ValueClass::Integer, {}},
        {"IS_IGNORE_PAGINATION", ValueClass::Boolean, {}},
    };
    for (const auto* name :
         {"REPORT_PARAMETERS_MAP", "REPORT_CONNECTION", "REPORT_DATA_SOURCE", "REPORT_CONTEXT",
          "JASPER_REPORTS_CONTEXT", "JASPER_REPORT", "REPORT_CLASS_LOADER", "REPORT_SCRIPTLET",
          "REPORT_RESOURCE_BUNDLE", "REPORT_TEMPLATES", "REPORT_VIRTUALIZER", "SORT_FIELDS", "FILTER"}) {
        plans.push_back({name, ValueClass::Object, {}});
    }
    for (const auto& parameter : definition.data.parameters) {
        const auto same = [&](const ParameterPlan& plan) { return plan.name == parameter.name; };
        if (std::any_of(plans.begin(), plans.end(), same)) continue;
        plans.push_back({parameter.name, class_or_object(parameter.class_name), {}});
    }
    return plans;
}

std::vector<FieldPlan> plan_fields(const model::Definition& definition)
{
    std::vector<FieldPlan> plans;
    for (const auto& field : definition.data.fields) {
        FieldPlan plan{field.name, class_or_object(field.class_name), {}};
        if (const auto index = model::property_value(field.properties, "net.sf.jasperreports.csv.field.column.index")) {
            plan.csv_column = "COLUMN_" + std::string(*index);
        }
        plan.optional = model::property_value(field.properties, "velora.optional") == "true";
        plans.push_back(std::move(plan));
    }
    return plans;
}

std::vector<VariablePlan> plan_variables(const model::Definition& definition)
{
    std::vector<VariablePlan> plans{
        built_in("PAGE_NUMBER", Calculation::System, Moment::Report, 1),
        built_in("COLUMN_NUMBER", Calculation::System, Moment::Page, 1),
        built_in("REPORT_COUNT", Calculation::Count, Moment::Report, 0),
        built_in("PAGE_COUNT", Calculation::Count, Moment::Page, 0),
        built_in("COLUMN_COUNT", Calculation::Count, Moment::Column, 0),
    };
    for (size_t group = 0; group < definition.groups.size(); ++group) {
        plans.push_back(built_in(definition.groups[group].name + "_COUNT", Calculation::Count, Moment::Group, 0,
                                 static_cast<int>(group)));
    }
    const auto is_there = [&](std::string_view name) {
        return std::ranges::find(plans, name, &VariablePlan::name) != plans.end();
    };
    for (const auto& variable : definition.data.variables) {
        if (!is_there(variable.name)) add_declared(plans, definition, variable);
    }
    for (const std::string_view name : {kMasterPage, kMasterPages}) {
        if (is_there(name)) continue;
        plans.push_back(built_in(std::string(name), Calculation::System, Moment::Report, 0));
        plans.back().fixed_initial = Value();
    }
    return plans;
}

int group_index(const model::Definition& definition, std::string_view name, Position place)
{
    for (size_t index = 0; index < definition.groups.size(); ++index) {
        if (definition.groups[index].name == name) return static_cast<int>(index);
    }
    throw DefinitionError(place, "group", "there is no group '" + std::string(name) + "'");
}

}  // namespace velora::engine
