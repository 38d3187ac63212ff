#include "forms/builder_call.h"

#include <algorithm>
#include <array>

#include "reports/report_lists.h"

namespace velora::forms {

namespace {

using Arguments = std::vector<BuilderCall::Argument>;

struct Handed {
    const Selection& selection;
    const std::string& location;
    int32_t show_customer;
};

Arguments location_alone(const Handed& handed)
{
    return {handed.location};
}

Arguments quote_and_location(const Handed& handed)
{
    return {handed.selection.quote_id, handed.location};
}

Arguments quote(const Handed& handed)
{
    return {handed.selection.quote_id, handed.location, handed.show_customer};
}

Arguments period(const Handed& handed)
{
    const Selection& what = handed.selection;
    return {handed.location,          what.all_dates,  static_cast<int32_t>(what.customer_from), what.from, what.to,
            what.accounting_customer, what.customer_id};
}

Arguments overview(const Handed& handed)
{
    const Selection& what = handed.selection;
    return {handed.location,          what.all_dates,   static_cast<int32_t>(what.customer_from),
            what.status_id,           what.from,        what.to,
            what.accounting_customer, what.customer_id, what.reason_id};
}

Arguments location_and_name(const Handed& handed)
{
    return {handed.location, handed.selection.report_name};
}

/// Preview and export stand behind the arguments of every builder.
struct Interface {
    int16_t type;
    std::string_view builder;
    Arguments (*arguments)(const Handed&);
    bool ends_in_whole_quantities = false;
};

// clang-format off
constexpr auto kInterfaces = std::to_array<Interface>({
    {1,  "Print_Quote",        quote},
    {2,  "Print_Overview",     overview},
    {3,  "Print_CustomerList", location_alone},
    {4,  "Print_ItemList",     location_alone},
    {5,  "Print_WinLoss",      period},
    {6,  "Print_LostReason",   period},
    {7,  "Print_Checklist",    quote_and_location},
    {8,  "Print_PickingSlip",  quote_and_location, true},
    {9,  "Print_Confirmation", quote_and_location},
    {10, "Print_Expiration",   location_alone},
    {11, "Print_BackOrder",    period},
    {22, "Custom_Reports",     location_and_name},
});
// clang-format on

}  // namespace

BuilderCall builder_call(const ReportKind& kind, const Selection& selection, const Delivery& delivery,
                         int16_t show_customer)
{
    const auto& found = *std::ranges::find(kInterfaces, kind.type, &Interface::type);
    BuilderCall call{found.builder, found.arguments({selection, delivery.report_string, show_customer})};
    call.arguments.emplace_back(delivery.preview);
    call.arguments.emplace_back(delivery.export_it);
    if (found.ends_in_whole_quantities) call.arguments.emplace_back(selection.whole_quantities);
    return call;
}

RunEnd call_builder(SessionState& state, const ReportKind& kind, const Selection& selection, const Delivery& delivery)
{
    if (kind.print == nullptr) {
        throw Fault(fault::kCannotCreate,
                    "This build does not print the kind \"" + std::string(kind.title) + "\" yet.");
    }
    return kind.print(state, selection,
                      {definition_path(state, delivery.report_string), delivery.preview, delivery.export_it});
}

const ReportKind* kind_of_type(int16_t type)
{
    const auto kinds = report_kinds();
    const auto found = std::ranges::find(kinds, type, &ReportKind::type);
    return found == kinds.end() ? nullptr : &*found;
}

}  // namespace velora::forms
