#pragma once

#include <string>
#include <vector>

#include "engine/fill/rows/group_changes.h"
#include "engine/fill/rows/moments.h"
#include "engine/fill/rows/variables.h"
#include "values/table_source.h"

namespace velora::engine {

using ParameterValues = std::map<std::string, Value, std::less<>>;

/// The rows of a run in the order that they are printed in, with the row before and the variables.
class Rows {
public:
    /// @param warn  told of fields that the table lacks, and of values that are none of their field's class
    Rows(const ReportPlan& plan, TableSource& table, const ParameterValues& parameters,
         MomentEnvironment::Shared surroundings, const std::function<void(const std::string&)>& warn);

    /// Goes to the next row that the filter lets through.
    bool next();

    /// The groups that end before the row that `next` went to.
    void find_group_changes(std::vector<bool>& changed)
    {
        engine::find_group_changes(plan_, variables_, old_, estimated_, changed);
    }

    [[nodiscard]] const Environment& at(Moment moment) const
    {
        return moment == Moment::Now ? now_ : (moment == Moment::Old ? old_ : estimated_);
    }
    Variables& variables() { return variables_; }
    [[nodiscard]] const std::vector<Value>& fields() const { return fields_; }
    [[nodiscard]] const Value& parameter(size_t slot) const { return shared_.parameters[slot]; }
    [[nodiscard]] const MomentEnvironment::Shared& shared() const { return shared_; }

    void calculate() { variables_.calculate(now_); }
    void recalculate();
    void estimate() { variables_.estimate(estimated_); }
    void begin(model::Moment part, const std::vector<bool>& changed) { variables_.begin(part, changed, now_); }

private:
    void bind(TableSource& table);
    void fill_parameters(const ParameterValues& given);
    void sort();
    bool advance();
    void take_row();
    void tell_lost(size_t field, const Value& cell);

    const ReportPlan& plan_;
    TableSource& table_;
    MomentEnvironment::Shared shared_;
    std::vector<int> columns_;  ///< by field; -1 when the table lacks it
    std::function<void(const std::string&)> warn_;
    std::vector<bool> told_;  ///< by field: of a value that is none of its class
    std::vector<Value> fields_, old_fields_;
    Variables variables_;
    MomentEnvironment now_, old_, estimated_;
    std::vector<std::vector<Value>> sorted_;  ///< all rows, when they had to be sorted
    size_t next_sorted_ = 0;
    int64_t left_ = -1;  ///< rows still to be read, negative for no limit
};

}  // namespace velora::engine
