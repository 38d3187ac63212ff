#include "host/kinds.h"

#include <filesystem>

#include "host/host_error.h"
#include "reports/report_lists.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

std::string named_definition(SessionState& state, const ReportKind& kind, const std::string& named)
{
    std::error_code unknown;
    if (!fs::is_regular_file(named, unknown)) {
        if (auto listed = listed_definition(state, kind, named); !listed.empty()) return listed;
    }
    return fs::absolute(named).string();  // the run says so where there is none
}

}  // namespace

const ReportKind& require_kind(std::string_view name)
{
    if (const ReportKind* kind = find_report_kind(name)) return *kind;
    throw UsageError("There is no report kind \"" + std::string(name) + "\". The kinds are: " + kind_names() + ".");
}

std::string kind_names()
{
    std::string names;
    for (const ReportKind& kind : report_kinds()) names.append(names.empty() ? "" : ", ").append(kind.name);
    return names;
}

std::string chosen_definition(SessionState& state, const ReportKind& kind, const std::string& named)
{
    if (!named.empty()) return named_definition(state, kind, named);
    auto usual = default_definition(state, kind);
    if (!usual.empty()) return usual;
    throw HostError("Report Not Found", "The report list of \"" + std::string(kind.name) +
                                            "\" is empty. Add a report to it with \"velora-report add-report\" or "
                                            "name one with --definition.");
}

}  // namespace velora
