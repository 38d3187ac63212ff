#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/definition/model.h"
#include "engine/expression/expression.h"
#include "engine/page/page.h"
#include "values/table_source.h"

namespace velora::engine {

class Measurer;
struct ReportPlan;

/// A definition that is ready to be filled, any number of times and from several threads.
class Report {
public:
    /// Compiles every expression. @throws DefinitionError with element, place and reason
    explicit Report(std::shared_ptr<const model::Definition> definition);

    [[nodiscard]] const model::Definition& definition() const;
    /// The fields that the definition declares, in its order.
    [[nodiscard]] const std::vector<TableSource::Field>& fields() const { return fields_; }
    /// What opening met that a designer should know.
    [[nodiscard]] const std::vector<std::string>& warnings() const;
    [[nodiscard]] const ReportPlan& plan() const { return *plan_; }

private:
    std::shared_ptr<const ReportPlan> plan_;
    std::vector<TableSource::Field> fields_;
};

/// What one run is given besides its rows. Clock, region and fonts are handed in.
struct FillOptions {
    Surroundings surroundings;
    std::map<std::string, Value, std::less<>> parameters;       ///< over the defaults of the definition
    std::map<std::string, std::string, std::less<>> resources;  ///< texts of `$R{}` and `str()`
    std::filesystem::path folder;     ///< of pictures with relative paths; empty: the definition's
    std::optional<DateTime> created;  ///< date that the file formats carry
    std::function<void(const std::string&)> warn;
    std::function<bool()> cancelled;  ///< asked for every row; true ends the run
};

/// Fills a report: the rows are read once, from the first one, and every page goes to the sink as soon as it waits
/// for nothing.
///
/// @throws Fault of the table, and 20545 when the run was cancelled
void fill(const Report& report, TableSource& table, Measurer& measurer, const FillOptions& options, PageSink& sink);

}  // namespace velora::engine
