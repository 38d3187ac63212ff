#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "engine/plan/plan.h"

/// Reports inside a report: subreports, lists, tables and the sub-datasets of charts. A list or a table is made into
/// a report of its own, with a band for each of its rows, and filled like any other.
namespace velora::engine {

class Refusals;

/// The definition files that are being opened, each a subreport of the one before.
struct Opening {
    std::vector<std::filesystem::path> files;
    size_t components = 0;                                          ///< lists and tables around
    std::shared_ptr<size_t> reports = std::make_shared<size_t>(0);  ///< opened so far in the outermost one
    Refusals* refusals = nullptr;                                   ///< takes the expressions that cannot be compiled
};

/// Makes the plan of a definition inside another one. @param opening  the files around; its own is added
using InnerPlanMaker = std::shared_ptr<const ReportPlan> (*)(std::shared_ptr<const model::Definition> definition,
                                                             Opening opening);

/// A value that a nested report gives to a variable of the one around it when all of it is printed.
struct ReturnPlan {
    Expression value;  ///< in the nested report
    size_t to = 0;
    model::Calculation calculation = model::Calculation::Nothing;
};

/// The name of a subreport that may be another one for each row or run.
struct LateName {
    Expression name;
    std::string at_opening;  ///< what it was when the report was opened; empty for none
    const model::Element& element;
    const ReportPlan& around;
    Opening opening;
    InnerPlanMaker make_plan;
};

struct NestedPlan {
    std::shared_ptr<const ReportPlan> report;  ///< null for a name that only a row or a run knows
    std::shared_ptr<const LateName> late;      ///< for a name that is looked at each time
    bool own_rows = true;                      ///< the rows of the report around it, from the first one
    Expression empty_rows;                     ///< else: how many rows without fields; one when there is no expression
    Expression collection;                     ///< or: a list of rows as JSON
    bool query = false;                        ///< or: those of its own query
    bool hands_on_parameters = false;          ///< all those of the report around it
    std::vector<std::pair<std::string, Expression>> parameters;
    std::vector<ReturnPlan> returns;
    bool framed = true;  ///< what it prints stands in a frame
};

/// What planning a nested report needs of the one around it.
struct Around {
    const ReportPlan& plan;
    const Names& names;
    const Opening& opening;
    std::vector<std::string>& warnings;
    InnerPlanMaker make_plan;
};

/// Each gives null, and a warning, for what cannot be printed.
/// @throws DefinitionError  for an expression outside the language, a sub-dataset that is not there, and subreports
///                          that hold each other
std::unique_ptr<NestedPlan> plan_list(const model::Element& element, const model::ListComponent& list, Around around);
std::unique_ptr<NestedPlan> plan_table(const model::Element& element, const model::TableComponent& table,
                                       Around around);
std::unique_ptr<NestedPlan> plan_subreport(const model::Element& element, const model::Subreport& subreport,
                                           Around around);
/// The subreport of a name that was not known at opening. It stands in the folder of the report or below it.
/// @return null, and a warning, when there is none, or what is there cannot be printed
std::shared_ptr<const NestedPlan> open_late(const NestedPlan& nested, const std::string& name,
                                            std::vector<std::string>& warnings);
/// The rows of a dataset run, without anything to print.
std::unique_ptr<NestedPlan> plan_dataset_run(const model::Element& element, const model::DatasetRun& run,
                                             Around around);

}  // namespace velora::engine
