#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/fill/book/page_book.h"
#include "engine/fill/rows/rows.h"
#include "engine/text/measurer.h"

namespace velora::engine {

class ChartFeed;
class Images;
class RowStore;

/// Runs the query of a definition with the values of its parameters, which it asks for by name; none for an unknown
/// one.
using ParameterLookUp = std::function<std::optional<Value>(std::string_view name)>;
using QueryRunner =
    std::function<std::shared_ptr<TableSource>(const model::Definition& definition, const ParameterLookUp& value_of)>;

/// The subreports of a run whose names the rows or the parameters gave, each opened once.
struct LateReports {
    std::map<std::pair<const NestedPlan*, std::string>, std::shared_ptr<const NestedPlan>> opened;
};

/// What is known of the outermost report when all of it is filled.
struct MasterReport {
    uint64_t pages = 0;
};

/// What the parts of a report share while it is filled.
struct Run {
    const ReportPlan& plan;
    Rows& rows;
    Measurer& measurer;
    Document& document;
    PageBook& book;
    Images& images;
    std::function<void(const std::string&)> warn;
    bool wants_values = false;
    bool ignore_pagination = false;
    std::vector<std::shared_ptr<ChartFeed>> charts = {};
    const RowStore* store = nullptr;                ///< the report's rows, when reports inside it read them too
    std::shared_ptr<void> (*fill)(Run&) = nullptr;  ///< lays a run out on pages; gives what its texts lean on
    const QueryRunner* run_query = nullptr;         ///< for the queries of reports inside this one
    std::shared_ptr<LateReports> late = {};         ///< of the outermost report, like what comes next
    std::shared_ptr<MasterReport> master = {};
    bool is_inside = false;                ///< of another report
    std::vector<int>* row_ends = nullptr;  ///< collects where bands end, for a report inside a report

    // What the layout has reached; breaks ask for it and set it.
    int column = 0;
    bool first_page_band = true;     ///< nothing but headers is on the page yet
    bool first_column_band = true;   ///< the same for the column
    bool anything_to_print = false;  ///< an element of the band that is being prepared prints
    bool overflow_allowed = true;    ///< the band that is being prepared may go on elsewhere
    uint64_t progress = 0;           ///< counts parts that were printed for the first time, and pieces of text

    [[nodiscard]] const Environment& at(Moment moment) const { return rows.at(moment); }
    void tell(const std::string& warning) const
    {
        if (warn) warn(warning);
    }
};

/// Where printed elements go.
struct Emission {
    PageBook& book;
    std::vector<Element>* elements = nullptr;
    int x = 0;
    int y = 0;
    std::vector<uint32_t> path;  ///< indices of the frames around
    int width = 0;               ///< right edge of what was printed
    const void* band = nullptr;
};

}  // namespace velora::engine
