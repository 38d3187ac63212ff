#include "reports/kinds.h"

#include <algorithm>

#include "reports/back_orders.h"
#include "reports/checklist.h"
#include "reports/confirmation.h"
#include "reports/custom_report.h"
#include "reports/customer_list.h"
#include "reports/item_list.h"
#include "reports/lost_reasons.h"
#include "reports/picking_slip.h"
#include "reports/quote_expiration.h"
#include "reports/quote_overview.h"
#include "reports/quote_report.h"
#include "reports/win_loss.h"

namespace velora {

namespace {

constexpr std::string_view kOrderCaption = "Velora - Order Report Selection";
constexpr std::string_view kOrderCriteria = "Order Report Criteria";
constexpr std::string_view kOrderList = "_OrderReports.ini";

/// A list without criteria.
template <auto Print>
RunEnd print_all(SessionState& state, const Selection&, const Delivery& how)
{
    return Print(state, how.report_string, how.preview, how.export_it);
}

/// A list of the quotes of a period and a customer.
template <auto Print>
RunEnd print_period(SessionState& state, const Selection& what, const Delivery& how)
{
    return Print(state, how.report_string, what.all_dates, static_cast<int16_t>(what.customer_from), what.from, what.to,
                 what.accounting_customer, what.customer_id, how.preview, how.export_it);
}

// clang-format off
constexpr auto kKinds = std::to_array<ReportKind>({
    {
        .name = "quote",
        .which = eRptQuote,
        .type = 1,
        .title = "Quote",
        .about = "Quotes",
        .builder = "Print_Quote",
        .caption = "Velora - Quote Report Selection",
        .criteria_caption = "Quote Criteria",
        .list_text = "Quote Reports",
        .list_file = "_QuoteReports.ini",
        .shipped = {"Quote", "Quote, Taxes"},
        .defaults = {{{"Quote1", "Datapipe"}, {"Quote2", "Custom"}}},
        .criteria = {.quote = true},
        .fields = quote_fields,
        .print =
            [](SessionState& state, const Selection& what, const Delivery& how) {
                return Print_Quote(state, what.quote_id, how.report_string, state.gShowCust, how.preview,
                                   how.export_it);
            },
    },
    {
        .name = "overview",
        .which = eRptOverviewQuotes,
        .type = 2,
        .title = "Quote overview",
        .about = "Overview of quotes",
        .builder = "Print_Overview",
        .caption = "Velora - Quote Overview Report Selection",
        .list_text = "Overview Reports",
        .list_file = "_OverviewReports.ini",
        .shipped = {"Quote Overview"},
        .criteria = {.period = true, .status = true},
        .fields = quote_overview_fields,
        .print =
            [](SessionState& state, const Selection& what, const Delivery& how) {
                return Print_Overview(state, how.report_string, what.all_dates,
                                      static_cast<int16_t>(what.customer_from), static_cast<int16_t>(what.status_id),
                                      what.from, what.to, what.accounting_customer, what.customer_id,
                                      static_cast<int16_t>(what.reason_id), how.preview, how.export_it);
            },
    },
    {
        .name = "customers",
        .which = eRptCustomerList,
        .type = 3,
        .title = "Customer list",
        .about = "List of customers not yet in the accounting system",
        .builder = "Print_CustomerList",
        .caption = "Velora - Customer List Report Selection",
        .list_text = "Customer List Reports",
        .list_file = "_CustomerListReports.ini",
        .shipped = {"Customer List"},
        .fields = customer_list_fields,
        .print = print_all<Print_CustomerList>,
    },
    {
        .name = "items",
        .which = eRptItemList,
        .type = 4,
        .title = "Item list",
        .about = "List of items not yet in the accounting system",
        .builder = "Print_ItemList",
        .caption = "Velora - Item List Report Selection",
        .list_text = "Item List Reports",
        .list_file = "_ItemListReports.ini",
        .shipped = {"Item List"},
        .fields = item_list_fields,
        .print = print_all<Print_ItemList>,
    },
    {
        .name = "win-loss",
        .which = eRptWinLossGraph,
        .type = 5,
        .title = "Win/loss graph",
        .about = "Graph of quotes won and lost",
        .builder = "Print_WinLoss",
        .caption = "Velora - Win/Loss Report Selection",
        .criteria_caption = "Win/Loss Criteria",
        .list_text = "Win \\ Loss Graph Reports",
        .list_file = "_WinLossReports.ini",
        .shipped = {"Win Loss"},
        .criteria = {.period = true},
        .fields = win_loss_fields,
        .print = print_period<Print_WinLoss>,
    },
    {
        .name = "lost-reasons",
        .which = eRptLostReasonGraph,
        .type = 6,
        .title = "Lost reason graph",
        .about = "Graph of reasons for lost quotes",
        .builder = "Print_LostReason",
        .caption = "Velora - Lost Reason Report Selection",
        .criteria_caption = "Lost Reason Criteria",
        .list_text = "Lost Reason Reports",
        .list_file = "_LostReasonReports.ini",
        .shipped = {"Lost Reason"},
        .criteria = {.period = true},
        .fields = lost_reason_fields,
        .print = print_period<Print_LostReason>,
    },
    {
        .name = "checklist",
        .which = eRptOrderChecklist,
        .type = 7,
        .title = "Order checklist",
        .about = "Order checklists",
        .builder = "Print_Checklist",
        .caption = kOrderCaption,
        .criteria_caption = kOrderCriteria,
        .list_text = "Order Checklist Reports",
        .list_file = kOrderList,
        .shipped = {"Order Checklist"},
        .defaults = {{{"", "Checklist"}}},
        .criteria = {.quote = true},
        .fields = checklist_fields,
        .print =
            [](SessionState& state, const Selection& what, const Delivery& how) {
                return Print_Checklist(state, what.quote_id, how.report_string, how.preview, how.export_it);
            },
    },
    {
        .name = "picking-slip",
        .which = eRptPickingSlip,
        .type = 8,
        .title = "Picking slip",
        .about = "Picking slips",
        .builder = "Print_PickingSlip",
        .caption = kOrderCaption,
        .criteria_caption = kOrderCriteria,
        .list_text = "Picking Slip Reports",
        .list_file = kOrderList,
        .shipped = {"Picking Slip"},
        .defaults = {{{"", "PickingSlip"}}},
        .criteria = {.quote = true, .whole_quantities = true},
        .splits = true,
        .marks = true,
        .fields = picking_slip_fields,
        .whole_quantity_fields = whole_quantity_slip_fields,
        .print =
            [](SessionState& state, const Selection& what, const Delivery& how) {
                return Print_PickingSlip(state, what.quote_id, how.report_string, how.preview, how.export_it,
                                         what.whole_quantities);
            },
    },
    {
        .name = "confirmation",
        .which = eRptOrderConfirmation,
        .type = 9,
        .title = "Order confirmation",
        .about = "Order confirmations",
        .builder = "Print_Confirmation",
        .caption = kOrderCaption,
        .criteria_caption = kOrderCriteria,
        .list_text = "Order Confirmation Reports",
        .list_file = kOrderList,
        .shipped = {"Confirmation, Taxes"},
        .defaults = {{{"", "Confirmation"}}},
        .criteria = {.quote = true},
        .marks = true,
        .fields = confirmation_fields,
        .print =
            [](SessionState& state, const Selection& what, const Delivery& how) {
                return Print_Confirmation(state, what.quote_id, how.report_string, how.preview, how.export_it);
            },
    },
    {
        .name = "expiration",
        .which = eRptExpireQuotes,
        .type = 10,
        .title = "Quote expiration",
        .about = "List of quotes about to expire",
        .builder = "Print_Expiration",
        .caption = "Velora - Quote Expiration Report Selection",
        .list_text = "Quote Expiration Reports",
        .list_file = "_ExpirationReports.ini",
        .shipped = {"Quote Expiration"},
        .defaults = {{{"", "Expiration"}}},
        .fields = quote_expiration_fields,
        .print = print_all<Print_Expiration>,
    },
    {
        .name = "back-orders",
        .which = eRptBackOrder,
        .type = 11,
        .title = "Back order items",
        .about = "List of items on back order",
        .builder = "Print_BackOrder",
        .caption = "Velora - Back Order Items Report Selection",
        .criteria_caption = "Back Order Items Criteria",
        .list_file = "_BackOrderReports.ini",
        .shipped = {"Back Order Items"},
        .criteria = {.period = true},
        .fields = back_order_fields,
        .print = print_period<Print_BackOrder>,
    },
    {
        .name = "custom",
        .which = eRptCustom,
        .type = 22,
        .title = "Custom report",
        .about = "A report whose definition brings its own data",
        .builder = "Custom_Reports",
        .caption = "Velora - Custom Report Selection",
        .list_file = "_CustomReports.ini",
        .criteria = {.file = true},
        .print =
            [](SessionState& state, const Selection& what, const Delivery& how) {
                return Custom_Reports(state, how.report_string, what.report_name, how.preview, how.export_it);
            },
    },
});
// clang-format on

}  // namespace

std::span<const ReportKind> report_kinds()
{
    return kKinds;
}

const ReportKind* find_report_kind(std::string_view name)
{
    const auto found = std::ranges::find(kKinds, name, &ReportKind::name);
    return found == kKinds.end() ? nullptr : &*found;
}

const ReportKind& report_kind(WhichReport which)
{
    const auto found = std::ranges::find(kKinds, which, &ReportKind::which);
    return found == kKinds.end() ? kKinds.back() : *found;
}

}  // namespace velora
