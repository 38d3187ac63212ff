#pragma once

#include <memory>

#include "engine/plan/plan.h"

namespace velora::engine {

/// @throws DefinitionError with element, place and reason
std::shared_ptr<const ReportPlan> make_plan(std::shared_ptr<const model::Definition> definition);

}  // namespace velora::engine
