#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "values/fault.h"

namespace velora {

struct Printer {
    std::string DriverName;
    std::string DeviceName;
    std::string Port;
};

/// A finished document and how it goes onto paper.
struct PrintJob {
    std::string title;
    std::string driver, device, port;  ///< a blank device: the machine's usual printer
    int orientation = 0;               ///< as it was given: 1 upright, 2 across; 0 leaves it to the printer
    int paper_source = 0;              ///< the number of a tray, 7 for any; 0 leaves it to the printer
    double page_width = 0;             ///< points; 0 leaves the paper to the printer
    double page_height = 0;
    int copies = 1;
    std::string pages;           ///< "1-3,7"; blank for all
    std::filesystem::path file;  ///< PDF, to be read before the call returns
};

/// What a person asked for beside that.
struct PrintWish {
    std::string device;  ///< blank: the one that the report has chosen
    int copies = 1;
    std::string pages;
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
    /// The first that fits, which may be known before all of them are.
    [[nodiscard]] virtual std::optional<Printer> first(const std::function<bool(const Printer&)>& fits) const
    {
        for (const Printer& printer : list()) {
            if (fits(printer)) return printer;
        }
        return std::nullopt;
    }
    /// Hands the job to the printer's queue and answers with its number there.
    /// @throws Fault 482 with the printer's own words, and then nothing is printed; 429 where there is no way to print
    virtual int32_t print(const PrintJob& job)
    {
        throw Fault(fault::kCannotCreate, "This machine has no way to print.", job.device);
    }
};

}  // namespace velora
