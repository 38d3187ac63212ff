#include "engine/expression/definition_error.h"

namespace velora::engine {

namespace {

std::string sentence(Position position, const std::string& element, const std::string& reason)
{
    std::string text;
    if (position.line > 0) {
        text = "line " + std::to_string(position.line) + ", column " + std::to_string(position.column) + ": ";
    }
    if (!element.empty()) text += element + ": ";
    return text + reason;
}

}  // namespace

DefinitionError::DefinitionError(Position position, std::string element, std::string reason)
    : std::runtime_error(sentence(position, element, reason)),
      position_(position),
      element_(std::move(element)),
      reason_(std::move(reason))
{
}

}  // namespace velora::engine
