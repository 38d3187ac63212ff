#pragma once

#include <string>

#include "engine/expression/definition_error.h"

namespace velora::engine {

/// Something in a definition that is passed over or put right: the pages still come.
struct Warning {
    Position place;
    std::string element;  ///< name of the XML element as written
    std::string text;

    [[nodiscard]] std::string line() const;  ///< "line 12, column 5: textField: …"
};

}  // namespace velora::engine
