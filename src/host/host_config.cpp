#include "host/host_config.h"

#include <charconv>

#include "adapters/ini/ini_file.h"
#include "host/host_error.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTitle = "Application Folder";
constexpr const char* kFile = "velora.ini";
constexpr const char* kHowToMake =
    "\r\n\"velora-report init DIR\" makes an application folder; --folder DIR or the "
    "environment variable VELORA_FOLDER says where it is.";

[[noreturn]] void fail(const std::string& text)
{
    throw HostError(kTitle, text);
}

/// A section of one file.
class Section {
public:
    Section(const fs::path& file, std::string name) : file_(file.string()), name_(std::move(name)), ini_(file) {}

    [[nodiscard]] std::string text(const char* key) const { return std::string(trimmed(ini_.read(name_, key, ""))); }

    [[nodiscard]] std::string required(const char* key, const char* meaning) const
    {
        auto value = text(key);
        if (value.empty()) reject(key, "is missing", meaning);
        return value;
    }

    [[noreturn]] void reject(const char* key, const std::string& is, const std::string& should) const
    {
        fail("The key \"" + std::string(key) + "\" in section [" + name_ + "] of \"" + file_ + "\" " + is +
             ". It should be " + should + ".");
    }

private:
    std::string file_;
    std::string name_;
    ini::IniFile ini_;
};

WhichEngine engine_of(const Section& host)
{
    const auto name = host.required("Engine", "SQLServer or Pervasive");
    if (same_name(name, "SQLServer")) return eDBSQLServer;
    if (same_name(name, "Pervasive")) return eDBPervasive;
    host.reject("Engine", "is \"" + name + "\"", "SQLServer or Pervasive");
}

std::optional<bool> multi_currency_of(const Section& host)
{
    const auto answer = host.text("MultiCurrency");
    if (answer.empty()) return std::nullopt;
    if (same_name(answer, "yes")) return true;
    if (same_name(answer, "no")) return false;
    host.reject("MultiCurrency", "is \"" + answer + "\"", "yes, no or left out");
}

/// A whole number, 0 for no end; `otherwise` where the key is left out.
size_t limit_of(const Section& host, const char* key, size_t otherwise)
{
    const auto given = host.text(key);
    if (given.empty()) return otherwise;
    size_t limit = 0;
    const auto read = std::from_chars(given.data(), given.data() + given.size(), limit);
    constexpr size_t kMost = 1'000'000'000;
    if (read.ec != std::errc() || read.ptr != given.data() + given.size() || limit > kMost) {
        host.reject(key, "is \"" + given + "\"", "a whole number, 0 for no limit, or left out");
    }
    return limit;
}

MailServerRules mail_rules_of(const Section& mail, const fs::path& folder)
{
    MailServerRules rules;
    const auto authority = mail.text("CertificateAuthority");
    if (!authority.empty()) rules.certificate_authority = (folder / authority).string();
    const auto seconds = limit_of(mail, "Timeout", static_cast<size_t>(rules.timeout.count()));
    constexpr size_t kLongest = 3600;
    if (seconds == 0 || seconds > kLongest)
        mail.reject("Timeout", "is " + std::to_string(seconds), "1 to 3600 seconds");
    rules.timeout = std::chrono::seconds(seconds);
    return rules;
}

}  // namespace

std::string HostConfig::ini_text() const
{
    std::string text = "; What velora-report works with. Paths are relative to this folder.\n[Host]\n";
    text += "Company = " + company + "\n";
    text += "Database = " + database + "\n";
    text += "Accounting = " + accounting + "\n";
    text += "; SQLServer or Pervasive: how queries are written\n";
    text += std::string("Engine = ") + (engine == eDBPervasive ? "Pervasive" : "SQLServer") + "\n";
    text += "User = " + user + "\n";
    text += "; A picture for the head of documents, and the company's own tax registration\n";
    text += (logo.empty() ? "; Logo = Reports/logo.png" : "Logo = " + logo) + "\n";
    text += (tax_registration.empty() ? "; TaxRegistration = " : "TaxRegistration = " + tax_registration) + "\n";
    if (multi_currency) text += std::string("MultiCurrency = ") + (*multi_currency ? "yes" : "no") + "\n";
    return text;
}

HostConfig read_host_config(const fs::path& folder)
{
    if (!fs::is_directory(folder)) {
        fail("There is no application folder \"" + folder.string() + "\"." + kHowToMake);
    }
    const fs::path file = folder / kFile;
    if (!fs::is_regular_file(file)) {
        fail("The folder \"" + folder.string() + "\" is no application folder: it has no " + kFile + "." + kHowToMake);
    }
    const Section host(file, "Host");
    HostConfig config;
    config.company = host.required("Company", "the company id of the accounting system, up to 10 characters");
    if (character_count(config.company) > 10) {
        host.reject("Company", "is \"" + config.company + "\"", "up to 10 characters long");
    }
    config.database = host.required("Database", "sqlite:PATH or odbc:CONNECTION STRING");
    config.accounting = host.required("Accounting", "sqlite:PATH or odbc:CONNECTION STRING");
    config.engine = engine_of(host);
    config.user = host.text("User");
    config.multi_currency = multi_currency_of(host);
    config.logo = host.text("Logo");
    config.tax_registration = host.text("TaxRegistration");
    config.timeout = std::chrono::seconds(limit_of(host, "Timeout", static_cast<size_t>(config.timeout.count())));
    config.most_rows = limit_of(host, "MostRows", config.most_rows);
    config.mail = mail_rules_of(Section(file, "Mail"), folder);
    return config;
}

fs::path sqlite_file(const fs::path& folder, const std::string& connection, const std::string& key)
{
    constexpr std::string_view kScheme = "sqlite:";
    if (!connection.starts_with(kScheme) || connection.size() == kScheme.size()) {
        fail("\"" + key + "\" is \"" + connection + "\". It should be sqlite:PATH or odbc:CONNECTION STRING.");
    }
    return folder / connection.substr(kScheme.size());
}

}  // namespace velora
