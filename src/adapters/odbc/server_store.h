#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "adapters/store_schema/server_schema.h"
#include "platform/database.h"

namespace velora {

/// A store on a server that is being filled.
class ServerStore {
public:
    virtual ~ServerStore() = default;

    [[nodiscard]] virtual stores::ServerKind kind() const = 0;
    /// Whether a table that is made in a transaction is gone when that is rolled back.
    [[nodiscard]] virtual bool rolls_back_tables() const = 0;
    /// Whether there is such a table. @throws Fault with the driver's words; so do all below
    [[nodiscard]] virtual bool has_table(const std::string& name) = 0;
    [[nodiscard]] virtual int64_t row_count(const std::string& name) = 0;
    virtual void run(const std::string& statement) = 0;
    virtual void insert(const std::string& statement, const std::vector<Command::Parameter>& cells) = 0;
    virtual void begin() = 0;
    virtual void commit() = 0;
    virtual void roll_back() noexcept = 0;
};

/// @throws Fault with the driver's words, also for a server whose words are not known
std::unique_ptr<ServerStore> open_server_store(const std::string& connection_string);

}  // namespace velora
