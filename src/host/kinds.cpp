#include "host/kinds.h"

#include <algorithm>

#include "host/host_error.h"
#include "session/report_lists.h"
#include "session/settings.h"
#include "values/text.h"

namespace velora {
namespace {

/// The setting that holds the default definition of a kind; blank for those without.
std::string_view setting_key(WhichReport kind)
{
    switch (kind) {
        case eRptOrderConfirmation:
            return "Confirmation";
        case eRptPickingSlip:
            return "PickingSlip";
        case eRptOrderChecklist:
            return "Checklist";
        case eRptExpireQuotes:
            return "Expiration";
        default:
            return {};
    }
}

bool is_true(SessionState& state, std::string_view key)
{
    return same_name(trimmed(setting(state, key, "False")), "True");
}

/// The quote has three choices: ask each time, a report of the list, a report of the user's own.
std::string quote_setting(SessionState& state)
{
    if (is_true(state, "Quote1")) return setting(state, "Datapipe", "");
    if (is_true(state, "Quote2")) return setting(state, "Custom", "");
    return {};
}

std::string first_of_list(SessionState& state, const ReportKind& kind)
{
    state.gWhichReport = kind.which;
    Read_ReportList(state);
    const auto found = std::ranges::find(state.gReportList, kind.type, &ReportListEntry::Type);
    return found == state.gReportList.end() ? std::string() : found->Location;
}

}  // namespace

const ReportKind& require_kind(std::string_view name)
{
    if (const ReportKind* kind = find_report_kind(name)) return *kind;
    std::string known;
    for (const ReportKind& kind : report_kinds()) known += (known.empty() ? "" : ", ") + std::string(kind.name);
    throw UsageError("There is no report kind \"" + std::string(name) + "\". The kinds are: " + known + ".");
}

std::string default_definition(SessionState& state, const ReportKind& kind)
{
    std::string chosen;
    if (kind.which == eRptQuote) chosen = quote_setting(state);
    if (const auto key = setting_key(kind.which); !key.empty()) chosen = setting(state, key, "");
    if (chosen.empty()) chosen = first_of_list(state, kind);
    if (chosen.empty()) {
        throw HostError("Report Not Found", "The report list of \"" + std::string(kind.name) +
                                                "\" is empty. Add a report to it with \"velora-report add-report\" or "
                                                "name one with --definition.");
    }
    return chosen;
}

}  // namespace velora
