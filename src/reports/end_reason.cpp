#include "reports/end_reason.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velora {

namespace {

struct Reason {
    int32_t number;
    std::string_view where;  ///< as the fault names it
    std::string_view text;
};

constexpr auto kReasons = std::to_array<Reason>({
    {fault::kObjectNotSet, "gQuoteDetails", "The quote has no lines, and this report needs one; a comment is enough."},
    {fault::kObjectNotSet, "Printer",
     "No printer of this machine has a name that holds the one of the company's defaults or the settings. Correct the "
     "name, or leave it blank."},
    {fault::kObjectNotSet, "ranges",
     "The report names a range or its printer, and the company's defaults split the order by none. Choose ranges, or "
     "locations or ship dates for \"each location\"."},
    {fault::kNoCurrentRow, "Quote Number",
     "The report has no rows, and its file would be named after the last one. Preview or print it, or give the order "
     "lines that it shows."},
    {fault::kNoCurrentRow, "gDefaults", "The table Defaults has no row for this company."},
});

/// Faults whose texts do not say where they arose.
constexpr auto kBareFaults = std::to_array<int32_t>({fault::kOverflow, fault::kSubscript, fault::kDivisionByZero,
                                                     fault::kTypeMismatch, fault::kNull, fault::kNoSuchColumn});

}  // namespace

std::string reason_of(const Fault& caught)
{
    const auto known = std::ranges::find_if(kReasons, [&](const Reason& reason) {
        return reason.number == caught.number() && reason.where == caught.where();
    });
    if (known != kReasons.end()) return std::string(known->text);
    const bool is_bare = std::ranges::find(kBareFaults, caught.number()) != kBareFaults.end();
    return is_bare && !caught.where().empty() ? "It ended at \"" + caught.where() + "\"." : std::string();
}

}  // namespace velora
