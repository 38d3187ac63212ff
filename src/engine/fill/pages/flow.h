#pragma once

#include "engine/fill/pages/keeping.h"
#include "engine/fill/pages/page_frame.h"

namespace velora::engine {

/// Bands that go over pages and columns, and the breaks between those.
class Flow {
public:
    Flow(Run& run, Bands& bands, PageSpace& space, BandPlacer& placer, ReportParts& parts, PageFrame& frame,
         Keeping& keeping);

    /// The title and the band for no data: they stand between the margins and go over whole pages.
    void place_on_pages(Band& band);
    /// Group headers and footers and the details of vertical order: they go over columns.
    /// @param recalculate  the row is counted anew when the band moves to another page or column
    void place_in_columns(Band& band, Moment moment, bool recalculate = false);

    /// Breaks until there is as much room, or until no break can help.
    void make_room(int wanted);
    /// @param before, after  the row whose values the footers and the headers take
    /// @param reprint        group headers that ask for it are printed again
    void page_break(bool reset_number, Moment before, Moment after, bool reprint);
    void column_break(Moment before, Moment after);
    /// The row that the page or column has been printed from, as a break in front of the row that is there sees it.
    [[nodiscard]] Moment before_page_break() const { return placer_.is_row_on_page() ? Moment::Now : Moment::Old; }
    [[nodiscard]] Moment before_column_break() const { return placer_.is_row_on_column() ? Moment::Now : Moment::Old; }

private:
    struct Leaving {
        Keeping::Leaving kept;
        std::optional<model::FooterPosition> footer_position;  ///< of a group footer that goes over
    };

    [[nodiscard]] Moment before_break() const;
    Leaving note_end();
    void leave(Leaving& leaving);
    void arrive(Leaving&& leaving);
    void reprint_headers(Moment moment, bool is_new_page);
    void reprint_header(Group& group, Moment moment);

    Run& run_;
    Bands& bands_;
    PageSpace& space_;
    BandPlacer& placer_;
    ReportParts& parts_;
    PageFrame& frame_;
    Keeping& keeping_;
    bool is_breaking_page_ = false;
    bool is_reprinting_ = false;
};

}  // namespace velora::engine
