#include <map>
#include <string>
#include <vector>

#include "engine/expression/expression.h"

namespace {

using namespace velora;
using namespace velora::engine;

/// Fields a to h, one of each kind of value; any other name is unknown.
class FuzzWorld : public Names, public Environment {
public:
    FuzzWorld()
    {
        surroundings_.now = DateTime(46000, 3600);
        kinds_ = {ValueClass::Text,    ValueClass::Integer, ValueClass::Double, ValueClass::Decimal,
                  ValueClass::Boolean, ValueClass::Date,    ValueClass::Object, ValueClass::Text};
        values_ = {"text é😀", int64_t{-7}, 1.5, Fixed4::from_units(12345), true, DateTime(45000, 1), 3.0F, nullptr};
    }

    [[nodiscard]] std::optional<Name> field(std::string_view name) const override
    {
        if (name.size() != 1 || name[0] < 'a' || name[0] > 'h') return std::nullopt;
        const auto slot = static_cast<size_t>(name[0] - 'a');
        return Name{slot, kinds_[slot]};
    }
    [[nodiscard]] std::optional<Name> variable(std::string_view name) const override { return field(name); }
    [[nodiscard]] std::optional<Name> parameter(std::string_view name) const override { return field(name); }
    [[nodiscard]] const Value& field(size_t slot) const override { return values_[slot]; }
    [[nodiscard]] const Value& variable(size_t slot) const override { return values_[slot]; }
    [[nodiscard]] const Value& parameter(size_t slot) const override { return values_[slot]; }
    [[nodiscard]] std::optional<std::string> resource(std::string_view key) const override { return std::string(key); }
    [[nodiscard]] const Surroundings& surroundings() const override { return surroundings_; }

private:
    Surroundings surroundings_;
    std::vector<ValueClass> kinds_;
    std::vector<Value> values_;
};

}  // namespace

/// Any bytes as an expression: refused with a message, or computed to a value without a fault.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const FuzzWorld world;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const Expression expression = compile(text, world, {1, 1}, "fuzz");
        static_cast<void>(expression.evaluate(world));
        static_cast<void>(expression.text(world));
        static_cast<void>(expression.is_true(world));
    } catch (const DefinitionError&) {
    }
    return 0;
}
