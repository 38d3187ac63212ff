#include "engine/fill/pages/groups.h"

#include <algorithm>

namespace velora::engine {

Group::Group(Run& run, const GroupPlan& group_plan) : plan(group_plan), source(*group_plan.group)
{
    for (const auto& band : plan.headers) {
        headers.push_back(std::make_unique<Band>(run, band));
    }
    for (const auto& band : plan.footers) {
        footers.push_back(std::make_unique<Band>(run, band));
    }
}

void Group::begin()
{
    footer_printed = false;
    details = 0;
}

bool Group::has_min_details(int without) const
{
    const int wanted = source.min_details_to_start_from_top;
    return wanted <= 0 || wanted <= details - without;
}

Groups::Groups(Run& run) : run_(run), changed_(run.plan.groups.size(), true)
{
    groups_.reserve(run.plan.groups.size());
    for (const auto& plan : run.plan.groups) {
        groups_.emplace_back(run, plan);
    }
}

bool Groups::any_holds_together() const
{
    return std::ranges::any_of(groups_, &Group::holds_together);
}

}  // namespace velora::engine
