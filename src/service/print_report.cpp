#include "service/print_report.h"

#include "reports/preparation.h"
#include "service/report.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

/// The tax group whose authorities are loaded first; blank for a quote that is not there.
std::string tax_group_of(SessionState& state, int32_t quote_id)
{
    auto query = Command::statement("SELECT quTaxGroup FROM Quote WHERE (QuoteID = ?)");
    query.parameters.push_back(Command::Parameter::integer("QID", quote_id));
    const auto rows = connection(state).Open(query);
    if (rows->is_empty() || rows->value("quTaxGroup").is_null()) return {};
    return trimmed_text(rows->value("quTaxGroup"));
}

}  // namespace

RunEnd print_report(SessionState& state, const ReportKind& kind, const Selection& what, const Delivery& how)
{
    Report report(state);
    switch (kind.which) {
        case eRptQuote:
            report.Print_CurrentQuote(state.gSess, state.gConn, state.gEngine, state.gMultiCurr, what.quote_id,
                                      tax_group_of(state, what.quote_id), state.gShowCust, how.report_string,
                                      how.export_it, how.preview);
            break;
        case eRptOrderChecklist:
            report.Print_OrderChecklist(state.gSess, state.gConn, state.gEngine, what.quote_id, how.report_string,
                                        how.export_it, how.preview);
            break;
        case eRptOrderConfirmation:
            report.Print_OrderConfirmation(state.gSess, state.gConn, state.gEngine, what.quote_id, how.report_string,
                                           how.export_it, how.preview);
            break;
        case eRptPickingSlip:
            report.Print_OrderPickingSlip(state.gSess, state.gConn, state.gEngine, what.quote_id, how.report_string,
                                          how.export_it, how.preview, what.whole_quantities);
            break;
        case eRptExpireQuotes:
            report.Print_QuoteExpiration(state.gSess, state.gConn, state.gEngine, how.report_string, how.export_it,
                                         how.preview);
            break;
        default:
            load_lists(state);
            load_company(state);
            return kind.print(state, what, how);
    }
    return state.run_end;
}

}  // namespace velora
