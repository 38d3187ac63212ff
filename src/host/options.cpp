#include "host/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "host/host_error.h"
#include "values/text.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

std::string format_names()
{
    std::string names;
    for (const auto& record : kExportFormats) names.append(names.empty() ? "" : ", ").append(record.name);
    return names;
}

/// Reads the text of an option into a date.
auto date_reader(std::optional<DateTime>& into)
{
    return [&into](const std::string& text) {
        into = text.size() == 10 ? DateTime::from_iso(text) : std::nullopt;
        if (!into) throw CLI::ValidationError("\"" + text + "\" is no date of the form YYYY-MM-DD");
    };
}

auto format_reader(std::optional<ExportFormat>& into)
{
    return [&into](const std::string& text) {
        into = format_named(text);
        if (!into) {
            throw CLI::ValidationError("\"" + text + "\" is no format. The formats are: " + format_names() + ".");
        }
    };
}

/// The long names leave "--to" to the criteria that are periods.
void add_email_options(CLI::App& command, DeliveryOptions& options)
{
    auto* email = command.add_flag("--email", options.email,
                                   "Send the exported file as the e-mail settings say, to the recipient of the quote");
    CLI::Option* const others[] = {
        command.add_option("--email-to", options.mail.to, "Other recipients")->type_name("ADDRESS..."),
        command.add_option("--email-subject", options.mail.subject, "Subject")->type_name("TEXT"),
        command.add_option("--email-body", options.mail.body, "File with the text, - for standard input")
            ->type_name("FILE"),
        command.add_flag("--dry-run", options.mail.dry_run,
                         "Write the message to standard output instead of sending it"),
    };
    for (CLI::Option* other : others) other->needs(email);
    email->excludes(command.get_option("--preview"))->excludes(command.get_option("--print"));
}

}  // namespace

void add_common_options(CLI::App& program, CommonOptions& options)
{
    program
        .add_option("--folder", options.folder, "Application folder (default: VELORA_FOLDER, else the current folder)")
        ->type_name("DIR");
    program
        .add_option("--settings", options.settings,
                    "The user's settings (default: Morvane/Velora.ini in the "
                    "user's configuration folder)")
        ->type_name("FILE");
    program.add_option_function<std::string>("--today", date_reader(options.today), "Date of the run")
        ->type_name("YYYY-MM-DD");
    program.add_option("--region", options.region, "How dates and numbers are written, such as en-US or de-DE")
        ->type_name("TAG");
    program.add_option("--messages", options.messages, "Write every message box to FILE as a line of JSON")
        ->type_name("FILE");
    program.add_flag("--explain", options.explain,
                     "List what fell away or was cut, and the queries and filters that ran");
    program.add_flag("--quiet", options.quiet, "Say nothing but messages");
}

void add_export_options(CLI::App& command, DeliveryOptions& options)
{
    command
        .add_option_function<std::string>("--export", format_reader(options.format),
                                          "Format of the file: " + format_names() +
                                              " (default: by the ending of --output, else that of the settings, "
                                              "else pdf)")
        ->type_name("FORMAT");
    command.add_option("--output", options.output, "File to write, folder to write into, or - for standard output")
        ->type_name("FILE|DIR");
}

void add_opening_options(CLI::App& command, OpeningWishes& wishes)
{
    command
        .add_option_function<std::vector<std::string>>(
            "--parameter",
            [&wishes](const std::vector<std::string>& given) {
                for (const std::string& one : given) {
                    const size_t mark = one.find('=');
                    if (mark == std::string::npos || mark == 0) {
                        throw CLI::ValidationError("\"" + one + "\" is no NAME=VALUE");
                    }
                    wishes.parameters.emplace_back(one.substr(0, mark), one.substr(mark + 1));
                }
            },
            "Value of a parameter of the definition; may be given several times")
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->type_name("NAME=VALUE");
    command.add_flag("--lenient", wishes.lenient,
                     "Leave out what the definition's expressions ask for and is not known, with a warning each");
}

void add_delivery_options(CLI::App& command, DeliveryOptions& options)
{
    add_export_options(command, options);
    auto* preview = command.add_flag("--preview", options.preview, "Show the pages instead");
    auto* print = command
                      .add_option("--print", options.printer,
                                  "Print instead, on the printer whose name holds "
                                  "PRINTER")
                      ->expected(0, 1)
                      ->type_name("[PRINTER]");
    command.parse_complete_callback([&options, print] { options.print = print->count() > 0; });
    preview->excludes(print);
    for (const char* file_option : {"--export", "--output"}) {
        preview->excludes(command.get_option(file_option));
        print->excludes(command.get_option(file_option));
    }
    add_email_options(command, options);
}

void add_definition_option(CLI::App& command, DeliveryOptions& options)
{
    command
        .add_option("--definition", options.definition,
                    "Report definition, by its file or its name in the kind's list (default: the one of the settings, "
                    "else the first of the list)")
        ->type_name("FILE|NAME");
}

void add_pipe_option(CLI::App& command, DeliveryOptions& options)
{
    command
        .add_option("--pipe", options.pipe,
                    "Write the finished data as JSON, an object for each document, to FILE or - for standard output")
        ->type_name("FILE");
}

std::optional<ExportFormat> format_named(std::string_view name)
{
    for (const auto& record : kExportFormats) {
        if (same_name(record.name, name) || same_name(record.extension.substr(1), name)) return record.format;
    }
    return std::nullopt;
}

std::string format_setting(ExportFormat format)
{
    const auto found = std::ranges::find(kExportFormats, format, &ExportFormatRecord::format);
    const auto number = static_cast<size_t>(found - kExportFormats.begin());
    return number < kOfferedFormats ? std::to_string(number) : std::string(found->name);
}

std::optional<ExportFormat> wanted_format(const DeliveryOptions& options)
{
    if (options.format || options.output.empty() || names_folder(options.output)) return options.format;
    const std::string ending = fs::path(options.output).extension().string();
    if (ending.empty()) return std::nullopt;
    const auto format = format_named(std::string_view(ending).substr(1));
    if (format) return format;
    throw UsageError(
        "\"" + options.output + "\" ends in \"" + ending +
        "\", which is no format. Name the format with --export, or end the file in one of: " + format_names() + ".");
}

bool names_folder(const std::string& output)
{
    std::error_code unknown;
    return output.ends_with('/') || fs::is_directory(output, unknown);
}

fs::path file_named(const std::string& name)
{
    return name == "-" ? fs::path("/dev/stdout") : fs::absolute(name);
}

}  // namespace velora
