#pragma once

#include "engine/definition/model.h"

/// The definitions that lists and tables are filled by: bands made of what stands in the component.
namespace velora::engine {

/// A definition over the run's dataset with the styles of the one around it, without bands and without a page end.
/// @throws DefinitionError when there is no sub-dataset of that name
model::Definition dataset_definition(const model::Definition& around, const model::DatasetRun& run, Position place);

model::Definition list_definition(const model::Definition& around, const model::Element& element,
                                  const model::ListComponent& list);
model::Definition table_definition(const model::Definition& around, const model::Element& element,
                                   const model::TableComponent& table);

/// Takes the page ends out of a definition: margins, new pages and columns.
void make_endless(model::Definition& definition);

}  // namespace velora::engine
