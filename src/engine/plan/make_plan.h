#pragma once

#include <memory>

#include "engine/plan/plan.h"

namespace velora::engine {

/// @param lenient  expressions that cannot be compiled give nothing, with a warning each; else all are told at once
/// @throws DefinitionError with element, place and reason
std::shared_ptr<const ReportPlan> make_plan(std::shared_ptr<const model::Definition> definition, bool lenient);

}  // namespace velora::engine
