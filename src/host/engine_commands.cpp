#include <CLI/CLI.hpp>

#include <filesystem>

#include "host/commands.h"
#include "host/kinds.h"
#include "host/tables.h"
#include "values/fault.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

struct RenderOptions {
    std::string file;
    std::optional<size_t> rows;
    std::string csv;
    std::string json;
    DeliveryOptions delivery;
};

struct FieldOptions {
    std::string kind;
    std::string definition;
};

std::unique_ptr<TableSource> table_for(const RenderOptions& options)
{
    if (!options.csv.empty()) return read_csv(options.csv);
    if (!options.json.empty()) return read_pipe_json(options.json);
    return empty_rows(options.rows.value_or(0));
}

const char* extension_of(ExportFormat format)
{
    switch (format) {
        case ExportFormat::Html:
            return ".html";
        case ExportFormat::Xls:
            return ".xls";
        case ExportFormat::Doc:
            return ".doc";
        case ExportFormat::Rtf:
            return ".rtf";
        case ExportFormat::Txt:
            return ".txt";
        case ExportFormat::Xml:
            return ".xml";
        default:
            return ".pdf";
    }
}

/// The file to write: as it is named, in the folder that is named, or beside the person who asks.
fs::path target_of(const RenderOptions& options)
{
    const std::string& output = options.delivery.output;
    const fs::path name = fs::path(options.file).stem().string() + extension_of(options.delivery.format);
    if (output.empty()) return fs::current_path() / name;
    return output.ends_with('/') || fs::is_directory(output) ? fs::path(output) / name : fs::path(output);
}

[[noreturn]] void fail(const std::string& definition, const char* what, const Fault& caught)
{
    std::string text = "The definition \"" + definition + "\" cannot be " + what + ": " + caught.description();
    if (!caught.where().empty()) text += "\r\n" + caught.where();
    throw HostError("Report Failure", text);
}

ExitStatus render(Host& host, const RenderOptions& options)
{
    const fs::path target = target_of(options);
    try {
        const auto report = host.engine().OpenReport(fs::absolute(options.file).string());
        if (!report->brings_its_own_data() || options.rows || !options.csv.empty() || !options.json.empty()) {
            report->SetDataSource(table_for(options));
        }
        report->Export(options.delivery.format, fs::absolute(target).string());
        for (const std::string& warning : report->warnings()) host.around().err << warning << '\n';
    } catch (const Fault& caught) {
        fail(options.file, "rendered", caught);
    }
    host.say(target.string());
    return ExitStatus::Delivered;
}

std::string_view type_name(ado::Type type)
{
    switch (type) {
        case ado::Integer:
            return "integer";
        case ado::Single:
            return "single";
        case ado::Date:
            return "date";
        case ado::Boolean:
            return "boolean";
        case ado::TinyInt:
            return "tiny integer";
        case ado::DBTimeStamp:
            return "date and time";
        default:
            return "text";
    }
}

std::vector<PipeField> fields_of(const ReportKind& kind)
{
    if (kind.fields == nullptr) {
        const char* why = kind.which == eRptCustom ? "brings its own data and has no field list."
                                                   : "is not in this build yet; it has no field list.";
        throw HostError("Not Available", "The report kind \"" + std::string(kind.name) + "\" " + why);
    }
    return kind.fields();
}

void print_fields(std::ostream& out, const std::vector<PipeField>& fields)
{
    size_t number = 0;
    for (const PipeField& field : fields) {
        out << ++number << '\t' << field.name << '\t' << type_name(field.type) << '\t' << int{field.type} << '\t'
            << field.size << '\n';
    }
}

/// What the definition asks for that the list lacks.
ExitStatus compare_fields(Host& host, const std::vector<PipeField>& fields, const std::string& definition)
{
    std::shared_ptr<OpenedReport> report;
    try {
        report = host.engine().OpenReport(fs::absolute(definition).string());
    } catch (const Fault& caught) {
        fail(definition, "read", caught);
    }
    size_t lacking = 0;
    for (const TableSource::Field& asked : report->fields()) {
        const auto found = std::ranges::find(fields, asked.name, &PipeField::name);
        if (found != fields.end()) continue;
        host.around().out << "lacking\t" << asked.name << '\n';
        ++lacking;
    }
    if (lacking == 0) host.say("Every field that the definition asks for is in the list.");
    return lacking == 0 ? ExitStatus::Delivered : ExitStatus::Told;
}

}  // namespace

void add_engine_commands(CLI::App& program, CommandBody& chosen)
{
    auto* command = program.add_subcommand("render", "Render a definition with data of a file, without a company");
    auto options = std::make_shared<RenderOptions>();
    command->add_option("FILE", options->file, "Report definition")->required();
    auto* rows = command->add_option("--rows", options->rows, "So many empty rows")
                     ->check(CLI::NonNegativeNumber)
                     ->type_name("N");
    auto* csv = command
                    ->add_option("--csv", options->csv,
                                 "Values separated by commas: the fields COLUMN_0, "
                                 "COLUMN_1, ... as text")
                    ->type_name("FILE");
    auto* json = command->add_option("--json", options->json, "Data in the form that --pipe writes")->type_name("FILE");
    rows->excludes(csv)->excludes(json);
    csv->excludes(json);
    add_export_options(*command, options->delivery);
    command->callback([options, &chosen] { chosen = [options](Host& host) { return render(host, *options); }; });

    auto* fields = program.add_subcommand("fields", "List the fields that a kind hands to its definitions");
    auto asked = std::make_shared<FieldOptions>();
    fields->add_option("KIND", asked->kind, "Report kind")->required();
    fields->add_option("--definition", asked->definition, "List what this definition asks for that the list lacks")
        ->type_name("FILE");
    fields->callback([asked, &chosen] {
        chosen = [asked](Host& host) {
            const auto list = fields_of(require_kind(asked->kind));
            if (!asked->definition.empty()) return compare_fields(host, list, asked->definition);
            print_fields(host.around().out, list);
            return ExitStatus::Delivered;
        };
    });
}

}  // namespace velora
