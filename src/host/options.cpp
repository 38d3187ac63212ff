#include "host/options.h"

#include <CLI/CLI.hpp>

#include <map>

namespace velora {
namespace {

const std::map<std::string, ExportFormat> kFormats{
    {"pdf", ExportFormat::Pdf}, {"html", ExportFormat::Html}, {"xls", ExportFormat::Xls}, {"doc", ExportFormat::Doc},
    {"rtf", ExportFormat::Rtf}, {"txt", ExportFormat::Txt},   {"xml", ExportFormat::Xml},
};

/// Reads the text of an option into a date.
auto date_reader(std::optional<DateTime>& into)
{
    return [&into](const std::string& text) {
        into = text.size() == 10 ? DateTime::from_iso(text) : std::nullopt;
        if (!into) throw CLI::ValidationError("\"" + text + "\" is no date of the form YYYY-MM-DD");
    };
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
    command.add_option("--export", options.format, "Format of the file: pdf, html, xls, doc, rtf, txt, xml")
        ->transform(CLI::CheckedTransformer(kFormats, CLI::ignore_case))
        ->type_name("FORMAT")
        ->option_text("FORMAT");
    command.add_option("--output", options.output, "File to write, or folder to write into")->type_name("FILE|DIR");
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
    command
        .add_option("--definition", options.definition,
                    "Report definition (default: the one of the settings, "
                    "else the first of the kind's list)")
        ->type_name("FILE");
}

void add_pipe_option(CLI::App& command, DeliveryOptions& options)
{
    command.add_option("--pipe", options.pipe, "Write the finished data as JSON, an object for each document")
        ->type_name("FILE");
}

}  // namespace velora
