#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "adapters/smtp/mail_server_rules.h"
#include "adapters/terminal/terminal_user_interface.h"
#include "host/options.h"
#include "host/stores.h"
#include "host/surroundings.h"
#include "platform/mail_transport.h"
#include "platform/printers.h"
#include "platform/region.h"
#include "platform/report_engine.h"
#include "platform/stores.h"

namespace velora {

/// What stands behind the ports in this program.
struct Adapters {
    std::unique_ptr<ReportEngine> engine;  ///< made when it is first asked for
    std::unique_ptr<Clock> clock;
    std::unique_ptr<Region> region;
    std::unique_ptr<TerminalUserInterface> user;
    std::unique_ptr<SettingsStore> settings;
    std::unique_ptr<ProfileFile> profiles;
    std::unique_ptr<PasswordCipher> cipher;
    std::unique_ptr<Printers> printers;
    std::unique_ptr<MailTransport> mail;  ///< made when the company is opened

    /// How a company is opened, as its file says.
    std::function<std::shared_ptr<Connection>(const StorePlace&, std::chrono::seconds)> database;
    std::function<std::shared_ptr<AccountingSession>(const StorePlace&, std::chrono::seconds)> accounting;
    std::function<std::unique_ptr<MailTransport>(const Clock&, const MailServerRules&)> mail_by;
};

/// @throws UsageError for a region that is none, HostError for a messages file that cannot be written
Adapters make_adapters(const CommonOptions& options, const Surroundings& around);

/// The tag of the region of this run, such as "en-US".
std::string region_name(const CommonOptions& options, const Surroundings& around);

/// The user's settings file: as named, else "Morvane/Velora.ini" in the configuration folder of the user.
std::string settings_path(const CommonOptions& options, const Surroundings& around);

}  // namespace velora
