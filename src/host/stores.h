#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "host/host_config.h"
#include "host/surroundings.h"
#include "platform/accounting.h"
#include "platform/database.h"

namespace velora {

/// One of the two stores of a company as velora.ini names it: a file of the folder or a source on a server.
class StorePlace {
public:
    /// @param key  of velora.ini, for messages
    /// @throws HostError for a text of neither form, and for an environment variable that is not set
    StorePlace(const std::filesystem::path& folder, const std::string& connection, const std::string& key,
               const Surroundings& around);

    [[nodiscard]] bool is_file() const { return server_.empty(); }
    [[nodiscard]] const std::filesystem::path& file() const { return file_; }
    [[nodiscard]] const std::string& server() const { return server_; }  ///< for the driver manager
    [[nodiscard]] const std::string& shown() const { return shown_; }    ///< as a message may name it

private:
    std::filesystem::path file_;
    std::string server_;
    std::string shown_;
};

/// @throws HostError with the place and the reason when the store cannot be opened
std::unique_ptr<Connection> open_database(const StorePlace& place, std::chrono::seconds timeout);
std::unique_ptr<AccountingSession> open_accounting(const StorePlace& place, std::chrono::seconds timeout);

}  // namespace velora
