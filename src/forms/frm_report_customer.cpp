#include "forms/company_rules.h"
#include "forms/finders.h"
#include "forms/form_desk.h"
#include "forms/frm_report.h"
#include "gateway/accounting_lookups.h"
#include "gateway/database_lookups.h"
#include "gateway/view_reading.h"
#include "session/error_messengers.h"
#include "session/query.h"
#include "values/text.h"

namespace velora::forms {

namespace {

/// The items of the drop-down that says where a customer comes from.
constexpr int kAll = 0;
constexpr int kAccounting = 1;
constexpr int kOwn = 2;

int16_t data_of(const DropDown& list)
{
    return to_int16(Value(list.selected_data(0)));
}

}  // namespace

void frmReport::cboFrom_Click(size_t index)
{
    if (cboFrom[index].selected() == kAll) {
        Enable_Customer(index, false);
        tbxCustomer[index].set_text("");
        lblCompany[index].set_caption("");
        m_CustomerID = 0;
        m_AccPacID.clear();
        if (!has_report()) return;
        const int16_t type = entry().Type;
        if (type == 2 || type == 5 || type == 6) Enable_Output(true);
        return;
    }
    Enable_Customer(index, true);
    switch (state_.gWhichReport) {
        case eRptWinLossGraph:
        case eRptLostReasonGraph:
        case eRptOverviewQuotes:
        case eRptBackOrder:
            return Enable_Output(false);
        default:
            return;
    }
}

void frmReport::cboStatus_Click()
{
    m_StatusID = data_of(cboStatus);
    const bool lost = default_is(state_, "qdStatusLost", m_StatusID);
    lblLost.set_visible(lost);
    cboLost.set_visible(lost);
    if (cboLost.count() > 0) cboLost.select(0);
}

void frmReport::cboLost_Click()
{
    m_LostID = data_of(cboLost);
}

void frmReport::Enable_Customer(size_t index, bool pEnable)
{
    lblCustomer[index].set_enabled(pEnable);
    tbxCustomer[index].set_enabled(pEnable);
    lvbCustomer[index].set_enabled(pEnable);
    tbxCustomer[index].set_back(pEnable ? Back::Window : Back::Face);
}

/// Asked before the focus leaves the customer number.
bool frmReport::tbxCustomer_Validate(size_t index)
{
    bool leaves = true;
    run("tbxCustomer_Validate", [&] {
        const std::string number(trimmed(tbxCustomer[index].text()));
        if (!m_Changed || number.empty()) return;
        if (take_customer(index, number)) {
            if (has_report()) Enable_Output(true);
            return;
        }
        tell(state_, {"Invalid Input",
                      "The Customer number that you entered cannot be found.\r\n"
                      "Please check the Customer number and try again or\r\nuse the finder.",
                      Icon::Exclamation});
        leaves = false;
        Enable_Output(false);
        tbxCustomer[index].set_text("");
        lblCompany[index].set_caption("");
    });
    return leaves;
}

/// Whether there is such a customer; it then becomes the criterion.
bool frmReport::take_customer(size_t index, const std::string& number)
{
    if (cboFrom[index].selected() == kAccounting) {
        if (!Check_APCustNumber(state_, number)) return false;
        m_AccPacID = number;
        Get_APReportCustomerInfo(index, number);
        return true;
    }
    if (!Check_VLCustNumber(state_, number)) return false;
    Get_VLReportCustomer(index, false, 0, number);
    return true;
}

void frmReport::lvbCustomer_Click(size_t index)
{
    if (cboFrom[index].selected() == kAccounting) Find_AccPacCustomer(index);
    if (cboFrom[index].selected() == kOwn) Find_VeloraCustomer(index);
}

void frmReport::Find_VeloraCustomer(size_t index)
{
    with_failure_path(state_, ErrorMessenger, "frmReport.Find_VeloraCustomer", [&] {
        set_pointer(Pointer::Hourglass);
        QuoteFinder finder(desk_);
        finder.show_customers();
        if (finder.id() != 0) {
            m_CustomerID = finder.id();
            Get_VLReportCustomer(index, true, m_CustomerID, "");
        }
        set_pointer(Pointer::Default);
    });
}

void frmReport::Find_AccPacCustomer(size_t index)
{
    with_failure_path(state_, ErrorMessenger, "frmReport.Find_AccPacCustomer", [&] {
        set_pointer(Pointer::Hourglass);
        AccpacCustomerFinder finder(desk_);
        finder.show(trimmed(tbxCustomer[index].text()));
        if (const std::string number(trimmed(finder.number())); !number.empty()) {
            m_AccPacID = number;
            Get_APReportCustomerInfo(index, m_AccPacID);
        }
        set_pointer(Pointer::Default);
    });
}

void frmReport::Get_VLReportCustomer(size_t index, bool pByID, int32_t pCustomerID, const std::string& pNumber)
{
    with_failure_path(state_, ErrorADO, "frmReport.Get_VLReportCustomer", [&] {
        std::string sql_server = "SELECT [CustomerID],[CustomerNumber],[cuFullName] FROM [Customer] WHERE ";
        std::string pervasive = "SELECT CustomerID,CustomerNumber,cuFullName FROM Customer WHERE ";
        if (pByID) {
            const std::string id = std::to_string(pCustomerID);
            sql_server += "([CustomerID]=" + id + ");";
            pervasive += "(CustomerID=" + id + ")";
        } else {
            const std::string number = doubled_quotes(pNumber);
            sql_server += "([CustomerNumber]='" + number + "');";
            pervasive += "(CustomerNumber='" + number + "')";
        }
        const auto rows = stream_query(state_, {Command::statement(sql_server), Command::statement(pervasive)});
        if (move_to_first(*rows)) {
            tbxCustomer[index].set_text(trimmed_text(rows->value("CustomerNumber")));
            lblCompany[index].set_caption(trimmed_text(rows->value("cuFullName")) + " ");
            if (!pByID) m_CustomerID = to_int32(rows->value("CustomerID"));
        }
        rows->Close();
        customer_found();
    });
}

void frmReport::Get_APReportCustomerInfo(size_t index, const std::string& pNumber)
{
    with_failure_path(state_, ErrorACCPAC, "frmReport.Get_APReportCustomerInfo", [&] {
        {
            OpenedView customers(state_, "AR0024");
            const std::string number(trimmed(pNumber));
            customers.browse("IDCUST = " + number);
            if (customers.fetch()) {
                tbxCustomer[index].set_text(number);
                lblCompany[index].set_caption(customers.text("NAMECUST") + " ");
            }
        }
        customer_found();
    });
}

/// The finders enable two buttons of the toolbar and no entry of a menu. It is meant.
void frmReport::customer_found()
{
    if (!has_report()) return;
    tlbPreview.set_enabled(true);
    tlbPrint.set_enabled(true);
}

}  // namespace velora::forms
