#pragma once

#include <optional>

#include "engine/fill/pages/groups.h"
#include "engine/fill/pages/page_space.h"

namespace velora::engine {

/// What has to stay together when a page or column ends: groups that are not to be parted, and a row's details with
/// the group footers that must not be left alone.
class Keeping {
public:
    /// What a break takes along.
    struct Leaving {
        std::optional<size_t> group;         ///< that is kept together
        std::optional<Range> first, second;  ///< in the order in which they are put down again
        PageBook::Taken first_elements, second_elements;

        /// Where the lowest of what stays ends; none when nothing of the last column leaves.
        [[nodiscard]] std::optional<int> top(bool runs_across) const;
    };

    Keeping(Run& run, Groups& groups, PageSpace& space) : run_(run), book_(run.book), groups_(groups), space_(space) {}

    /// Whether a band that goes over has to go as a whole for the sake of something that is kept.
    [[nodiscard]] bool holds_anything() const { return orphan_details_ || groups_.any_holds_together(); }
    /// The page or column ends here, and with it everything that is being collected.
    void note_end();
    /// Finds out what leaves with the break.
    [[nodiscard]] Leaving leaving() const;
    void take(Leaving& leaving);
    /// Puts down what left at the place that is reached. @return whether there was anything
    bool arrive(Leaving&& leaving);

    // A group's headers.
    void begin_group(Group& group);
    /// A header has been printed. @param before  the group's range before that
    void grow_group(Group& group, bool was_held);

    // The last row's details.
    void begin_details();
    [[nodiscard]] bool has_details() const { return details_.has_value(); }
    void grow_details();
    void forget_details() { details_.reset(); }

    // Group footers, from the innermost group to the outermost.
    void begin_footers(bool all);
    void pass_group(size_t group);
    void begin_footer(size_t group);
    void collect_footer();
    void end_footers();

private:
    [[nodiscard]] std::optional<size_t> group_to_move() const;
    [[nodiscard]] Range range_here() const { return book_.range(space_.column(), space_.y()); }
    [[nodiscard]] bool is_here(const Range& range) const;
    void grow(std::optional<Range>& range);
    void put(PageBook::Taken&& taken, const Range& range);

    Run& run_;
    PageBook& book_;
    Groups& groups_;
    PageSpace& space_;
    std::optional<Range> details_;
    std::optional<Range> orphan_details_;  ///< the details that footers must not be parted from
    std::optional<Range> orphan_footers_;  ///< those footers
    std::optional<size_t> orphan_level_;   ///< innermost group whose footer is kept with a detail
};

}  // namespace velora::engine
