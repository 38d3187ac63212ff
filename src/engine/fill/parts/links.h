#pragma once

#include "engine/plan/plan.h"

namespace velora::engine {

/// Where an element leads to and what leads to it, at one moment.
struct LinkState {
    Link link;
    Anchor anchor;
    [[nodiscard]] bool empty() const { return link.kind == Link::Kind::None && anchor.name.empty(); }
};

LinkState evaluate_link(const LinkPlan& plan, const Environment& environment);

}  // namespace velora::engine
