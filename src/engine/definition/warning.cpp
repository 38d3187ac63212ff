#include "engine/definition/warning.h"

namespace velora::engine {

std::string Warning::line() const
{
    return DefinitionError(place, element, text).what();
}

}  // namespace velora::engine
