#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>

#include "adapters/store_schema/tables.h"

namespace velora {

/// A store of the folder that goes to a server.
struct Transfer {
    std::string store;           ///< what messages call it
    std::filesystem::path file;  ///< the SQLite file
    std::string connection;      ///< for the driver manager
    std::span<const stores::SchemaTable> tables;
    bool with_procedures = false;
    bool replace = false;  ///< rows that stand there go
    std::function<void(size_t done, size_t total)> on_rows;
};

/// Makes the tables that are not there, and copies all rows in one transaction, after every one of them was found to
/// fit. Answers how many there were.
/// @throws HostError when something does not fit or fails, with what stands on the server then: what stood there
///         before, unless it says otherwise
size_t run_transfer(const Transfer& transfer);

}  // namespace velora
