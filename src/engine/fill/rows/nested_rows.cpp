#include "engine/fill/rows/nested_rows.h"

#include <map>
#include <nlohmann/json.hpp>

#include "values/json_nesting.h"

namespace velora::engine {
namespace {

using nlohmann::json;

constexpr size_t kLongestText = 16U << 20;
constexpr size_t kMostRows = 1'000'000;
constexpr size_t kMostFields = 1000;
constexpr int kDeepest = 4;  ///< objects inside a row whose parts become fields

class NestedRows : public TableSource {
public:
    explicit NestedRows(const json& list)
    {
        for (const json& row : list) {
            rows_.emplace_back(fields_.size());
            add(row, {}, 0);
        }
    }

    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override { return at_ < rows_.size() && ++at_; }
    void rewind() override { at_ = 0; }
    [[nodiscard]] const Value& cell(size_t field) const override
    {
        const auto& row = rows_[at_ - 1];
        return field < row.size() ? row[field] : none_;  // later rows may have more fields
    }

private:
    void add(const json& value, const std::string& name, int depth)
    {
        if (value.is_object() && depth < kDeepest) {
            for (const auto& [key, inner] : value.items()) add(inner, name.empty() ? key : name + "." + key, depth + 1);
            return;
        }
        put(name.empty() ? "_THIS" : name, value_of(value));
    }

    void put(const std::string& name, Value value)
    {
        const auto [place, is_new] = numbers_.try_emplace(name, fields_.size());
        if (is_new) {
            if (fields_.size() >= kMostFields) return void(numbers_.erase(place));
            fields_.push_back({name, Value::Type::Text});
        }
        auto& row = rows_.back();
        if (row.size() <= place->second) row.resize(fields_.size());
        row[place->second] = std::move(value);
    }

    static Value value_of(const json& value)
    {
        if (value.is_null()) return {};
        if (value.is_boolean()) return value.get<bool>();
        if (value.is_number_unsigned() && value.get<uint64_t>() > INT64_MAX) return value.get<double>();
        if (value.is_number_integer()) return value.get<int64_t>();
        if (value.is_number()) return value.get<double>();
        return value.is_string() ? value.get<std::string>() : value.dump();
    }

    std::vector<Field> fields_;
    std::map<std::string, size_t> numbers_;
    std::vector<std::vector<Value>> rows_;
    Value none_;
    size_t at_ = 0;
};

}  // namespace

std::unique_ptr<TableSource> nested_rows(std::string_view text)
{
    if (text.size() > kLongestText || nests_too_deep(text)) return nullptr;
    const json list = json::parse(text, nullptr, false);
    return list.is_array() && list.size() <= kMostRows ? std::make_unique<NestedRows>(list) : nullptr;
}

}  // namespace velora::engine
