#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "adapters/smtp/mail_transport.h"
#include "session/enumerations.h"

namespace velora {

/// What `velora.ini` in an application folder says, section [Host] where no other is named.
struct HostConfig {
    std::string company;
    std::string database;    ///< "sqlite:PATH", relative to the folder, or "odbc:CONNECTION STRING"
    std::string accounting;  ///< the same for the accounting store
    WhichEngine engine = eDBSQLServer;
    std::string user;
    std::optional<bool> multi_currency;  ///< none: as the company says
    std::string logo;                    ///< picture for the head of documents, relative to the folder; blank for none
    std::string tax_registration;        ///< the company's own, as documents show it; blank for none
    std::chrono::seconds timeout{30};    ///< how long a query may work
    size_t most_rows = 1'000'000;        ///< of the query that a definition brings; 0 for any number
    MailServerRules mail;                ///< section [Mail]

    /// The file as people read and change it.
    [[nodiscard]] std::string ini_text() const;
};

/// @throws HostError naming the folder, file or key and what it should be, Fault 75 for a file that is no text
HostConfig read_host_config(const std::filesystem::path& folder);

/// The file that a "sqlite:" connection string means. @throws HostError for another kind, naming `key`
std::filesystem::path sqlite_file(const std::filesystem::path& folder, const std::string& connection,
                                  const std::string& key);

}  // namespace velora
