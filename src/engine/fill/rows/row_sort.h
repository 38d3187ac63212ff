#pragma once

#include <optional>
#include <vector>

#include "engine/expression/text_order.h"
#include "engine/fill/rows/moments.h"
#include "engine/fill/rows/variables.h"

namespace velora::engine {

/// Puts rows into the order of a report's sort fields. Variables among these are worked out over the rows as they came,
/// with the groups that these make.
class RowSort {
public:
    RowSort(const ReportPlan& plan, const MomentEnvironment::Shared& shared);

    [[nodiscard]] bool needed() const { return !keys_.empty(); }
    void add(const std::vector<Value>& fields);
    /// The rows in order; those that are equal keep the order in which they came, and nothing comes before something.
    [[nodiscard]] std::vector<std::vector<Value>> sorted();

private:
    struct Key {
        bool of_variable;
        size_t slot;
        bool descending;
    };
    struct Row {
        std::vector<Value> keys;
        std::vector<Value> fields;
    };

    void find_keys();
    void count_row();
    [[nodiscard]] bool comes_before(const Row& left, const Row& right) const;

    const ReportPlan& plan_;
    std::vector<Key> keys_;
    bool counts_ = false;  ///< whether a key is a variable
    std::optional<TextOrder> texts_;
    std::vector<Row> rows_;
    std::vector<Value> fields_, old_fields_;
    Variables variables_;
    MomentEnvironment now_, old_, estimated_;
    std::vector<bool> changed_;  ///< by group, at the row that is counted
};

}  // namespace velora::engine
