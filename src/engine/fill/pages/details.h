#pragma once

#include "engine/fill/pages/flow.h"

namespace velora::engine {

/// Prints the detail bands of a row: below each other, or (horizontal order) beside those of the row before.
class Details {
public:
    Details(Run& run, Bands& bands, PageSpace& space, BandPlacer& placer, PageFrame& frame, Flow& flow,
            Keeping& keeping);

    /// Counts the row and prints it.
    void print();

private:
    /// The details that stand beside each other.
    struct Line {
        uint64_t page = 0;
        int end_x = -1, end_y = -1;  ///< where the last one ended; -1 on a new page
        int top = 0;
        int bottom = 0;  ///< the lowest one's end
    };

    void count();
    void step_across();
    void note_page();
    void leave_room();
    void print_bands();
    void print_band(Band& band, bool is_first);
    [[nodiscard]] int room_for(const Band& band) const;

    Run& run_;
    Bands& bands_;
    PageSpace& space_;
    BandPlacer& placer_;
    PageFrame& frame_;
    Flow& flow_;
    Keeping& keeping_;
    Line line_;
};

}  // namespace velora::engine
