#pragma once

#include <memory>
#include <vector>

#include "engine/fill/pages/band.h"
#include "engine/fill/pages/groups.h"

namespace velora::engine {

/// All bands of a report.
struct Bands {
    explicit Bands(Run& run);

    /// A page or column begins: each band has not been printed on it yet.
    void new_page_or_column();
    /// The same for a group.
    void new_group(size_t group);

    Band background, title, page_header, column_header, column_footer, page_footer, last_page_footer, summary, no_data;
    std::vector<std::unique_ptr<Band>> details;
    Groups groups;

private:
    template <class Action>
    void each_but_background(Action action);
};

}  // namespace velora::engine
