#include "adapters/cups/job_options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "adapters/cups/cups_library.h"
#include "values/fault.h"
#include "values/utf8.h"

namespace velora::cups {
namespace {

constexpr double kHundredthsOfMillimetre = 2540.0 / 72;  // in a point
constexpr size_t kLongestName = 255;
constexpr int kMostCopies = 9999;

constexpr int kAnyTray = 7;
constexpr int kUpright = 1;
constexpr int kAcross = 2;

struct Tray {
    int number;
    const char* name;
};
/// The numbers of paper sources that reports set, by the keywords of printers.
constexpr auto kTrays = std::to_array<Tray>({
    {1, "top"},
    {2, "bottom"},
    {3, "middle"},
    {4, "manual"},
    {5, "envelope"},
    {6, "envelope"},
    {kAnyTray, "auto"},
    {11, "large-capacity"},
    {14, "main"},
});

int length(double points)
{
    return static_cast<int>(std::lround(points * kHundredthsOfMillimetre));
}

bool is_across(const PrintJob& job)
{
    return job.orientation == kAcross || (job.orientation != kUpright && job.page_width > job.page_height);
}

std::string tray_of(const PrintJob& job)
{
    const auto tray = std::ranges::find(kTrays, job.paper_source, &Tray::number);
    return tray == kTrays.end() ? "" : tray->name;
}

/// Paper is named upright, whichever way the page lies on it. Null where the printer is to decide.
const pwg_media_t* sheet_of(const PrintJob& job)
{
    if (job.page_width <= 0 || job.page_height <= 0) return nullptr;
    const auto [narrow, wide] = std::minmax({length(job.page_width), length(job.page_height)});
    return CupsLibrary::loaded().media_for_size(narrow, wide);
}

/// As printers take paper.
std::string media_collection(const PrintJob& job)
{
    std::string text;
    if (const pwg_media_t* sheet = sheet_of(job)) {
        text = "media-size={x-dimension=" + std::to_string(sheet->width) +
               " y-dimension=" + std::to_string(sheet->length) + "}";
    }
    const std::string tray = tray_of(job);
    if (!tray.empty()) text += (text.empty() ? "" : " ") + ("media-source=" + tray);
    return text.empty() ? "" : "{" + text + "}";
}

/// As queues of a scheduler take paper: sheet and tray by their names.
std::string media_names(const PrintJob& job)
{
    const pwg_media_t* sheet = sheet_of(job);
    const std::string name = sheet != nullptr ? sheet->pwg : "";
    const std::string tray = job.paper_source == kAnyTray ? "" : tray_of(job);
    return name.empty() || tray.empty() ? name + tray : name + "," + tray;
}

[[noreturn]] void refuse_pages(const std::string& pages)
{
    throw Fault(fault::kPrinter, "\"" + pages + "\" are no pages, which are written as 1-3,7.");
}

/// "1-3, 7,9-" as "1-3,7,9-": rising and from 1 on.
std::string page_ranges(const std::string& pages)
{
    std::string ranges;
    int latest = 0;
    std::string_view rest = pages;
    const auto skip_blanks = [&] { rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size())); };
    const auto number = [&] {
        skip_blanks();
        int value = 0;
        const auto read = std::from_chars(rest.data(), rest.data() + rest.size(), value);
        if (read.ec != std::errc()) refuse_pages(pages);
        rest.remove_prefix(static_cast<size_t>(read.ptr - rest.data()));
        skip_blanks();
        return value;
    };
    while (true) {
        const int from = number();
        const bool is_range = rest.starts_with('-');
        if (is_range) rest.remove_prefix(1);
        const int to = is_range ? number() : from;
        if (from <= latest || to < from) refuse_pages(pages);
        latest = to;
        ranges += (ranges.empty() ? "" : ",") + std::to_string(from) + "-" + std::to_string(to);
        if (rest.empty()) return ranges;
        if (!rest.starts_with(',')) refuse_pages(pages);
        rest.remove_prefix(1);
    }
}

}  // namespace

std::vector<std::pair<std::string, std::string>> job_options(const PrintJob& job, Taker taker)
{
    if (job.copies < 1 || job.copies > kMostCopies) {
        throw Fault(fault::kPrinter, "There can be 1 to 9999 copies, not " + std::to_string(job.copies) + ".");
    }
    std::vector<std::pair<std::string, std::string>> options{{"copies", std::to_string(job.copies)}};
    if (is_across(job)) options.emplace_back("orientation-requested", "4");
    if (job.orientation == kUpright) options.emplace_back("orientation-requested", "3");
    const bool by_name = taker == Taker::Scheduler;
    if (const std::string media = by_name ? media_names(job) : media_collection(job); !media.empty()) {
        options.emplace_back(by_name ? "media" : "media-col", media);
    }
    if (!job.pages.empty()) options.emplace_back("page-ranges", page_ranges(job.pages));
    return options;
}

std::string job_name(const std::string& title)
{
    std::string name;
    for (const auto [character, size, at] : Utf8Characters(title))
        append_utf8(name, character < ' ' ? U' ' : character);
    return name.empty() ? "Report" : std::string(cut_to_bytes(name, kLongestName));
}

}  // namespace velora::cups
