#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace velora::engine {

/// A place in a definition file, both counted from 1; 0 where it is unknown.
struct Position {
    uint32_t line = 0;
    uint32_t column = 0;

    bool operator==(const Position&) const = default;
};

/// A definition that cannot be used: which element, where and why. `what()` holds all three.
class DefinitionError : public std::runtime_error {
public:
    /// @param element  the element's name as written, empty where no element is to blame
    DefinitionError(Position position, std::string element, std::string reason);

    [[nodiscard]] Position position() const noexcept { return position_; }
    [[nodiscard]] const std::string& element() const noexcept { return element_; }
    [[nodiscard]] const std::string& reason() const noexcept { return reason_; }

private:
    Position position_;
    std::string element_;
    std::string reason_;
};

}  // namespace velora::engine
