#include "engine/plan/refusals.h"

#include <algorithm>

namespace velora::engine {

void Refusals::add(const DefinitionError& refused)
{
    std::string line = within_ + refused.what();
    // an expression may be compiled for more than one use
    if (all_.size() >= kMost || std::ranges::find(lines_, line) != lines_.end()) return;
    all_.push_back(refused);
    lines_.push_back(std::move(line));
}

Refusals::Within::Within(Refusals& refusals, const std::string& file)
    : refusals_(refusals), size_(refusals.within_.size())
{
    refusals_.within_ += file + ": ";
}

void Refusals::raise() const
{
    if (all_.empty()) return;
    const bool own = lines_.front() == all_.front().what();
    std::string reason = own ? all_.front().reason() : lines_.front();
    for (size_t at = 1; at < lines_.size(); ++at) reason += "\n" + lines_[at];
    throw own ? DefinitionError(all_.front().position(), all_.front().element(), reason)
              : DefinitionError({}, "", reason);
}

}  // namespace velora::engine
