#pragma once

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
};

}  // namespace velora
