#include "host/stores.h"

#include <stdexcept>

#include "adapters/accounting_sql/session.h"
#include "adapters/odbc/connection.h"
#include "adapters/odbc_text/connection_string.h"
#include "adapters/sqlite/connection.h"
#include "host/host_error.h"
#include "values/fault.h"

namespace velora {
namespace {

constexpr const char* kTitle = "Application Folder";
constexpr std::string_view kServer = "odbc:";

std::string server_of(const std::string& connection, const std::string& key, const Surroundings& around)
{
    try {
        auto text = odbc::with_environment(connection.substr(kServer.size()), around.environment);
        if (!text.empty()) return text;
        throw std::invalid_argument("it names no driver and no source");
    } catch (const std::invalid_argument& error) {
        throw HostError(kTitle, "The key \"" + key + "\" of velora.ini names an ODBC source, but " + error.what() +
                                    ". It should be odbc:DSN=NAME or odbc:Driver=...;Server=....");
    }
}

/// Opens a store; a fault becomes a message that says which and where.
template <class Open>
auto open_store(const char* what, const StorePlace& place, Open open)
{
    try {
        return open();
    } catch (const Fault& caught) {
        const bool names_place = caught.description().find(place.shown()) != std::string::npos;
        throw HostError(kTitle, "The " + std::string(what) + " of the application folder is of no use. " +
                                    caught.description() + (names_place ? "" : ": " + place.shown()));
    }
}

/// How long a statement waits, in milliseconds, while somebody writes into the file: many documents may be marked at
/// once, and disks can be slow.
int wait_for_a_lock(std::chrono::seconds timeout)
{
    constexpr std::chrono::seconds kLongest = std::chrono::hours(24);
    return static_cast<int>(
        std::chrono::milliseconds(timeout.count() == 0 ? kLongest : std::min(timeout, kLongest)).count());
}

}  // namespace

StorePlace::StorePlace(const std::filesystem::path& folder, const std::string& connection, const std::string& key,
                       const Surroundings& around)
{
    if (connection.starts_with(kServer)) {
        server_ = server_of(connection, key, around);
        shown_ = odbc::without_passwords(connection);
    } else {
        file_ = sqlite_file(folder, connection, key);
        shown_ = file_.string();
    }
}

std::unique_ptr<Connection> open_database(const StorePlace& place, std::chrono::seconds timeout)
{
    return open_store("database", place, [&] {
        return place.is_file() ? open_sqlite(place.file().string(), {.busy_milliseconds = wait_for_a_lock(timeout)})
                               : open_odbc(place.server(), {timeout});
    });
}

std::unique_ptr<AccountingSession> open_accounting(const StorePlace& place, std::chrono::seconds timeout)
{
    return open_store("accounting store", place, [&] {
        return place.is_file() ? open_accounting_store(place.file().string(), wait_for_a_lock(timeout))
                               : open_odbc_accounting(place.server(), {timeout});
    });
}

}  // namespace velora
