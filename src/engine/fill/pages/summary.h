#pragma once

#include "engine/fill/pages/flow.h"

namespace velora::engine {

/// Prints the summary behind the last row, and the footers of the last pages. Where it stands depends on whether it
/// fits, whether the last page has a footer of its own, and whether the pages of the summary have the page bands.
class Summary {
public:
    Summary(Run& run, Bands& bands, PageSpace& space, BandPlacer& placer, ReportParts& parts, PageFrame& frame,
            Flow& flow);
    void print();

private:
    // summary.cpp: pages of the summary have the page bands, or the last page has no footer of its own
    void without_last_footer();
    void with_page_bands();
    // summary_alone.cpp: the last page has a footer of its own, and pages of the summary alone no bands
    void alone();
    void above_last_footer();
    void before_last_page();
    void behind_last_page();
    void on_last_page();

    bool begin_here();
    void prepare_here();
    void begin_on_new_page();
    void move_to_next_page();
    void next_page(bool is_last = true);
    void rest();
    void last_page_bands();
    [[nodiscard]] bool decides() { return band_.decide(Moment::Now); }
    [[nodiscard]] bool in_first_column() const { return space_.runs_across() || space_.column() == 0; }
    [[nodiscard]] bool fits(int end) const { return band_.break_height() <= end - space_.y(); }
    [[nodiscard]] bool fits_last_footer() const { return space_.y() <= space_.last_column_end(); }
    [[nodiscard]] int room() const;

    const model::Definition& definition_;
    Bands& bands_;
    Band& band_;
    PageSpace& space_;
    BandPlacer& placer_;
    ReportParts& parts_;
    PageFrame& frame_;
    Flow& flow_;
};

}  // namespace velora::engine
