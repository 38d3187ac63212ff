#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/host_config.h"
#include "platform/report_engine.h"
#include "values/date_time.h"

namespace CLI {
class App;
}

namespace velora {

/// Options that stand before the command.
struct CommonOptions {
    std::string folder;    ///< blank: VELORA_FOLDER, else the current folder
    std::string settings;  ///< blank: the user's own file
    std::optional<DateTime> today;
    std::string region;  ///< blank: from the locale
    std::string messages;
    bool explain = false;
    bool quiet = false;
    std::function<void(HostConfig&)> configure;  ///< may change what velora.ini says
    bool has_folder = true;                      ///< none: there is no velora.ini, and `configure` says everything
};

/// What a mail of the command line says beyond what the settings and the quote give.
struct MailOptions {
    std::vector<std::string> to;  ///< none: the recipient of the quote
    std::vector<std::string> cc, bcc;
    std::string subject;
    std::string body;  ///< file with the text, "-" for standard input; blank for none
    std::vector<std::string> attachments;
    bool dry_run = false;  ///< the message goes to standard output instead
};

/// Where a document goes.
struct DeliveryOptions {
    std::optional<ExportFormat> format;  ///< none: by the ending of `output`, else as the settings say, else PDF
    std::string output;  ///< file, folder, or "-" for standard output; blank: the folder of the settings
    bool preview = false;
    bool print = false;
    std::string printer;     ///< blank: the one of the settings
    std::string definition;  ///< file, or name in the list; blank: the one of the settings, else the first of the list
    std::string pipe;
    bool email = false;
    MailOptions mail;
    bool each = false;  ///< a file of its own for each report of a document that comes in several

    [[nodiscard]] bool exports() const { return !preview && !print; }
};

/// `--parameter` and `--lenient`, for the commands that run a definition of a person's own.
void add_opening_options(CLI::App& command, OpeningWishes& wishes);
void add_common_options(CLI::App& program, CommonOptions& options);
void add_delivery_options(CLI::App& command, DeliveryOptions& options);
/// `--definition`, for kinds that have a list.
void add_definition_option(CLI::App& command, DeliveryOptions& options);
/// `--export` and `--output` alone.
void add_export_options(CLI::App& command, DeliveryOptions& options);
/// By name or extension: "html" and "htm" are one format.
std::optional<ExportFormat> format_named(std::string_view name);
/// As the setting "Format" holds it.
std::string format_setting(ExportFormat format);
/// The format that `--export` or the ending of `--output` asks for; none where neither does.
/// @throws UsageError for a file whose ending is that of no format
std::optional<ExportFormat> wanted_format(const DeliveryOptions& options);

/// Whether `--output` names a folder.
bool names_folder(const std::string& output);

/// The file that a name on the command line means: "-" is standard output.
std::filesystem::path file_named(const std::string& name);

/// `--pipe`, for the commands that fill one.
void add_pipe_option(CLI::App& command, DeliveryOptions& options);

}  // namespace velora
