#include "engine/expression/constant.h"

#include <algorithm>

namespace velora::engine {
namespace {

class BeforeRows : public Environment {
public:
    explicit BeforeRows(std::span<const Value> parameters) : parameters_(parameters) {}

    [[nodiscard]] const Value& field(size_t) const override { return none_; }
    [[nodiscard]] const Value& variable(size_t) const override { return none_; }
    [[nodiscard]] const Value& parameter(size_t slot) const override
    {
        return slot < parameters_.size() ? parameters_[slot] : none_;
    }
    [[nodiscard]] std::optional<std::string> resource(std::string_view) const override { return std::nullopt; }
    [[nodiscard]] const Surroundings& surroundings() const override { return surroundings_; }

private:
    std::span<const Value> parameters_;
    Value none_;
    Surroundings surroundings_;
};

}  // namespace

bool looks_at_parameters_only(const Expression& expression)
{
    return std::ranges::all_of(expression.references(),
                               [](const Reference& each) { return each.kind == Reference::Kind::Parameter; });
}

Value evaluate_constant(const Expression& expression, std::span<const Value> parameters)
{
    return expression.evaluate(BeforeRows(parameters));
}

std::optional<std::string> constant_text(const Expression& expression, std::span<const Value> parameters)
{
    return expression.text(BeforeRows(parameters));
}

}  // namespace velora::engine
