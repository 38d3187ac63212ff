#pragma once

#include <iosfwd>

#include "session/run_log.h"

namespace velora {

/// Lists what a run did that its document does not show.
void explain(std::ostream& out, const RunLog& log);

}  // namespace velora
