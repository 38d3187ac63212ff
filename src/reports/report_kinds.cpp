#include "reports/report_kinds.h"

#include <algorithm>
#include <array>

#include "reports/customer_list.h"
#include "reports/quote_report.h"

namespace velora {

namespace {

// clang-format off
constexpr auto kKinds = std::to_array<ReportKind>({
    {"quote",        eRptQuote,             1, "Quote",              quote_fields},
    {"overview",     eRptOverviewQuotes,    2, "Quote overview",     nullptr},
    {"customers",    eRptCustomerList,      3, "Customer list",      customer_list_fields},
    {"items",        eRptItemList,          4, "Item list",          nullptr},
    {"win-loss",     eRptWinLossGraph,      5, "Win/loss graph",     nullptr},
    {"lost-reasons", eRptLostReasonGraph,   6, "Lost reason graph",  nullptr},
    {"checklist",    eRptOrderChecklist,    7, "Order checklist",    nullptr},
    {"picking-slip", eRptPickingSlip,       8, "Picking slip",       nullptr},
    {"confirmation", eRptOrderConfirmation, 9, "Order confirmation", nullptr},
    {"expiration",   eRptExpireQuotes,     10, "Quote expiration",   nullptr},
    {"back-orders",  eRptBackOrder,        11, "Back order items",   nullptr},
    {"custom",       eRptCustom,           22, "Custom report",      nullptr},
});
// clang-format on

}  // namespace

std::span<const ReportKind> report_kinds()
{
    return kKinds;
}

const ReportKind* find_report_kind(std::string_view name)
{
    const auto found = std::find_if(kKinds.begin(), kKinds.end(), [&](const auto& kind) { return kind.name == name; });
    return found == kKinds.end() ? nullptr : &*found;
}

}  // namespace velora
