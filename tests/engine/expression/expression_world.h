#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/expression/expression.h"

namespace velora::engine::testing {

/// Names and values for expressions: what a report with a few fields, a variable and a parameter would hand in.
class World : public Names, public Environment {
public:
    World()
    {
        surroundings_.now = *DateTime::from_ymd(2026, 3, 14, 9, 26, 53);
        add("name", ValueClass::Text, "Ada");
        add("blank", ValueClass::Text, "");
        add("nothing", ValueClass::Text, nullptr);
        add("count", ValueClass::Integer, int64_t{7});
        add("price", ValueClass::Double, 12.5);
        add("single", ValueClass::Float, 0.1F);
        add("amount", ValueClass::Decimal, Fixed4::from_units(12500));
        add("no_number", ValueClass::Integer, nullptr);
        add("flag", ValueClass::Boolean, true);
        add("no_flag", ValueClass::Boolean, nullptr);
        add("day", ValueClass::Date, *DateTime::from_ymd(2026, 1, 2, 15, 4, 5));
        add("stamp", ValueClass::Timestamp, *DateTime::from_ymd(2026, 1, 2, 15, 4, 5));
        add("any", ValueClass::Object, int64_t{3});
        add("any_text", ValueClass::Object, "x");
        add("written", ValueClass::Integer, "42");
        add("emoji", ValueClass::Text, "a😀b");
    }

    void add(const std::string& name, ValueClass value_class, Value value)
    {
        slots_[name] = {values_.size(), value_class};
        values_.push_back(std::move(value));
    }

    [[nodiscard]] std::optional<Name> field(std::string_view name) const override
    {
        const auto found = slots_.find(name);
        return found == slots_.end() ? std::nullopt : std::optional(found->second);
    }
    [[nodiscard]] std::optional<Name> variable(std::string_view name) const override { return field(name); }
    [[nodiscard]] std::optional<Name> parameter(std::string_view name) const override { return field(name); }

    [[nodiscard]] const Value& field(size_t slot) const override { return values_.at(slot); }
    [[nodiscard]] const Value& variable(size_t slot) const override { return values_.at(slot); }
    [[nodiscard]] const Value& parameter(size_t slot) const override { return values_.at(slot); }
    [[nodiscard]] std::optional<std::string> resource(std::string_view key) const override
    {
        if (key == "greeting") return "Hello {0}";
        return std::nullopt;
    }
    [[nodiscard]] const Surroundings& surroundings() const override { return surroundings_; }

    Surroundings surroundings_;

private:
    std::map<std::string, Name, std::less<>> slots_;
    std::vector<Value> values_;
};

}  // namespace velora::engine::testing
