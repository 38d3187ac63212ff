// The whole way from rows to a PDF file, and what it costs in memory. Fields COLUMN_0 to COLUMN_9 of row r hold
// "text n of row r"; 25 rows fill a page with 250 texts. The peer makes the same rows.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <array>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "engine/export/exporter.h"
#include "engine/fill/fill.h"
#include "engine/text/font_store.h"
#include "engine/text/measurer.h"

namespace velora::engine {
namespace {

namespace fs = std::filesystem;

constexpr size_t kColumns = 10;
constexpr int64_t kMillion = 1'000'000;

enum class Numbers : uint8_t { InOrder, Scattered };

class NumberedRows : public TableSource {
public:
    NumberedRows(int64_t count, Numbers numbers) : count_(count), numbers_(numbers)
    {
        for (size_t column = 0; column < kColumns; ++column) {
            fields_.push_back({"COLUMN_" + std::to_string(column), Value::Type::Text});
        }
    }
    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override
    {
        if (row_ + 1 >= count_) return false;
        ++row_;
        for (size_t column = 0; column < kColumns; ++column) {
            cells_[column] = Value("text " + std::to_string(column) + " of row " + std::to_string(number(column)));
        }
        return true;
    }
    void rewind() override { row_ = -1; }
    [[nodiscard]] const Value& cell(size_t field) const override { return cells_[field]; }

private:
    /// Scattered numbers have nine digits, none of them told by the texts around.
    [[nodiscard]] int64_t number(size_t column) const
    {
        if (numbers_ == Numbers::InOrder) return row_;
        const auto cell = static_cast<uint64_t>(row_) * kColumns + column + 1;
        return static_cast<int64_t>((cell * 0x9E3779B97F4A7C15U >> 32) % 900'000'000 + 100'000'000);
    }

    std::vector<Field> fields_;
    std::array<Value, kColumns> cells_;
    int64_t count_;
    Numbers numbers_;
    int64_t row_ = -1;
};

/// Counts pages on their way to another sink, or drops them.
class CountingSink : public PageSink {
public:
    explicit CountingSink(std::unique_ptr<PageSink> next = {}) : next_(std::move(next)) {}
    void begin(const Document& document) override
    {
        if (next_) next_->begin(document);
    }
    void page(Page&& page) override
    {
        pages += page.elements.empty() ? 0 : 1;
        if (next_) next_->page(std::move(page));
    }
    void end() override
    {
        if (next_) next_->end();
    }
    int64_t pages = 0;

private:
    std::unique_ptr<PageSink> next_;
};

/// An engine that has a definition open.
class Engine {
public:
    explicit Engine(const char* definition)
        : fonts_(fs::path(VELORA_SOURCE_DIR) / "fonts"),
          measurer_(fonts_),
          report_(open_report(fs::path(VELORA_SOURCE_DIR) / "bench/data" / definition, warnings_))
    {
        fs::create_directories(VELORA_BENCH_SCRATCH);
    }

    /// Pages that the rows gave.
    int64_t to_nowhere(int64_t rows) { return run(NumberedRows(rows, Numbers::InOrder), CountingSink()); }
    int64_t scattered(int64_t rows) { return run(NumberedRows(rows, Numbers::Scattered), CountingSink()); }
    int64_t to_pdf(int64_t rows)
    {
        const auto target = fs::path(VELORA_BENCH_SCRATCH) / "dense.pdf";
        return run(NumberedRows(rows, Numbers::InOrder), CountingSink(make_exporter("pdf", target, {fonts_, {}})));
    }

private:
    int64_t run(NumberedRows&& table, CountingSink&& sink)
    {
        fill(*report_, table, measurer_, {}, sink);
        return sink.pages;
    }

    std::vector<std::string> warnings_;
    FontStore fonts_;
    Measurer measurer_;
    std::unique_ptr<CompiledReport> report_;
};

using Way = int64_t (Engine::*)(int64_t rows);

/// Memory of this process in bytes: "VmRSS" now, "VmHWM" at its highest since `forget_peak`.
double memory(std::string_view which)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(which)) return std::stod(line.substr(which.size() + 1)) * 1024;
    }
    return 0;
}

void forget_peak()
{
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;
}

void pages_a_second(benchmark::State& state, Way way)
{
    Engine engine("dense.jrxml");
    (engine.*way)(10'000);
    int64_t pages = 0;
    for (auto _ : state) pages += (engine.*way)(state.range(0));
    state.SetItemsProcessed(pages);
}

/// How many times longer ten times the rows take; both in turn, so that a load from outside meets both.
void tenfold(benchmark::State& state, Way way)
{
    Engine engine("dense.jrxml");
    (engine.*way)(10'000);
    std::array<double, 2> seconds{};
    for (auto _ : state) {
        for (const auto& [index, rows] : {std::pair{0U, 10'000}, {1U, 100'000}}) {
            const auto start = std::clock();
            (engine.*way)(rows);
            seconds[index] += static_cast<double>(std::clock() - start);
        }
    }
    state.counters["times"] = seconds[1] / seconds[0];
}

/// Nothing waits: the highest memory of a million rows beside that of a tenth of them.
void many_rows(benchmark::State& state)
{
    Engine engine("dense.jrxml");
    engine.to_pdf(kMillion / 100);
    forget_peak();
    const auto before = memory("VmRSS");
    engine.to_pdf(kMillion / 10);
    const auto tenth = memory("VmHWM") - before;
    forget_peak();
    int64_t pages = 0;
    for (auto _ : state) pages += engine.to_pdf(kMillion);
    state.SetItemsProcessed(pages);
    state.counters["MB_before"] = before / 1e6;
    state.counters["MB_tenth"] = tenth / 1e6;
    state.counters["MB_all"] = (memory("VmHWM") - before) / 1e6;
}

/// "Page n of m" holds every page until the last row.
void held_pages(benchmark::State& state, Way way)
{
    Engine engine("dense-of-pages.jrxml");
    (engine.*way)(1'000);
    forget_peak();
    const auto before = memory("VmRSS");
    int64_t pages = 0;
    for (auto _ : state) pages += (engine.*way)(state.range(0));
    state.SetItemsProcessed(pages);
    state.counters["bytes_a_page"] = (memory("VmHWM") - before) / static_cast<double>(pages);
}

/// 100, 1,000 and 10,000 pages.
void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(2'500)->Arg(25'000)->Arg(250'000)->UseRealTime()->Unit(benchmark::kMillisecond);
}

// One iteration where memory is looked at: a second one would find what the first has left behind.
BENCHMARK_CAPTURE(pages_a_second, fill, &Engine::to_nowhere)->Apply(sizes);
BENCHMARK_CAPTURE(pages_a_second, pdf, &Engine::to_pdf)->Apply(sizes);
BENCHMARK_CAPTURE(tenfold, fill, &Engine::to_nowhere)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(tenfold, pdf, &Engine::to_pdf)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(many_rows)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(held_pages, in_order, &Engine::to_nowhere)
    ->Arg(250'000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(held_pages, scattered, &Engine::scattered)
    ->Arg(250'000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velora::engine

BENCHMARK_MAIN();
