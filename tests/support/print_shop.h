#pragma once

#include <string>

#include "support/server_process.h"

namespace velora::test {

/// A printer and a CUPS scheduler for the length of a scope, which this process then uses; see print_shop.py for its
/// queues.
class PrintShop {
public:
    PrintShop();
    ~PrintShop();
    PrintShop(const PrintShop&) = delete;
    PrintShop& operator=(const PrintShop&) = delete;

    [[nodiscard]] bool is_open() const { return is_open_; }
    /// What this machine has not got for one; blank where nothing is missing.
    [[nodiscard]] const std::string& missing() const { return missing_; }
    /// The document that lies at the printer once it has as many bytes; blank where it does not come.
    [[nodiscard]] std::string arrived(const std::string& name, size_t size) const;
    /// How many documents lie at the printer.
    [[nodiscard]] size_t count() const;
    /// What the printer was told under a name so far, in the words of its log: "copies" gives "(integer) 2".
    [[nodiscard]] std::vector<std::string> told(const std::string& name) const;

private:
    ServerProcess process_{"print_shop.py"};
    bool is_open_ = false;
    std::string missing_;
    std::string spool_;
    std::string log_;
};

}  // namespace velora::test
