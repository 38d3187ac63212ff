#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/definition/model.h"
#include "engine/expression/environment.h"

namespace velora::engine {

/// The moments that a report is seen at: the row that is being printed, the one before, the one to come.
enum class Moment : uint8_t { Now, Old, Estimated };

using Resources = std::map<std::string, std::string, std::less<>>;

/// What expressions see at one moment of the run.
class MomentEnvironment : public Environment {
public:
    struct Shared {
        std::vector<Value> parameters;
        Surroundings surroundings;
        Resources resources;
        model::MissingResource when_resource_missing = model::MissingResource::Null;
    };

    MomentEnvironment(const std::vector<Value>& fields, const std::vector<Value>& variables, const Shared& shared)
        : fields_(fields), variables_(variables), shared_(shared)
    {
    }

    [[nodiscard]] const Value& field(size_t slot) const override { return fields_[slot]; }
    [[nodiscard]] const Value& variable(size_t slot) const override { return variables_[slot]; }
    [[nodiscard]] const Value& parameter(size_t slot) const override { return shared_.parameters[slot]; }
    [[nodiscard]] std::optional<std::string> resource(std::string_view key) const override;
    [[nodiscard]] const Surroundings& surroundings() const override { return shared_.surroundings; }

private:
    const std::vector<Value>& fields_;
    const std::vector<Value>& variables_;
    const Shared& shared_;
};

}  // namespace velora::engine
