#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "host/host_error.h"

namespace velora {

/// How the documents of a run ended.
class RunSummary {
public:
    /// @param label  of the document, as the person named it
    void add(std::string label, ExitStatus status, size_t boxes)
    {
        ended_.push_back({std::move(label), status, boxes});
    }

    /// Tells in one line which documents had boxes, how many, and which were not delivered. Answers the worst end.
    ExitStatus tell(std::ostream& out) const;

private:
    struct Ended {
        std::string label;
        ExitStatus status;
        size_t boxes;
    };

    std::vector<Ended> ended_;
};

}  // namespace velora
