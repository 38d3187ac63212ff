#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velora {

struct Printer {
    std::string DriverName;
    std::string DeviceName;
    std::string Port;
};

/// The printers of this machine, in the order of the system.
class Printers {
public:
    virtual ~Printers() = default;
    [[nodiscard]] virtual std::vector<Printer> list() const = 0;
    /// The one that is used where none is named; none on a machine without printers.
    [[nodiscard]] virtual std::optional<Printer> usual() const
    {
        const auto all = list();
        return all.empty() ? std::nullopt : std::optional(all.front());
    }
};

}  // namespace velora
