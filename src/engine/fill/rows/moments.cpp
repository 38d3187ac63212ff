#include "engine/fill/rows/moments.h"

#include "engine/expression/definition_error.h"

namespace velora::engine {

std::optional<std::string> MomentEnvironment::resource(std::string_view key) const
{
    if (const auto found = shared_.resources.find(key); found != shared_.resources.end()) return found->second;
    switch (shared_.when_resource_missing) {
        case model::MissingResource::Key:
            return std::string(key);
        case model::MissingResource::Empty:
            return std::string();
        case model::MissingResource::Error:
            throw DefinitionError({}, "",
                                  "the report's words lack '" + std::string(key) +
                                      "', and \"whenResourceMissingType\" is Error; add it to the .properties file of "
                                      "the resource bundle, or set the attribute to Key, Empty or Null");
        case model::MissingResource::Null:
            break;
    }
    return std::nullopt;
}

}  // namespace velora::engine
