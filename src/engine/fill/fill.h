#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "engine/expression/environment.h"
#include "engine/page/page.h"
#include "engine/plan/compiled_report.h"
#include "values/table_source.h"

namespace velora::engine {

class Measurer;

/// What one run is given besides its rows. Clock, region and fonts are handed in.
struct FillOptions {
    Surroundings surroundings;
    std::map<std::string, Value, std::less<>> parameters;       ///< over the defaults of the definition
    std::map<std::string, std::string, std::less<>> resources;  ///< texts of `$R{}` and `str()`
    std::filesystem::path folder;     ///< of pictures with relative paths; empty: the definition's
    std::optional<DateTime> created;  ///< date that the file formats carry
    std::function<void(const std::string&)> warn;
    /// Runs the query of a report inside the report, with the values of its parameters by name (none: it has no such).
    /// Empty: such a report stays empty, with a warning.
    std::function<std::shared_ptr<TableSource>(const model::Definition& definition,
                                               const std::function<std::optional<Value>(std::string_view)>& value_of)>
        run_query;
    std::function<bool()> cancelled;  ///< asked for every row; true ends the run
};

/// Fills a report: the rows are read once, from the first one, and every page goes to the sink as soon as it waits
/// for nothing.
///
/// @throws Fault of the table, and 20545 when the run was cancelled
void fill(const CompiledReport& report, TableSource& table, Measurer& measurer, const FillOptions& options,
          PageSink& sink);

/// The value of a parameter that a person typed, as the class that the definition gives it.
/// @throws DefinitionError  for a parameter that the definition does not have, and a text that is none of its class
Value parameter_from_text(const CompiledReport& report, std::string_view name, std::string_view text);

/// The values that the parameters have in a run with these options; defaults where none is given.
std::map<std::string, Value, std::less<>> parameter_values(const CompiledReport& report, const FillOptions& options);

}  // namespace velora::engine
