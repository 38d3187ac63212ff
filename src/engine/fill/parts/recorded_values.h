#pragma once

#include <vector>

#include "engine/fill/parts/part.h"

namespace velora::engine {

/// The values for an element whose variables are each taken at their own time: kept until all of them are there.
class RecordedValues {
public:
    RecordedValues(const Run& run, Moment moment, size_t times);

    /// Takes the variables that are due now. @return whether all are there
    bool record(const Run& run, const Awaited& time, Moment moment);
    /// The page that the element stands on in the outermost report, and how many there are.
    void take_master(const ReportPlan& plan, uint64_t page, uint64_t pages);
    [[nodiscard]] const Environment& environment() const { return environment_; }

private:
    std::vector<Value> fields_, variables_;
    size_t left_;
    MomentEnvironment environment_;
};

struct RecordedNote {
    std::shared_ptr<RecordedValues> values;
    Awaited time;
};

/// The times at which the variables of an element's expression have their values, without those that are there when
/// the band is printed.
std::vector<Awaited> awaited_times(const ReportPlan& plan, const PartPlan& part, const BandState& band);

}  // namespace velora::engine
