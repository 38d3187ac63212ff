#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "engine/definition/model.h"
#include "values/table_source.h"

namespace velora::engine {

struct ReportPlan;

/// A definition that is ready to be filled, any number of times and from several threads.
class CompiledReport {
public:
    /// Compiles every expression. @throws DefinitionError with element, place and reason
    /// @param lenient  leaves out the expressions that cannot be compiled, with a warning each
    explicit CompiledReport(std::shared_ptr<const model::Definition> definition, bool lenient = false);

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

/// Opens a definition file with the style templates that it names, ready to be filled.
///
/// @param warnings  what a designer should know, with line and column
/// @param lenient  leaves out the expressions that cannot be compiled, with a warning each
/// @throws DefinitionError  when the file is missing, is no definition or holds expressions outside the language, which
///                          are told all at once
std::unique_ptr<CompiledReport> open_report(const std::filesystem::path& file, std::vector<std::string>& warnings,
                                            bool lenient = false);

}  // namespace velora::engine
