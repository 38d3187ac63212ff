#include "host/adapters.h"

#include <filesystem>
#include <fstream>

#include "adapters/cipher/password_cipher.h"
#include "adapters/cups/printers.h"
#include "adapters/ini/stores.h"
#include "adapters/smtp/mail_transport.h"
#include "adapters/terminal/clocks.h"
#include "adapters/terminal/region.h"
#include "host/host_error.h"
#include "values/fault.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

/// The first of the variables by which the system names the locale of dates.
std::string locale_name(const Surroundings& around)
{
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        if (std::string name = around.environment(variable); !name.empty()) return name;
    }
    return {};
}

std::unique_ptr<Region> region_of(const CommonOptions& options, const Surroundings& around)
{
    try {
        return make_region(region_name(options, around));
    } catch (const Fault&) {
        if (options.region.empty()) return make_region("en-US");  // a locale that nobody knows counts as none
        throw UsageError("--region: \"" + options.region + "\" is no region, which is written as en-US or de-DE.");
    }
}

/// A file that holds anything but messages is not begun anew: the name may be a slip.
void require_message_file(const std::string& path)
{
    constexpr std::string_view kOpening = "{\"title\":";
    std::error_code unknown;
    if (!fs::is_regular_file(path, unknown)) return;
    std::string opening(kOpening.size(), '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(opening.data(), static_cast<std::streamsize>(opening.size()));
    if (file.gcount() == 0 || opening == kOpening) return;
    throw UsageError("--messages names the file \"" + path +
                     "\", which holds something other than messages. Name another file.");
}

std::unique_ptr<TerminalUserInterface> user_of(const CommonOptions& options, const Surroundings& around)
{
    require_message_file(options.messages);
    try {
        return std::make_unique<TerminalUserInterface>(around.err, options.messages);
    } catch (const Fault& caught) {
        throw HostError("Message File", caught.description());
    }
}

}  // namespace

std::string region_name(const CommonOptions& options, const Surroundings& around)
{
    return region_tag(options.region.empty() ? locale_name(around) : options.region);
}

std::string settings_path(const CommonOptions& options, const Surroundings& around)
{
    if (!options.settings.empty()) return fs::absolute(options.settings).string();
    fs::path folder = around.environment("XDG_CONFIG_HOME");
    if (folder.empty()) folder = fs::path(around.environment("HOME")) / ".config";
    return (folder / "Morvane" / "Velora.ini").string();
}

Adapters make_adapters(const CommonOptions& options, const Surroundings& around)
{
    const std::string settings = settings_path(options, around);
    Adapters made;
    made.clock = options.today ? fixed_clock(*options.today) : system_clock();
    made.region = region_of(options, around);
    made.user = user_of(options, around);
    made.settings = ini_settings(settings);
    made.profiles = ini_profiles();
    made.cipher = key_file_cipher((fs::path(settings).parent_path() / "Velora.key").string());
    made.printers = cups_printers();
    made.database = open_database;
    made.accounting = open_accounting;
    made.mail_by = smtp_mail_transport;
    if (around.adapt) around.adapt(made);
    return made;
}

}  // namespace velora
