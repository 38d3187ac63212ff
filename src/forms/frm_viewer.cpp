#include "forms/frm_viewer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>

#include "forms/form_desk.h"
#include "forms/page_search.h"
#include "platform/export_formats.h"
#include "session/error_messengers.h"
#include "values/number_text.h"
#include "values/text.h"

namespace velora::forms {

namespace {

// The form as designed, in twips; it matters until a window says how large it is.
constexpr double kWidth = 10395;
constexpr int kHeight = 6450;
constexpr double kTwipsPerPoint = 20;

constexpr uint32_t kNeverCounted = UINT32_MAX;

constexpr int kLeastZoom = 25;
constexpr int kMostZoom = 800;
constexpr auto kZooms = std::to_array<int>({25, 50, 75, 100, 125, 150, 200, 300, 400, 600, 800});

const ExportFormatRecord* format_of(const std::string& path)
{
    const std::string ending = lower_ascii(std::filesystem::path(path).extension().string());
    const auto fits = [&](const ExportFormatRecord& record) {
        return ending == record.extension || ending == "." + std::string(record.name);
    };
    const auto found = std::ranges::find_if(kExportFormats, fits);
    return found == kExportFormats.end() ? nullptr : &*found;
}

}  // namespace

frmViewer::frmViewer(FormDesk& desk, int number, std::shared_ptr<PageView> pages, const std::string& caption)
    : Form("frmViewer " + std::to_string(number)),
      desk_(desk),
      state_(desk.state()),
      pages_(std::move(pages)),
      view_{kWidth / kTwipsPerPoint, kHeight / kTwipsPerPoint}
{
    set_caption(caption);
    set_height(kHeight);
    wire();
}

void frmViewer::act(ToolButton& button, const char* caption, const char* tip, std::function<void()> action)
{
    button.set_caption(caption);
    button.set_tip(tip);
    button.click.handle("caxrViewer_Action", std::move(action));
    toolbar.push_back(&button);
}

void frmViewer::wire()
{
    caxrViewer.set_label("Pages");
    act(first, "First", "First page", [this] { go_to(1); });
    act(previous, "Previous", "Previous page", [this] { go_to(page_ - 1); });
    act(next, "Next", "Next page", [this] { go_to(page_ + 1); });
    act(last, "Last", "Last page", [this] { go_to(page_count()); });
    act(zoom_out, "Smaller", "Smaller", [this] { step_zoom(-1); });
    act(zoom_in, "Larger", "Larger", [this] { step_zoom(1); });
    act(fit_width, "Width", "Fit the width of the page", [this] { fit(false); });
    act(fit_page, "Page", "Fit the whole page", [this] { fit(true); });
    act(find_previous, "Find previous", "Find the text further up", [this] { find(false); });
    act(find_next, "Find next", "Find the text further down", [this] { find(true); });
    act(print, "Print", "Print", [this] { print_pages(); });
    act(export_pages, "Export", "Export to a file", [this] { export_to_file(); });
    act(copy, "Copy", "Copy the marked text", [this] {
        if (marked_text && state_.ports.user != nullptr) state_.ports.user->copy_text(marked_text());
    });
    print.shortcut = "Ctrl+P";
    export_pages.shortcut = "Ctrl+E";
    find_next.shortcut = "F3";
    find_previous.shortcut = "Shift+F3";
    zoom_in.shortcut = "Ctrl++";
    zoom_out.shortcut = "Ctrl+-";
    wire_boxes();
}

/// A box takes what is typed when Enter is pressed, and gives the focus back to the pages.
void frmViewer::wire_boxes()
{
    const auto typed = [this](TextBox& box, const char* label, std::function<void(const std::string&)> take) {
        box.set_label(label);
        box.on_enter = true;
        box.on_key(std::string(kGiveUpKey), "caxrViewer_LeaveBox", [this] { enter(caxrViewer); });
        box.change.handle("caxrViewer_Typed", [this, &box, take = std::move(take)] {
            if (!refreshing_) take(box.text());
        });
    };
    typed(page_box, "Page", [this](const std::string& text) {
        const double number = leading_number(trimmed(text));
        if (number >= 1) go_to(static_cast<size_t>(std::min(number, static_cast<double>(page_count()))));
        refresh();
    });
    typed(zoom_box, "Zoom", [this](const std::string& text) {
        const double percent = leading_number(trimmed(text));
        if (percent > 0) set_zoom(percent);
        refresh();
    });
    typed(search_box, "Search", [this](const std::string& text) { search(text); });
}

void frmViewer::load()
{
    run("Form_Load", [this] {
        if (pages_) tree_ = pages_->outline();
        refresh();
    });
}

/// The pages of a window that is closed are let go at once.
void frmViewer::unloaded()
{
    pages_.reset();
    tree_.clear();
}

void frmViewer::refresh()
{
    refreshing_ = true;
    page_box.set_text(std::to_string(page_));
    zoom_box.set_text(std::to_string(zoom_) + "%");
    refreshing_ = false;
    moved.tell();
}

void frmViewer::expect_more()
{
    is_growing_ = true;
    print.set_enabled(false);
    export_pages.set_enabled(false);
    moved.tell();
}

void frmViewer::pages_grew(bool all_there)
{
    if (!pages_) return;
    count_matches();
    if (all_there) {
        is_growing_ = false;
        tree_ = pages_->outline();
        print.set_enabled(true);
        export_pages.set_enabled(true);
    }
    moved.tell();
}

std::string frmViewer::position() const
{
    const std::string text = std::to_string(page_) + " / " + std::to_string(page_count());
    return is_growing_ ? text + " so far" : text;
}

void frmViewer::go_to(size_t page)
{
    page_ = std::clamp<size_t>(page, 1, std::max<size_t>(page_count(), 1));
    refresh();
}

void frmViewer::set_zoom(double percent)
{
    zoom_ = static_cast<int>(std::clamp<double>(std::floor(percent), kLeastZoom, kMostZoom));
    refresh();
}

void frmViewer::step_zoom(int direction)
{
    if (direction > 0) {
        const auto larger = std::ranges::upper_bound(kZooms, zoom_);
        return set_zoom(larger == kZooms.end() ? kMostZoom : *larger);
    }
    const auto here = std::ranges::lower_bound(kZooms, zoom_);
    set_zoom(here == kZooms.begin() ? kLeastZoom : *std::prev(here));
}

void frmViewer::fit(bool whole_page)
{
    if (!pages_) return;
    constexpr double kPercent = 100;
    const auto size = pages_->page_size();
    const double across = view_.width / size.width * kPercent;
    set_zoom(whole_page ? std::min(across, view_.height / size.height * kPercent) : across);
}

void frmViewer::search(const std::string& text)
{
    searched_ = text;
    found_on_.clear();
    matches_ = 0;
    count_matches();
    const size_t count = found_on_.size();
    size_t page = page_ - 1;
    while (page < count && found_on_[page].count == 0) ++page;
    if (page < count) go_to(page + 1);
    moved.tell();
}

/// On the pages that came, or changed, since they were counted last.
void frmViewer::count_matches()
{
    if (searched_.empty()) return;
    const auto* painted = dynamic_cast<const PaintedPages*>(pages_.get());
    found_on_.resize(page_count(), {0, kNeverCounted});
    for (size_t page = 0; page < found_on_.size(); ++page) {
        const uint32_t revision = painted != nullptr ? painted->revision(page) : 0;
        PageMatches& found = found_on_[page];
        if (found.revision == revision) continue;
        matches_ -= found.count;
        found = {count_on_page(*pages_, page, searched_), revision};
        matches_ += found.count;
    }
}

/// On to the next page that holds the text, round the end.
void frmViewer::find(bool forward)
{
    if (matches_ == 0) return;
    const size_t count = found_on_.size();
    size_t at = page_ - 1;
    do at = (forward ? at + 1 : at + count - 1) % count;
    while (found_on_[at].count == 0);
    go_to(at + 1);
}

void frmViewer::print_pages()
{
    if (state_.ports.printers == nullptr || !state_.ports.printers->usual()) {
        return tell(state_, {"Printing", "No printer is set up on this machine. Export the report to a file instead.",
                             Icon::Exclamation});
    }
    if (!pages_) return;
    if (const auto wish = desk_.choose_printing(page_)) pages_->PrintOut(*wish);
}

void frmViewer::export_to_file()
{
    if (!pages_ || state_.ports.user == nullptr) return;
    std::string filter;
    for (const auto& record : kExportFormats) {
        filter.append(filter.empty() ? "" : "|").append(record.list_text).append("|*").append(record.extension);
    }
    const auto path = state_.ports.user->choose_target({"Export the report", state_.ports.application_folder, filter});
    if (!path || path->empty()) return;
    const auto* format = format_of(*path);
    if (format == nullptr) {
        return tell(state_, {"Report Export Failure",
                             "The ending of \"" + *path +
                                 "\" is that of no format.\r\nName the file with .pdf, .htm, "
                                 ".xls, .doc, .rtf, .txt or .xml.",
                             Icon::Exclamation});
    }
    pages_->Export(format->format, *path);
}

}  // namespace velora::forms
