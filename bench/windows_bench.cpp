// What a person waits for in the viewer: the first page of a long report, each step of scrolling, and the memory that
// the program then holds. It prints lines of figures; run it on a machine that does nothing else.
// usage: bench_windows [PAGES] [STEPS]
#include <QAbstractScrollArea>
#include <QApplication>
#include <QScrollBar>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/command_line.h"
#include "host/host.h"
#include "host/open_windows.h"

namespace {

namespace fs = std::filesystem;
using namespace velora;
using Steady = std::chrono::steady_clock;

double milliseconds_since(Steady::time_point start)
{
    return std::chrono::duration<double, std::milli>(Steady::now() - start).count();
}

double processor_milliseconds()
{
    return static_cast<double>(std::clock()) * 1000 / CLOCKS_PER_SEC;
}

/// A row for each line of the item list, no two alike.
class ManyRows final : public TableSource {
public:
    ManyRows(std::vector<Field> fields, size_t rows) : fields_(std::move(fields)), rows_(rows)
    {
        row_.resize(fields_.size());
    }
    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override
    {
        if (at_ == rows_) return false;
        ++at_;
        for (size_t field = 0; field < fields_.size(); ++field) {
            if (fields_[field].type == Value::Type::Text) {
                row_[field] = fields_[field].name.substr(0, 8) + " " + std::to_string(at_ * 7919 % 1'000'003);
            }
        }
        return true;
    }
    [[nodiscard]] const Value& cell(size_t field) const override { return row_[field]; }
    void rewind() override { at_ = 0; }

private:
    std::vector<Field> fields_;
    std::vector<Value> row_;
    size_t rows_;
    size_t at_ = 0;
};

/// When the pages are painted for the first time.
class FirstPaint final : public QObject {
public:
    explicit FirstPaint(Steady::time_point start) : start_(start) { qApp->installEventFilter(this); }
    double after = -1;
    double of_processor = -1;
    QAbstractScrollArea* area = nullptr;

private:
    bool eventFilter(QObject* target, QEvent* event) override
    {
        if (event->type() != QEvent::Paint || painted_ || target->parent() == nullptr) return false;
        auto* around = qobject_cast<QAbstractScrollArea*>(target->parent());
        if (around == nullptr || around->objectName() != "caxrViewer") return false;
        painted_ = true;
        area = around;
        target->event(event);
        after = milliseconds_since(start_);
        of_processor = processor_milliseconds() - processor_at_start_;
        return true;
    }

    Steady::time_point start_;
    double processor_at_start_ = processor_milliseconds();
    bool painted_ = false;
};

long memory_of(const char* key)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(key)) return std::atol(line.c_str() + line.find(':') + 1) / 1024;
    }
    return 0;
}

void scroll(QAbstractScrollArea& area, int steps, const char* how, int step)
{
    std::vector<double> frames;
    auto& bar = *area.verticalScrollBar();
    bar.setValue(0);
    QApplication::processEvents();
    for (int at = 0; at < steps; ++at) {
        const auto start = Steady::now();
        bar.setValue(bar.value() + step);
        QApplication::processEvents();
        frames.push_back(milliseconds_since(start));
    }
    std::ranges::sort(frames);
    std::printf("%s: %d frames, median %.1f ms, 99 of 100 below %.1f ms, longest %.1f ms\n", how, steps,
                frames[frames.size() / 2], frames[frames.size() * 99 / 100], frames.back());
}

}  // namespace

int main(int count, char** arguments)
{
    // Among other benchmarks, a filter of theirs that does not name this one passes it over.
    const std::string_view first_word = count > 1 ? arguments[1] : "";
    const bool is_filter = first_word.starts_with("--");
    if (is_filter && first_word.find("windows") == std::string_view::npos) return 0;
    if (is_filter) count = 1;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const size_t pages = count > 1 ? std::stoul(arguments[1]) : 10'000;
    const int steps = count > 2 ? std::stoi(arguments[2]) : 1'000;
    const fs::path folder = fs::path(VELORA_BENCH_SCRATCH) / "windows";
    fs::remove_all(folder);
    fs::create_directories(folder.parent_path());
    const fs::path program = fs::canonical("/proc/self/exe");
    std::ostringstream out;
    const Surroundings around{out, out, [](const char*) { return std::string(); }, program, false};
    const std::vector<std::string> init{"init", folder.string(), "--quiet"};
    run_command_line(init, around);
    CommonOptions options;
    options.folder = folder.string();
    options.settings = (folder / "settings.ini").string();
    Host host(options, around);
    auto& windows = host.windows();
    const auto report = host.engine().OpenReport((folder / "Reports" / "Item List.rpt").string());
    constexpr size_t kRowsOfTwoPages = 19;
    report->SetDataSource(std::make_shared<ManyRows>(report->fields(), pages * kRowsOfTwoPages / 2));

    std::printf("before: %ld MB\n", memory_of("VmRSS"));
    const auto start = Steady::now();
    FirstPaint first(start);
    const auto view = report->View();
    std::printf(
        "%zu pages: first on the screen after %.0f ms (%.0f ms of processor time), the last laid out after %.0f ms\n",
        view->page_count(), first.after, first.of_processor, milliseconds_since(start));
    if (view->page_count() < pages * 9 / 10 || view->page_count() > pages * 11 / 10) {
        std::fputs("These are not the pages that were asked for: the rows of a page are others now.\n", stderr);
        return 1;
    }
    windows.user().show_pages(view, "bench");
    QApplication::processEvents();
    std::printf("laid out: %ld MB, most %ld MB\n", memory_of("VmRSS"), memory_of("VmHWM"));
    if (first.area == nullptr) return 1;
    scroll(*first.area, steps, "page by page", first.area->verticalScrollBar()->pageStep());
    scroll(*first.area, steps, "by the wheel", 120);
    std::printf("scrolled: %ld MB, most %ld MB\n", memory_of("VmRSS"), memory_of("VmHWM"));
    fs::remove_all(folder);
    return 0;
}
