#pragma once

#include <optional>

#include "engine/fill/pages/band_placer.h"
#include "engine/fill/pages/bands.h"
#include "engine/fill/pages/bottom_footers.h"

namespace velora::engine {

/// What frames the rows of a page: its background, and the headers and footers of page and columns. In vertical order
/// a column has them when it begins and ends, in horizontal order all columns at once.
class PageFrame {
public:
    PageFrame(Run& run, Bands& bands, PageSpace& space, BandPlacer& placer, ReportParts& parts);

    /// The first page, which has its number already.
    void begin_first_page();
    void begin_page(bool reset_number = false);
    void begin_next_column();

    /// @param may_begin_page  a header that does not fit may go to another page
    void page_header(Moment moment, bool may_begin_page = true);
    void column_headers(Moment moment, bool may_begin_page = true);
    void column_footers(Moment moment);
    void page_footer(Moment moment);
    /// The column footers and the page footer.
    void footers(Moment moment);
    /// From now on the page is the last one, which has a footer of its own.
    void set_last_page();

    /// The group footers that wait for the bottom go there; nothing can follow them.
    void settle_bottom_footers();
    BottomFooters& bottom_footers() { return bottom_footers_; }
    /// What stood above a floating column footer was taken away from `top` on.
    void lift_column_footer(int top);

    // Nothing but headers has been printed since it began; a group that asks for a new one has it.
    [[nodiscard]] bool is_page_fresh() const { return is_page_fresh_; }
    [[nodiscard]] bool is_column_fresh() const { return is_column_fresh_; }
    void note_body();

private:
    void background();
    void column_header_down(Moment moment, bool may_begin_page);
    void column_headers_across(Moment moment, bool may_begin_page);
    void column_footer_down(Moment moment);
    void column_footers_across(Moment moment);
    void leave_page_for_header(Moment moment);
    [[nodiscard]] bool floats_column_footer() const;

    Run& run_;
    Bands& bands_;
    PageSpace& space_;
    BandPlacer& placer_;
    ReportParts& parts_;
    BottomFooters bottom_footers_;
    std::optional<Range> floating_footer_;
    bool is_page_fresh_ = false;
    bool is_column_fresh_ = false;
    bool is_last_page_ = false;
};

}  // namespace velora::engine
