#pragma once

#include <optional>
#include <string>

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
};

/// Where a document goes.
struct DeliveryOptions {
    ExportFormat format = ExportFormat::Pdf;
    std::string output;  ///< file, or folder; blank: the folder of the settings
    bool preview = false;
    bool print = false;
    std::string printer;     ///< blank: the one of the settings
    std::string definition;  ///< blank: the one of the settings, else the first of the list
    std::string pipe;

    [[nodiscard]] bool exports() const { return !preview && !print; }
};

void add_common_options(CLI::App& program, CommonOptions& options);
void add_delivery_options(CLI::App& command, DeliveryOptions& options);
/// `--export` and `--output` alone.
void add_export_options(CLI::App& command, DeliveryOptions& options);
/// `--pipe`, for the commands that fill one.
void add_pipe_option(CLI::App& command, DeliveryOptions& options);

}  // namespace velora
