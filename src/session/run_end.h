#pragma once

#include <cstdint>

namespace velora {

/// How the run of a builder ended. Boxes are a consequence of it and never the other way round: a lookup that failed
/// and said so does not make a run fail.
enum class RunEnd : uint8_t {
    Delivered,  ///< on paper, in a window or in a file
    NoData,     ///< there was nothing to put on the report, which has been told
    NotFound,   ///< what was asked for is not there, which has been told
    Cancelled,  ///< by the user, who is told nothing
    Failed,     ///< anything else; also where no run took place
};

}  // namespace velora
