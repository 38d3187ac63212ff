#pragma once

#include "engine/plan/plan.h"
#include "engine/plan/refusals.h"

namespace velora::engine {

/// Finds the slots of the names that a plan declares.
class PlanNames : public Names {
public:
    /// @param refusals  takes the expressions that cannot be compiled; null: the first one is thrown
    PlanNames(const ReportPlan& plan, Refusals* refusals);

    [[nodiscard]] std::optional<Name> field(std::string_view name) const override;
    [[nodiscard]] std::optional<Name> variable(std::string_view name) const override;
    [[nodiscard]] std::optional<Name> parameter(std::string_view name) const override;
    bool goes_on_without(const DefinitionError& refused) const override;
    [[nodiscard]] std::optional<Value> of_report(std::string_view name) const override;

private:
    using Slots = std::map<std::string, Name, std::less<>>;
    Slots fields_, variables_, parameters_;
    const model::Definition* definition_ = nullptr;
    Refusals* refusals_;
};

/// The declared parameters with those that every report has.
std::vector<ParameterPlan> plan_parameters(const model::Definition& definition);
std::vector<FieldPlan> plan_fields(const model::Definition& definition);
/// The built-in variables, the counts of the groups, the declared ones with their aggregates; no expressions yet.
std::vector<VariablePlan> plan_variables(const model::Definition& definition);

/// Index of a group by name. @throws DefinitionError when there is none
int group_index(const model::Definition& definition, std::string_view name, Position place);

}  // namespace velora::engine
