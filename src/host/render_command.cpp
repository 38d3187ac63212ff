#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <thread>

#include "host/bind.h"
#include "host/csv.h"
#include "host/opened_definition.h"
#include "host/run_progress.h"
#include "host/tables.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

struct RenderOptions {
    std::string file;
    std::optional<size_t> rows;
    std::string csv;
    std::string json;
    bool csv_head = false;
    bool watch = false;
    DeliveryOptions delivery;
    OpeningWishes wishes;
};

/// The file to write: as it is named, in the folder that is named, or beside the person who asks.
fs::path target_of(const RenderOptions& options, ExportFormat format)
{
    const std::string& output = options.delivery.output;
    const fs::path name = fs::path(options.file).stem().string().append(record_of(format).extension);
    if (output.empty()) return fs::current_path() / name;
    return names_folder(output) ? fs::path(output) / name : file_named(output);
}

struct Data {
    std::shared_ptr<TableSource> table;  ///< none for the report's own query
    size_t rows = 0;
};

Data held(HeldTable table)
{
    const size_t rows = table.row_count();
    return {std::make_shared<HeldTable>(std::move(table)), rows};
}

/// The data that lie beside the definition under its name.
std::optional<fs::path> sample_beside(const RenderOptions& options)
{
    if (options.rows) return std::nullopt;
    const fs::path file = fs::path(options.file).replace_extension(".json");
    std::error_code none;
    return fs::is_regular_file(file, none) ? std::optional(file) : std::nullopt;
}

/// Tells of a first line that names fields of the definition and was taken for a row.
void hint_at_head(Host& host, HeldTable& table, const OpenedReport& report)
{
    const auto& declared = report.fields();
    if (!table.next()) return;
    for (size_t at = 0; at < table.fields().size(); ++at) {
        const auto* cell = table.cell(at).get_if<std::string>();
        if (cell == nullptr || std::ranges::find(declared, *cell, &TableSource::Field::name) == declared.end())
            continue;
        host.around().err << "the first line of the data names the field '" << *cell
                          << "'; with --csv-head it is read as the names of the fields\n";
        break;
    }
    table.rewind();
}

Data data_for(Host& host, const RenderOptions& options, const OpenedReport& report)
{
    if (!options.csv.empty()) {
        HeldTable table = read_csv(options.csv, options.csv_head);
        if (!options.csv_head) hint_at_head(host, table, report);
        return held(std::move(table));
    }
    if (!options.json.empty()) return held(read_pipe_json(options.json));
    if (!options.rows && report.brings_its_own_data()) return {};
    if (const auto sample = sample_beside(options)) return held(read_pipe_json(*sample));
    const size_t rows = options.rows.value_or(0);
    const auto choices = compared_texts(read_data_file(options.file));
    return {std::make_shared<SampleTable>(report.fields(), choices, rows, host.now()), rows};
}

void fill_and_export(Host& host, const RenderOptions& options, ExportFormat format, const fs::path& target)
{
    host.engine().Wish(options.wishes);
    const auto report = open_definition_file(host, options.file);
    RunProgress progress(host.around().err, host.is_watched(), 1);
    const Data data = data_for(host, options, *report);
    if (data.table) report->SetDataSource(data.table);
    host.watch_rows([&](size_t rows) { progress.rows(rows, data.rows); });
    report->Export(format, fs::absolute(target).string());
    host.watch_rows({});
    progress.clear();
    for (const std::string& warning : report->warnings()) host.around().err << warning << '\n';
}

/// When what a rendering may read was written last: the data, and the definitions, templates and words beside the one
/// that is rendered.
std::map<fs::path, fs::file_time_type> written(const RenderOptions& options)
{
    std::vector<fs::path> files{options.file, options.csv, options.json};
    if (const auto sample = sample_beside(options)) files.push_back(*sample);
    std::error_code gone;
    for (fs::directory_iterator each(fs::absolute(options.file).parent_path(), gone), end; each != end && !gone;
         each.increment(gone)) {
        const fs::path ending = each->path().extension();
        if (ending == ".jrxml" || ending == ".rpt" || ending == ".jrtx" || ending == ".properties") {
            files.push_back(each->path());
        }
    }
    std::map<fs::path, fs::file_time_type> times;
    for (const auto& file : files) times[file] = fs::last_write_time(file, gone);
    return times;
}

/// Renders whenever a file has been written that may be read, until the program is stopped. What a definition has wrong
/// is told, and the next time it is saved it has another chance.
[[noreturn]] void watch(Host& host, const std::function<void()>& render_once, const RenderOptions& options)
{
    constexpr auto kPause = std::chrono::milliseconds(300);
    for (;;) {
        const auto seen = written(options);
        try {
            render_once();
        } catch (const HostError& error) {
            host.around().err << error.what() << std::endl;
        }
        while (written(options) == seen) std::this_thread::sleep_for(kPause);
        std::this_thread::sleep_for(kPause);  // an editor may still be writing
    }
}

ExitStatus render(Host& host, const RenderOptions& options)
{
    const ExportFormat format = wanted_format(options.delivery).value_or(ExportFormat::Pdf);
    const fs::path target = target_of(options, format);
    host.files().reads(options.file, "the report definition");
    for (const std::string& data : {options.csv, options.json}) {
        if (!data.empty()) host.files().reads(data, "the data of the report");
    }
    if (options.csv.empty() && options.json.empty()) {
        if (const auto sample = sample_beside(options)) host.files().reads(*sample, "the data of the report");
    }
    host.files().writes(target, "--output");
    if (options.delivery.output == "-") host.leave_standard_output();
    const auto render_once = [&] {
        try {
            fill_and_export(host, options, format, target);
        } catch (const Fault& caught) {
            throw definition_error(options.file, "rendered", caught);
        }
        if (options.delivery.output != "-") host.say(target.string());
    };
    if (options.watch) watch(host, render_once, options);
    render_once();
    return ExitStatus::Delivered;
}

auto row_count_reader(std::optional<size_t>& into)
{
    return [&into](const std::string& text) {
        constexpr size_t kMost = 100'000'000;
        size_t count = 0;
        const auto read = std::from_chars(text.data(), text.data() + text.size(), count);
        if (read.ec != std::errc() || read.ptr != text.data() + text.size() || count > kMost) {
            throw CLI::ValidationError("\"" + text + "\" is no number of rows, which is whole and not below 0");
        }
        into = count;
    };
}

}  // namespace

void add_render_command(CLI::App& program, CommandBody& chosen)
{
    auto* command = program.add_subcommand("render", "Render a definition with data of a file, without a company");
    const auto options = std::make_shared<RenderOptions>();
    command->add_option("FILE", options->file, "Report definition")->required();
    auto* rows = command
                     ->add_option_function<std::string>("--rows", row_count_reader(options->rows),
                                                        "So many rows of samples: in each field its name, or a "
                                                        "number or date of its type")
                     ->type_name("N");
    auto* csv = command
                    ->add_option("--csv", options->csv,
                                 "Values separated by commas: the fields COLUMN_0, "
                                 "COLUMN_1, ... as text")
                    ->type_name("FILE");
    auto* json = command
                     ->add_option("--json", options->json,
                                  "Data in the form that --pipe writes (default: the file of the definition's "
                                  "name that ends in .json, if there is one beside it)")
                     ->type_name("FILE");
    rows->excludes(csv)->excludes(json);
    csv->excludes(json);
    command->add_flag("--csv-head", options->csv_head, "The first line of --csv names the fields")->needs(csv);
    command->add_flag("--watch", options->watch, "Render again whenever a definition or its data are saved");
    add_opening_options(*command, options->wishes);
    add_export_options(*command, options->delivery);
    bind(*command, chosen, options, render);
}

}  // namespace velora
