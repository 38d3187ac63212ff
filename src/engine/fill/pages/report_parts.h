#pragma once

#include "engine/fill/pages/groups.h"

namespace velora::engine {

/// The parts of a report, which are its rows' groups, columns and pages, as they begin and end: what waited for the end
/// gets its value, and variables and charts begin anew.
class ReportParts {
public:
    ReportParts(Run& run, const Groups& groups) : run_(run), groups_(groups) {}

    void begin(model::Moment part);
    /// The groups that the new row has ended.
    void end_groups(Moment moment);
    void end_column(Moment moment);
    /// @param is_last  of the report, which ends all groups as well
    void end_page(Moment moment, bool is_last = false);
    void end_band(const Band& band, Moment moment);
    void end_report();

private:
    void resolve(model::EvaluationTime time, Moment moment);
    void resolve_groups(Moment moment, bool all);
    void resolve_page(Moment moment, bool is_last);

    Run& run_;
    const Groups& groups_;
};

}  // namespace velora::engine
