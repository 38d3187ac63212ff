#include "forms/builder_call.h"

#include <algorithm>

#include "reports/report_lists.h"

namespace velora::forms {

namespace {

using Arguments = std::vector<BuilderCall::Argument>;

/// What the builders of the kind take before preview and export, in the order of their interface.
Arguments arguments_of(const ReportKind& kind, const Selection& what, const std::string& location,
                       int32_t show_customer)
{
    const Criteria& criteria = kind.criteria;
    const auto customer_from = static_cast<int32_t>(what.customer_from);
    if (kind.which == eRptQuote) return {what.quote_id, location, show_customer};
    if (criteria.quote) return {what.quote_id, location};
    if (criteria.file) return {location, what.report_name};
    if (!criteria.period) return {location};
    if (!criteria.status) {
        return {location, what.all_dates,           customer_from,   what.from,
                what.to,  what.accounting_customer, what.customer_id};
    }
    return {location, what.all_dates,           customer_from,    what.status_id, what.from,
            what.to,  what.accounting_customer, what.customer_id, what.reason_id};
}

}  // namespace

BuilderCall builder_call(const ReportKind& kind, const Selection& selection, const Delivery& delivery,
                         int16_t show_customer)
{
    BuilderCall call{kind.builder, arguments_of(kind, selection, delivery.report_string, show_customer)};
    call.arguments.emplace_back(delivery.preview);
    call.arguments.emplace_back(delivery.export_it);
    if (kind.criteria.whole_quantities) call.arguments.emplace_back(selection.whole_quantities);
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
