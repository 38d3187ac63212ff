#include <array>

#include "forms/builder_call.h"
#include "forms/form_desk.h"
#include "forms/frm_add.h"
#include "forms/frm_report.h"
#include "forms/order_kinds.h"
#include "reports/report_lists.h"
#include "session/company.h"
#include "session/error_messengers.h"
#include "session/query.h"
#include "session/value_helpers.h"

namespace velora::forms {

namespace {

/// What the entries of the reports menu open; none for the separators.
std::optional<WhichReport> kind_of_entry(size_t index)
{
    switch (index) {
        case 0:
            return eRptQuote;
        case 2:
            return eRptOverviewQuotes;
        case 3:
            return eRptCustomerList;
        case 4:
            return eRptItemList;
        case 5:
            return eRptWinLossGraph;
        case 6:
            return eRptLostReasonGraph;
        case 7:
            return eRptAllOrderMenu;
        case 8:
            return eRptExpireQuotes;
        case 9:
            return eRptBackOrder;
        case 11:
            return eRptCustom;
        default:
            return std::nullopt;
    }
}

}  // namespace

void frmReport::mnuFileSub_Click(size_t index)
{
    switch (index) {
        case 0:
            return Print_Report(false, false);
        case 1:
            return Print_Report(true, false);
        case 2:
            return export_and_tell();
        case 3:
            return export_and_email();
        case 5:
            return desk_.show_modal(std::make_shared<frmAdd>(desk_));
        case 6:
            return Remove_Report();
        case 8:
            return unload();
        default:
            return;
    }
}

void frmReport::mnuReportSub_Click(size_t index)
{
    const auto kind = kind_of_entry(index);
    if (!kind) return;
    const WhichReport before = state_.gWhichReport;
    if (*kind == eRptQuote && before != eRptQuote) state_.gQuoteID = 0;
    if (*kind == eRptAllOrderMenu && !is_order_kind(before)) state_.gQuoteID = 0;
    state_.gWhichReport = *kind;
    Setup_Form();
}

void frmReport::mnuOptionSub_Click(size_t index)
{
    constexpr auto kPanes =
        std::to_array<WhichFrame>({eFPrinter, eFRptQuote, eFExport, eFEmail, eFLogFile, eFMiscOptions});
    desk_.show_options(kPanes.at(index), *this);
}

void frmReport::mnuHelpSub_Click(size_t index)
{
    // The contents do nothing, on purpose.
    if (index == 2 && state_.ports.user != nullptr) state_.ports.user->open_web_site();
}

void frmReport::mnuPopupSub_Click(size_t index)
{
    switch (index) {
        case 0:
        case 1:
            return mnuFileSub_Click(index);
        case 3:
        case 4:
            return mnuFileSub_Click(index + 2);
        case 6:
            return mnuReportSub_Click(0);
        case 14:
            return mnuReportSub_Click(10);  // meant: that one is a separator, so the entry does nothing
        default:
            if (index >= 7 && index <= 13) mnuReportSub_Click(index - 5);
    }
}

void frmReport::tell_export_failure()
{
    tell(state_, {"Report Export Failure",
                  "Velora was unable to export the report to \r\nthe desired format or to the specified location.\r\n"
                  "Please check your export options and try again.\r\n\nContact Morvane if the problem persists.",
                  Icon::Exclamation});
}

void frmReport::export_and_tell()
{
    Print_Report(false, true);
    if (state_.run_end == RunEnd::Cancelled) return;
    // Meant: nothing resets the result of an earlier export, which is told again when no builder got as far.
    if (!state_.gExportOK) return tell_export_failure();
    tell(state_, {"Export Successful", "The Report has been exported successfully.\r\n\n" + state_.gExportFile,
                  Icon::Information});
}

void frmReport::export_and_email()
{
    Print_Report(false, true);
    if (state_.run_end == RunEnd::Cancelled) return;
    if (!state_.gExportOK) return tell_export_failure();
    desk_.show_emailer_modal();
}

bool frmReport::Check_QuantAsInt()
{
    bool whole = false;
    with_failure_path(state_, ErrorADO, "frmReport.Check_QuantAsInt", [&] {
        const std::string company = doubled_quotes(company_id(state_));
        const auto rows = open_query(
            state_, {Command::statement("SELECT [Configure] FROM Defaults WHERE ([Company] = '" + company + "');"),
                     Command::statement("SELECT Configure FROM Defaults WHERE (Company = '" + company + "')")});
        if (move_to_first(*rows)) {
            const Value& configure = rows->value("Configure");
            whole = !configure.is_null() && to_number(configure) == 2;
        }
        rows->Close();
    });
    return whole;
}

void frmReport::Print_Report(bool pPreview, bool pExportIt)
{
    with_failure_path(state_, ErrorMessenger, "frmReport.Print_Report", [&] {
        state_.run_end = RunEnd::Failed;  // until a builder answers
        set_pointer(Pointer::Hourglass);
        const ReportListEntry report = entry();
        const ReportKind* kind = kind_of_type(report.Type);
        if (kind != nullptr) {
            Selection what;
            const size_t index = kind->criteria.status ? 0 : 1;
            what.quote_id = state_.gQuoteID;
            what.whole_quantities = kind->criteria.whole_quantities && Check_QuantAsInt();
            what.all_dates = optAll[index].value();
            what.from = date_in_box(tbxFrom[index]);
            what.to = date_in_box(tbxTo[index]);
            what.customer_from = static_cast<CustomerFrom>(cboFrom[index].selected());
            what.accounting_customer = m_AccPacID;
            what.customer_id = m_CustomerID;
            what.status_id = m_StatusID;
            what.reason_id = m_LostID;
            what.report_name = report.Name;
            const Delivery how{report.Location, pPreview, pExportIt};
            if (desk_.on_call) desk_.on_call(builder_call(*kind, what, how, state_.gShowCust));
            call_builder(state_, *kind, what, how);
        }
        set_pointer(Pointer::Default);
    });
}

}  // namespace velora::forms
