#include "adapters/cups/printers.h"

#include <chrono>
#include <memory>

#include "adapters/cups/destinations.h"
#include "adapters/cups/queue.h"
#include "values/fault.h"

namespace velora {
namespace {

/// Printers of one reach, asked for anew after a while.
class Search {
public:
    explicit Search(cups::Reach reach) : reach_(reach) {}

    /// Null on a machine without CUPS.
    [[nodiscard]] const cups::Destinations* found()
    {
        constexpr std::chrono::minutes kWhile{1};
        if (found_ && std::chrono::steady_clock::now() - found_at_ < kWhile) return found_.get();
        try {
            found_ = std::make_unique<cups::Destinations>(reach_);
            found_at_ = std::chrono::steady_clock::now();
        } catch (const Fault&) {
            return nullptr;
        }
        return found_.get();
    }

private:
    cups::Reach reach_;
    std::unique_ptr<cups::Destinations> found_;
    std::chrono::steady_clock::time_point found_at_;
};

class CupsPrinters final : public Printers {
public:
    [[nodiscard]] std::vector<Printer> list() const override
    {
        std::vector<Printer> printers = listed(queues_);
        const auto* queues = queues_.found();
        for (Printer& printer : listed(network_)) {
            if (queues == nullptr || queues->find(printer.DeviceName) == nullptr)
                printers.push_back(std::move(printer));
        }
        return printers;
    }

    [[nodiscard]] std::optional<Printer> usual() const override
    {
        const auto* queues = queues_.found();
        for (int index = 0; queues != nullptr && index < queues->count(); ++index) {
            if (queues->at(index).is_default != 0) return printer_of(*queues, queues->at(index));
        }
        return first([](const Printer&) { return true; });
    }

    [[nodiscard]] std::optional<Printer> first(const std::function<bool(const Printer&)>& fits) const override
    {
        for (const Printer& printer : listed(queues_)) {
            if (fits(printer)) return printer;
        }
        return Printers::first(fits);
    }

    int32_t print(const PrintJob& job) override
    {
        const auto usual_one = job.device.empty() ? usual() : std::nullopt;
        if (job.device.empty() && !usual_one) throw Fault(fault::kPrinter, "No printer is set up on this machine.");
        const std::string name = usual_one ? usual_one->DeviceName : job.device;
        for (Search* search : {&queues_, &network_}) {
            const auto* known = search->found();
            cups_dest_t* destination = known != nullptr ? known->find(name) : nullptr;
            if (destination == nullptr) continue;
            cups::Queue queue(*known, *destination);
            queue.require_ready();
            return queue.send(job);
        }
        throw Fault(fault::kPrinter, "There is no printer \"" + name + "\".");
    }

private:
    static Printer printer_of(const cups::Destinations& of, const cups_dest_t& destination)
    {
        return {of.option(destination, "printer-make-and-model"), cups::name_of(destination),
                of.option(destination, "device-uri")};
    }

    static std::vector<Printer> listed(Search& search)
    {
        std::vector<Printer> printers;
        const auto* found = search.found();
        for (int index = 0; found != nullptr && index < found->count(); ++index) {
            printers.push_back(printer_of(*found, found->at(index)));
        }
        return printers;
    }

    mutable Search queues_{cups::Reach::Queues};
    mutable Search network_{cups::Reach::Network};
};

}  // namespace

std::unique_ptr<Printers> cups_printers()
{
    return std::make_unique<CupsPrinters>();
}

}  // namespace velora
