#include "host/explain.h"

#include <ostream>

namespace velora {
namespace {

void list_counted(std::ostream& out, const char* title, const std::vector<RunLog::Counted>& entries)
{
    out << title << ": " << entries.size() << '\n';
    for (const auto& entry : entries) out << "  " << entry.count << " x " << entry.text << '\n';
}

}  // namespace

void explain(std::ostream& out, const RunLog& log)
{
    out << "Statements that fell away: " << log.tolerated().size() << '\n';
    for (const auto& entry : log.tolerated()) {
        out << "  row " << entry.row << ", \"" << entry.field << "\": fault " << entry.number << '\n';
    }
    out << "Texts that were cut: " << log.cuts().size() << '\n';
    for (const auto& entry : log.cuts()) {
        out << "  row " << entry.row << ", \"" << entry.field << "\": " << entry.from << " characters to " << entry.to
            << '\n';
    }
    if (log.dropped() > 0) out << "Further entries that were not kept: " << log.dropped() << '\n';
    list_counted(out, "Queries", log.queries());
    list_counted(out, "View filters", log.filters());
}

}  // namespace velora
