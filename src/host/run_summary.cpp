#include "host/run_summary.h"

#include <ostream>

namespace velora {
namespace {

std::string how(ExitStatus status)
{
    switch (status) {
        case ExitStatus::NoData:
            return " (no data)";
        case ExitStatus::Told:
            return " (not delivered)";
        default:
            return {};
    }
}

}  // namespace

ExitStatus RunSummary::tell(std::ostream& out) const
{
    std::string line;
    ExitStatus worst = ExitStatus::Delivered;
    for (const Ended& document : ended_) {
        worst = worse_of(worst, document.status);
        if (document.boxes == 0) continue;
        line +=
            (line.empty() ? "" : ", ") + document.label + ": " + std::to_string(document.boxes) + how(document.status);
    }
    if (!line.empty()) out << "Message boxes by document: " << line << '\n';
    return worst;
}

}  // namespace velora
