#pragma once

#include "engine/fill/pages/details.h"
#include "engine/fill/pages/group_bands.h"
#include "engine/fill/pages/summary.h"

namespace velora::engine {

/// Fills a report: the course from the first row to the last page. What stands where is the matter of its members,
/// each of which leans on those above it only.
class Filler {
public:
    explicit Filler(Run& run);
    void fill();

private:
    void begin_body();
    void title();
    bool next_row();
    void no_data();

    Run& run_;
    Bands bands_;        ///< what there is to print
    ReportParts parts_;  ///< values where a part of the report ends
    PageSpace space_;    ///< where the page has got to
    BandPlacer placer_;  ///< one band at that place
    PageFrame frame_;    ///< headers and footers of pages and columns
    Keeping keeping_;    ///< what a break may not part
    Flow flow_;          ///< bands over pages and columns, and breaks
    GroupBands groups_;  ///< headers and footers of groups
    Details details_;    ///< the rows
    Summary summary_;    ///< the end
};

}  // namespace velora::engine
