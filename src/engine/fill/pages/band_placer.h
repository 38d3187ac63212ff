#pragma once

#include <functional>

#include "engine/fill/pages/page_space.h"
#include "engine/fill/pages/report_parts.h"

namespace velora::engine {

/// Where a band goes on that does not fit.
struct Onward {
    std::function<void()> next;          ///< goes to the next page or column
    std::function<int()> room;           ///< that is there
    std::function<bool()> has_all_room;  ///< no other place has more
    int patience;                        ///< places that print nothing, before the rest is cut
};

/// Puts a band at the place that the page has reached.
class BandPlacer {
public:
    BandPlacer(Run& run, PageSpace& space, ReportParts& parts) : run_(run), space_(space), parts_(parts) {}

    /// Prints what was prepared. @return whether anything of it was not printed before
    bool place(Band& band, Moment moment);
    /// Prints the band behind the others; the place stays.
    void place_behind(Band& band, Moment moment);
    /// Prints all of the band in its own height.
    /// @param may_shrink  the place moves by what was used, else by the band's height
    void place_fixed(Band& band, Moment moment, bool may_shrink = true);
    /// Prints the band when all of it fits. @return whether it did
    bool place_whole(Band& band, Moment moment);
    /// Prints a band that fits nowhere; what reaches below the page is not seen.
    void place_cut(Band& band, Moment moment);
    /// Prints what is left of a band on the places that follow.
    /// @param has_progress  what `place` said of its beginning
    void place_rest(Band& band, Moment moment, bool has_progress, const Onward& onward);

    /// Prepares the band once more after a break: the values may be others, of the page or of the row.
    void prepare_again(Band& band, Moment moment, int room);
    /// No other place has more room, and the band prints nothing in it: it is printed all the same.
    void cut_if_hopeless(Band& band, bool has_all_room);
    void warn_cut(const Band& band);

    // Whether the row that is there has been printed from.
    void begin_row();
    void begin_column() { is_row_on_column_ = false; }
    [[nodiscard]] bool is_row_on_page() const { return is_row_on_page_; }
    [[nodiscard]] bool is_row_on_column() const { return is_row_on_column_; }

private:
    void note_row(Moment moment);

    Run& run_;
    PageSpace& space_;
    ReportParts& parts_;
    bool is_row_on_page_ = false;
    bool is_row_on_column_ = false;
};

}  // namespace velora::engine
