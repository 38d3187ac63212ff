#include "engine/plan/compiled_report.h"

#include "engine/plan/load.h"
#include "engine/plan/make_plan.h"

namespace velora::engine {
namespace {

Value::Type cell_type(ValueClass value_class)
{
    if (is_integer(value_class)) return Value::Type::Integer;
    switch (value_class) {
        case ValueClass::Boolean:
            return Value::Type::Boolean;
        case ValueClass::Float:
            return Value::Type::Single;
        case ValueClass::Double:
            return Value::Type::Double;
        case ValueClass::Decimal:
            return Value::Type::Fixed;
        case ValueClass::Date:
            return Value::Type::Date;
        default:
            return Value::Type::Text;
    }
}

}  // namespace

CompiledReport::CompiledReport(std::shared_ptr<const model::Definition> definition, bool lenient)
    : plan_(make_plan(std::move(definition), lenient))
{
    for (const auto& field : plan_->fields) {
        fields_.push_back({field.name, cell_type(field.value_class)});
    }
}

const model::Definition& CompiledReport::definition() const
{
    return *plan_->definition;
}

const std::vector<std::string>& CompiledReport::warnings() const
{
    return plan_->warnings;
}

std::unique_ptr<CompiledReport> open_report(const std::filesystem::path& file, std::vector<std::string>& warnings,
                                            bool lenient)
{
    std::vector<Warning> met;
    auto report =
        std::make_unique<CompiledReport>(std::make_shared<model::Definition>(load_definition(file, met)), lenient);
    for (const auto& warning : met) {
        warnings.push_back(warning.line());
    }
    warnings.insert(warnings.end(), report->warnings().begin(), report->warnings().end());
    return report;
}

}  // namespace velora::engine
