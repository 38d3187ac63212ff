#include "adapters/engine/report_engine.h"

#include <algorithm>

#include "adapters/engine/page_view.h"
#include "adapters/engine/scratch_file.h"
#include "engine/export/exporter.h"
#include "engine/fill/fill.h"
#include "engine/plan/resources.h"
#include "engine/text/font_store.h"
#include "engine/text/measurer.h"
#include "values/fault.h"

namespace velora {

namespace fs = std::filesystem;

namespace {

/// The fonts of all reports are one store, which tells the run at hand.
struct Told {
    engine::FontStore& fonts;
    ~Told() { fonts.tell({}); }
};

/// A definition as it was compiled, and the file that it was read from.
struct CompiledDefinition {
    /// What tells one state of a file from another.
    struct State {
        fs::file_time_type changed;
        uintmax_t size = 0;
        bool operator==(const State&) const = default;
    };

    std::string path;
    State state;
    std::shared_ptr<const engine::CompiledReport> report;
    std::vector<std::string> warnings;
};

CompiledDefinition::State state_of(const std::string& path)
{
    std::error_code ignored;  // what cannot be asked for its state says why when it is read
    return {fs::last_write_time(path, ignored), fs::file_size(path, ignored)};
}

/// Tells a window of the pages of a run, from the first on.
class ShownPages {
public:
    explicit ShownPages(const EngineServices& services) : services_(services) {}

    void told_of_page()
    {
        if (!services_.on_first_page) return;
        if (std::exchange(is_shown_, true)) return services_.on_page();
        services_.on_first_page(view.lock());
    }
    void ended(bool all_there) const
    {
        if (is_shown_) services_.on_pages_end(all_there);
    }

    std::weak_ptr<PageView> view;

private:
    const EngineServices& services_;
    bool is_shown_ = false;
};

class EngineReport : public OpenedReport {
public:
    EngineReport(const CompiledDefinition& compiled, std::shared_ptr<engine::FontStore> fonts,
                 const EngineServices& services, const OpeningWishes& wishes)
        : report_(compiled.report),
          warnings_(compiled.warnings),
          fonts_(std::move(fonts)),
          measurer_(*fonts_),
          services_(services)
    {
        job_.title = report_->definition().name;
        parameters_ = services.parameters;
        for (const auto& [name, text] : wishes.parameters) {
            parameters_[name] = engine::parameter_from_text(*report_, name, text);
        }
        job_.page_width = report_->definition().page.width;
        job_.page_height = report_->definition().page.height;
    }

    [[nodiscard]] const std::vector<TableSource::Field>& fields() const override { return report_->fields(); }
    [[nodiscard]] bool brings_its_own_data() const override { return report_->definition().data.query.text.present(); }
    void SetDataSource(std::shared_ptr<TableSource> data) override { data_ = std::move(data); }
    void SetParameter(const std::string& name, Value value) override { parameters_[name] = std::move(value); }
    void SelectPrinter(const std::string& driver, const std::string& device, const std::string& port) override
    {
        job_.driver = driver;
        job_.device = device;
        job_.port = port;
    }
    void PaperOrientation(int orientation) override { job_.orientation = orientation; }
    void PaperSource(int source) override { job_.paper_source = source; }

    void Title(const std::string& title) override { job_.title = title; }
    void PrintOut() override
    {
        if (!services_.print) throw Fault(fault::kCannotCreate, "This machine has no way to print.", job_.device);
        const ScratchFile file(".pdf");
        write("pdf", file.path());
        job_.file = file.path();
        services_.print(job_);
    }

    void Export(ExportFormat format, const std::string& path) override
    {
        if (services_.before_export) services_.before_export(path);
        write(record_of(format).extension.substr(1), path);
    }

    std::shared_ptr<PageView> View() override
    {
        ShownPages shown(services_);
        const auto pages = std::make_shared<StoredPages>([&shown] { shown.told_of_page(); });
        auto view = make_page_view(pages, fonts_, services_.print, job_);
        shown.view = view;
        try {
            run(*pages);
        } catch (...) {
            shown.ended(false);
            throw;
        }
        shown.ended(true);
        return view;
    }

    [[nodiscard]] const std::vector<std::string>& warnings() const override { return warnings_; }

private:
    void write(std::string_view extension, const fs::path& path)
    {
        const engine::ExportContext context{*fonts_, [this](const std::string& text) { warn(text); }};
        const auto sink = engine::make_exporter(extension, path, context);
        run(*sink);
    }

    void run(engine::PageSink& sink)
    {
        engine::FillOptions options;
        options.surroundings.locale = services_.locale;
        options.surroundings.time_zone = services_.time_zone;
        if (services_.now) {
            options.surroundings.now = services_.now();
            options.created = options.surroundings.now;
        }
        options.parameters = parameters_;
        options.resources = engine::read_resources(report_->definition(), services_.locale, warnings_);
        options.warn = [this](const std::string& text) { warn(text); };
        options.cancelled = [this, rows = size_t{0}]() mutable {
            constexpr size_t kOften = 1000;
            if (++rows % kOften == 0 && services_.on_rows) services_.on_rows(rows);
            return false;
        };
        if (services_.run_query) {
            options.run_query = [this](const auto& definition, const auto& value_of) {
                return queried(definition, value_of);
            };
        }
        const auto table = rows(options);
        const Told told{*fonts_};
        fonts_->tell(options.warn);
        engine::fill(*report_, *table, measurer_, options, sink);
    }

    std::shared_ptr<TableSource> rows(const engine::FillOptions& options)
    {
        if (data_) return data_;
        const auto& definition = report_->definition();
        if (!brings_its_own_data()) return std::make_shared<EmptyTable>();
        if (!services_.run_query) throw Fault(fault::kDatabase, "There is no database for the report's query.");
        const auto values = engine::parameter_values(*report_, options);
        return queried(definition, [&](std::string_view name) {
            const auto value = values.find(name);
            return value == values.end() ? std::nullopt : std::optional(value->second);
        });
    }

    /// A report inside a report runs its query where the one around it does, unless it names a place of its own.
    [[nodiscard]] std::shared_ptr<TableSource> queried(
        const engine::model::Definition& definition,
        const std::function<std::optional<Value>(std::string_view)>& value_of) const
    {
        const Command command = bound_query(definition.data.query.text.text, [&](const std::string& name) {
            auto value = value_of(name);
            if (!value) throw Fault(fault::kReportFile, "The query asks for an unknown parameter.", name);
            return *value;
        });
        constexpr std::string_view kConnection = "velora.connection";
        auto connection = engine::model::property_value(definition.data.properties, kConnection);
        if (!connection) {
            connection = engine::model::property_value(report_->definition().data.properties, kConnection);
        }
        return services_.run_query(std::string(connection.value_or("")), command);
    }

    void warn(const std::string& text)
    {
        if (std::find(warnings_.begin(), warnings_.end(), text) == warnings_.end()) warnings_.push_back(text);
    }

    std::shared_ptr<const engine::CompiledReport> report_;
    std::vector<std::string> warnings_;
    std::shared_ptr<engine::FontStore> fonts_;
    engine::Measurer measurer_;
    const EngineServices& services_;
    std::shared_ptr<TableSource> data_;
    std::map<std::string, Value, std::less<>> parameters_;
    PrintJob job_;
};

class Engine : public ReportEngine {
public:
    Engine(fs::path fonts, EngineServices services)
        : fonts_(std::make_shared<engine::FontStore>(std::move(fonts))), services_(std::move(services))
    {
    }

    void Wish(const OpeningWishes& wishes) override
    {
        wishes_ = wishes;
        latest_ = {};
    }

    std::shared_ptr<OpenedReport> OpenReport(const std::string& path) override
    {
        try {
            if (latest_.path != path || latest_.state != state_of(path) || !latest_.report) compile(path);
            return std::make_shared<EngineReport>(latest_, fonts_, services_, wishes_);
        } catch (const engine::DefinitionError& error) {
            if (services_.on_refused) services_.on_refused(path, error.what());
            throw fault::of(fault::kReportFile, error.what());
        }
    }

private:
    void compile(const std::string& path)
    {
        latest_ = {path, state_of(path), nullptr, {}};
        latest_.report = engine::open_report(path, latest_.warnings, wishes_.lenient);
    }

    CompiledDefinition latest_;  ///< many documents of a run have one definition
    std::shared_ptr<engine::FontStore> fonts_;
    EngineServices services_;
    OpeningWishes wishes_;
};

}  // namespace

std::unique_ptr<ReportEngine> make_report_engine(fs::path fonts, EngineServices services)
{
    return std::make_unique<Engine>(std::move(fonts), std::move(services));
}

Command bound_query(std::string_view statement, const std::function<Value(const std::string& name)>& value_of)
{
    Command command;
    while (!statement.empty()) {
        const size_t mark = std::min(statement.find("$P{"), statement.size());
        command.text += statement.substr(0, mark);
        statement.remove_prefix(mark);
        const size_t end = statement.find('}');
        if (statement.empty()) break;
        if (end == std::string_view::npos) {  // left to the database to refuse
            command.text += statement;
            break;
        }
        const std::string name(statement.substr(3, end - 3));
        command.parameters.push_back({name, value_of(name)});
        command.text += '?';
        statement.remove_prefix(end + 1);
    }
    return command;
}

}  // namespace velora
