#pragma once

#include "engine/fill/pages/flow.h"

namespace velora::engine {

/// Prints the headers and footers of the groups where the rows begin and end them.
class GroupBands {
public:
    GroupBands(Run& run, Bands& bands, PageSpace& space, PageFrame& frame, Flow& flow, Keeping& keeping);

    /// @param all  of all groups, else of those that the row begins anew
    void headers(bool all);
    void footers(bool all);

private:
    void header(size_t group);
    void break_before(const Group& group);
    void begin(size_t group);
    void header_band(Group& group, Band& band);
    void footer(size_t group, Moment moment);
    void footer_band(size_t group, Band& band, Moment moment);
    void note_band();

    Run& run_;
    Bands& bands_;
    PageSpace& space_;
    PageFrame& frame_;
    Flow& flow_;
    Keeping& keeping_;
};

}  // namespace velora::engine
