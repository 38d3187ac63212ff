#include <cmath>

#include "forms/finders.h"
#include "forms/form_desk.h"
#include "forms/frm_report.h"
#include "forms/order_kinds.h"
#include "gateway/accounting_lookups.h"
#include "gateway/database_lookups.h"
#include "session/error_messengers.h"
#include "session/query.h"
#include "session/value_helpers.h"
#include "values/text.h"

namespace velora::forms {

namespace {

int flag_of(const Value& value)
{
    return std::abs(to_int32(value));
}

std::string company_of(SessionState& state, const Recordset& row)
{
    const std::string accounting_customer = trimmed_text(row.value("AccPacID"));
    if (!accounting_customer.empty() && accounting_customer != "vl") {
        return Return_AccPacName(state, accounting_customer);
    }
    return Return_VLCustomerName(state, to_int32(row.value("CustomerID")));
}

}  // namespace

void frmReport::drop_quote()
{
    lvwQuote.clear();
    Enable_Output(false);
}

/// Asked before the focus leaves the quote number.
bool frmReport::tbxQuote_Validate()
{
    bool leaves = true;
    run("tbxQuote_Validate", [&] {
        const std::string number(trimmed(tbxQuote.text()));
        if (number.empty() || !m_Changed) {
            // Meant: passing through without typing drops the quote, while its number stays in the box.
            state_.gQuoteID = 0;
            return drop_quote();
        }
        if (Valid_QuoteNumber(number)) {
            Get_QuoteInformation(false, 0, number);
            lstReports.set_enabled(true);
            mnuFileSub[5].set_enabled(true);
            mnuPopupSub[3].set_enabled(true);
            if (has_report()) Enable_Output(true);  // whatever was printed before: asked at a click on a report only
            return;
        }
        tell(state_, {"Invalid Input",
                      "The Quote number that you entered cannot be found.\r\n"
                      "Please check the Quote number and try again or\r\nuse the finder.",
                      Icon::Exclamation});
        Enable_Output(false);
        leaves = false;
        tbxQuote.set_text("");
        lvwQuote.clear();
    });
    return leaves;
}

void frmReport::lvbQuote_Click()
{
    with_failure_path(state_, ErrorMessenger, "frmReport.lvbQuote_Click", [&] {
        set_pointer(Pointer::Hourglass);
        QuoteFinder finder(desk_);
        finder.show_quotes(shares_order_list(state_.gWhichReport) ? QuoteFinder::kOrders : QuoteFinder::kQuotes);
        if (finder.id() != 0) {
            Get_QuoteInformation(true, finder.id(), "");
            state_.gQuoteID = finder.id();
            lstReports.set_enabled(true);
            mnuFileSub[5].set_enabled(true);
            mnuPopupSub[4].set_enabled(true);
            if (has_report()) Enable_Output(true);
        }
        set_pointer(Pointer::Default);
    });
}

bool frmReport::Valid_QuoteNumber(const std::string& pNumber)
{
    bool found = false;
    const std::string number = doubled_quotes(trimmed(pNumber));
    if (number.empty()) return found;
    with_failure_path(state_, ErrorADO, "frmReport.Valid_QuoteNumber", [&] {
        const auto rows = open_query(
            state_,
            {Command::statement("SELECT [QuoteID],[QuoteNumber] FROM [Quote] WHERE ([QuoteNumber] = '" + number +
                                "');"),
             Command::statement("SELECT QuoteID,QuoteNumber FROM Quote WHERE (QuoteNumber = '" + number + "')")});
        found = !rows->is_empty();
        rows->Close();
    });
    return found;
}

void frmReport::Get_QuoteInformation(bool pByID, int32_t pQuoteID, const std::string& pNumber)
{
    with_failure_path(state_, ErrorADO, "frmReport.Get_QuoteInformation", [&] {
        std::string sql_server =
            "SELECT [QuoteID],[QuoteNumber],[CustomerID],[AccPacID],[CustContact],"
            "[quDateEnter],[quEmail],[quPONumber],[quNotes],[quDesc],[quReference],";
        std::string pervasive =
            "SELECT QuoteID,QuoteNumber,CustomerID,AccPacID,CustContact,"
            "quDateEnter,quEmail,quPONumber,quNotes,quDesc,quReference,";
        if (pByID) {
            const std::string id = std::to_string(pQuoteID);
            sql_server += "[quPrPickSlip],[quPrConfirm] FROM [Quote] WHERE ([QuoteID]=" + id + ");";
            pervasive += "quPrPickSlip,quPrConfirm FROM Quote WHERE (QuoteID=" + id + ")";
        } else {
            const std::string number = doubled_quotes(pNumber);
            sql_server += "[quPrPickSlip],[quPrConfirm] FROM [Quote] WHERE ([QuoteNumber]='" + number + "');";
            pervasive += "quPrPickSlip,quPrConfirm FROM Quote WHERE (QuoteNumber='" + number + "')";
        }
        // All rows at once: the lookups behind the lines ask on the same connection.
        const auto rows = open_query(state_, {Command::statement(sql_server), Command::statement(pervasive)});
        if (move_to_first(*rows)) {
            show_quote(*rows);
            if (!pByID) state_.gQuoteID = to_int32(rows->value("QuoteID"));
        }
        rows->Close();
    });
}

void frmReport::show_quote(const Recordset& row)
{
    const auto text = [&](const char* column) { return trimmed_text(row.value(column)); };
    tbxQuote.set_text(text("QuoteNumber"));
    chkPickSlip.set_value(flag_of(row.value("quPrPickSlip")));
    chkConfirm.set_value(flag_of(row.value("quPrConfirm")));
    lvwQuote.clear();
    Value entered = row.value("quDateEnter");
    lvwQuote.add({"Company:", company_of(state_, row)});
    lvwQuote.add({"      ", ""});
    lvwQuote.add({"Contact:", text("CustContact")});
    lvwQuote.add({"Email:", text("quEmail")});
    lvwQuote.add({"Quote Date:", Display_Date(state_, entered)});
    lvwQuote.add({"PO Number:", text("quPONumber")});
    lvwQuote.add({"Description:", text("quDesc")});
    lvwQuote.add({"Reference:", text("quReference")});
    lvwQuote.add({"Notes:", text("quNotes")});
}

}  // namespace velora::forms
