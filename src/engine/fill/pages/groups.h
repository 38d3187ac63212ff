#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "engine/fill/pages/band.h"

namespace velora::engine {

/// A group of the report while it is filled.
struct Group {
    Group(Run& run, const GroupPlan& plan);

    const GroupPlan& plan;
    const model::Group& source;
    std::vector<std::unique_ptr<Band>> headers, footers;
    bool header_printed = false;
    bool footer_printed = true;
    int details = 0;                     ///< printed since the group began
    std::optional<Range> keep_together;  ///< what has to move with the group when the page ends

    void begin();
    /// @param without  details that are about to be taken away
    [[nodiscard]] bool has_min_details(int without = 0) const;
    [[nodiscard]] bool holds_together() const { return keep_together && (source.keep_together || !has_min_details()); }
};

/// The groups from the outermost to the innermost, and which of them the row begins anew.
class Groups {
public:
    explicit Groups(Run& run);

    /// Compares the row with the one before.
    void find_changes() { run_.rows.find_group_changes(changed_); }
    [[nodiscard]] bool has_changed(size_t group) const { return changed_[group]; }
    [[nodiscard]] const std::vector<bool>& changed() const { return changed_; }
    [[nodiscard]] bool any_holds_together() const;

    [[nodiscard]] bool empty() const { return groups_.empty(); }
    [[nodiscard]] size_t size() const { return groups_.size(); }
    Group& operator[](size_t index) { return groups_[index]; }
    [[nodiscard]] const Group& operator[](size_t index) const { return groups_[index]; }
    [[nodiscard]] auto begin() { return groups_.begin(); }
    [[nodiscard]] auto end() { return groups_.end(); }

private:
    Run& run_;
    std::vector<Group> groups_;
    std::vector<bool> changed_;
};

}  // namespace velora::engine
