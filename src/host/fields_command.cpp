#include <algorithm>
#include <ostream>

#include "host/bind.h"
#include "host/kinds.h"
#include "host/opened_definition.h"

namespace velora {
namespace {

struct FieldOptions {
    std::string kind;
    std::string definition;
    bool whole_quantities = false;
};

std::vector<PipeField> fields_of(const ReportKind& kind, bool whole_quantities)
{
    if (whole_quantities && kind.whole_quantity_fields != nullptr) return kind.whole_quantity_fields();
    if (kind.fields != nullptr) return kind.fields();
    const char* why = kind.criteria.file ? "brings its own data and has no field list."
                                         : "is not in this build yet; it has no field list.";
    throw HostError("Not Available", "The report kind \"" + std::string(kind.name) + "\" " + why);
}

void print_fields(std::ostream& out, const std::vector<PipeField>& fields)
{
    size_t number = 0;
    for (const PipeField& field : fields) {
        out << ++number << '\t' << field.name << '\t' << ado::type_record(field.type).name << '\t' << int{field.type}
            << '\t' << field.size << '\n';
    }
}

/// What the definition asks for that the list lacks.
ExitStatus compare_fields(Host& host, const std::vector<PipeField>& fields, const std::string& definition)
{
    const auto report = open_definition_file(host, definition);
    size_t lacking = 0;
    for (const TableSource::Field& asked : report->fields()) {
        const auto found = std::ranges::find(fields, asked.name, &PipeField::name);
        if (found != fields.end()) continue;
        host.answers() << "lacking\t" << asked.name << '\n';
        ++lacking;
    }
    if (lacking == 0) host.say("Every field that the definition asks for is in the list.");
    return lacking == 0 ? ExitStatus::Delivered : ExitStatus::Told;
}

ExitStatus show_fields(Host& host, const FieldOptions& options)
{
    const auto fields = fields_of(require_kind(options.kind), options.whole_quantities);
    if (!options.definition.empty()) return compare_fields(host, fields, options.definition);
    print_fields(host.answers(), fields);
    return ExitStatus::Delivered;
}

/// The kinds whose fields this build knows.
std::string kinds_with_fields()
{
    std::string names;
    for (const ReportKind& kind : report_kinds()) {
        if (kind.fields != nullptr) names.append(names.empty() ? "" : ", ").append(kind.name);
    }
    return names;
}

}  // namespace

void add_fields_command(CLI::App& program, CommandBody& chosen)
{
    auto* command = program.add_subcommand("fields", "List the fields that a kind hands to its definitions");
    const auto options = std::make_shared<FieldOptions>();
    command->add_option("KIND", options->kind, "Report kind: " + kinds_with_fields())->required();
    command->add_option("--definition", options->definition, "List what this definition asks for that the list lacks")
        ->type_name("FILE");
    command->add_flag("--whole-quantities", options->whole_quantities, "Those of slips with whole quantities");
    bind(*command, chosen, options, show_fields);
}

}  // namespace velora
