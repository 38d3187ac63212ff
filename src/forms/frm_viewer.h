#pragma once

#include <memory>
#include <string>
#include <vector>

#include "forms/controls/buttons.h"
#include "forms/controls/form.h"
#include "forms/controls/page_area.h"
#include "forms/controls/text_box.h"
#include "platform/report_engine.h"
#include "session/session_state.h"

namespace velora::forms {

class FormDesk;

/// Shows finished pages. It holds them alone: what the report was made from may be gone.
class frmViewer final : public Form {
public:
    /// @param number  which viewer of the program it is
    frmViewer(FormDesk& desk, int number, std::shared_ptr<PageView> pages, const std::string& caption);
    void load() override;
    void unloaded() override;
    [[nodiscard]] Control* first_focus() override { return &caxrViewer; }

    [[nodiscard]] const PageView* pages() const { return pages_.get(); }
    [[nodiscard]] size_t page() const { return page_; }  ///< from 1
    [[nodiscard]] size_t page_count() const { return pages_ ? pages_->page_count() : 0; }
    [[nodiscard]] int zoom() const { return zoom_; }  ///< in percent
    [[nodiscard]] const std::string& searched() const { return searched_; }
    [[nodiscard]] size_t matches() const { return matches_; }
    [[nodiscard]] const std::vector<OutlineEntry>& tree() const { return tree_; }
    [[nodiscard]] const std::string& tree_label() const { return tree_label_; }

    void go_to(size_t page);
    void set_zoom(double percent);
    /// Pages are still being made.
    void expect_more();
    /// There are more pages now, or all of them.
    void pages_grew(bool all_there);
    /// The page in sight, and of how many.
    [[nodiscard]] std::string position() const;
    /// The part of the window that pages are fitted into, in points. As long as no window says otherwise it is that of
    /// the form as designed.
    void set_view_size(double width, double height) { view_ = {width, height}; }
    /// What a person has marked on the pages, to be copied.
    std::function<std::string()> marked_text;
    Notice<> moved;  ///< another page, zoom or search

    PageArea caxrViewer{*this, "caxrViewer"};
    ToolButton first{*this, "viewer/first"};
    ToolButton previous{*this, "viewer/previous"};
    TextBox page_box{*this, "viewer/page"};
    ToolButton next{*this, "viewer/next"};
    ToolButton last{*this, "viewer/last"};
    ToolButton zoom_out{*this, "viewer/zoom-out"};
    TextBox zoom_box{*this, "viewer/zoom"};
    ToolButton zoom_in{*this, "viewer/zoom-in"};
    ToolButton fit_width{*this, "viewer/fit-width"};
    ToolButton fit_page{*this, "viewer/fit-page"};
    TextBox search_box{*this, "viewer/search"};
    ToolButton find_previous{*this, "viewer/find-previous"};
    ToolButton find_next{*this, "viewer/find-next"};
    ToolButton print{*this, "viewer/print"};
    ToolButton export_pages{*this, "viewer/export"};
    ToolButton copy{*this, "viewer/copy"};

private:
    void wire();
    void wire_boxes();
    void act(ToolButton& button, const char* caption, const char* tip, std::function<void()> action);
    void refresh();
    void step_zoom(int direction);
    void fit(bool whole_page);
    void search(const std::string& text);
    void find(bool forward);
    void count_matches();
    void print_pages();
    void export_to_file();

    FormDesk& desk_;
    SessionState& state_;
    std::shared_ptr<PageView> pages_;
    size_t page_ = 1;
    int zoom_ = 100;
    PageView::Size view_;
    std::string searched_;
    struct PageMatches {
        size_t count = 0;
        uint32_t revision = 0;  ///< of the page when they were counted
    };
    std::vector<PageMatches> found_on_;  ///< for each page
    size_t matches_ = 0;
    std::vector<OutlineEntry> tree_;
    std::string tree_label_ = "Contents";
    bool is_growing_ = false;
    bool refreshing_ = false;
};

}  // namespace velora::forms
