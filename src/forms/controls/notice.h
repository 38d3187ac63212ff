#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <utility>

namespace velora::forms {

/// Tells everyone who watches that something has happened. A watcher may come and go while it is told.
template <class... Arguments>
class Notice {
public:
    using Watcher = std::function<void(Arguments...)>;

    /// @return the number by which `forget` takes the watcher off again
    size_t watch(Watcher watcher)
    {
        watchers_.emplace(++last_, std::move(watcher));
        return last_;
    }
    void forget(size_t number) { watchers_.erase(number); }

    void tell(Arguments... arguments) const
    {
        // By number, since a watcher may change the list while it is walked.
        for (auto at = watchers_.begin(); at != watchers_.end();) {
            const size_t number = at->first;
            const Watcher watcher = at->second;
            watcher(arguments...);
            at = watchers_.upper_bound(number);
        }
    }

private:
    std::map<size_t, Watcher> watchers_;
    size_t last_ = 0;
};

}  // namespace velora::forms
