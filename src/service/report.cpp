#include "service/report.h"

#include "pricing/taxes.h"
#include "reports/checklist.h"
#include "reports/confirmation.h"
#include "reports/picking_slip.h"
#include "reports/preparation.h"
#include "reports/quote_expiration.h"
#include "reports/quote_report.h"
#include "session/company.h"
#include "session/error_messengers.h"

namespace velora {

namespace {

/// The state of a process whose host makes none.
SessionState& process_state()
{
    static SessionState state;
    return state;
}

void store(SessionState& state, const Report::Session& session, const Report::Database& database, WhichEngine engine)
{
    state.gSess = session;
    state.gConn = database;
    state.gEngine = engine;
    state.run_end = RunEnd::Failed;  // until a builder answers
}

Windows& windows(SessionState& state)
{
    if (state.ports.windows != nullptr) return *state.ports.windows;
    throw Fault(fault::kCannotCreate, "This build has no windows; the command line offers what it can do.");
}

}  // namespace

Report::Report() : state_(process_state()) {}

void Report::Show_Printers(const Session& pSess, const Database& pConn, bool pWinXP, WhichEngine pEngine,
                           WhichFrame pFrame)
{
    with_failure_path(state_, ErrorMessenger, "clsReport.Show_Printers", [&] {
        store(state_, pSess, pConn, pEngine);
        state_.gWinXP = pWinXP;
        build_report_section(state_);
        Get_Defaults(state_);
        Get_ModuleVersions(state_);
        windows(state_).open_options(state_, pFrame);
    });
}

void Report::Open_Reports(const Session& pSess, const Database& pConn, bool pWinXP, WhichEngine pEngine,
                          WhichReport pWhichReport, bool pMultiCurr, const std::string& pSessUser, int32_t pQuoteID,
                          const std::string& pCustGroup, bool pOwnQuotes, bool, int16_t pShowCust)
{
    with_failure_path(state_, ErrorMessenger, "clsReport.Open_Reports", [&] {
        store(state_, pSess, pConn, pEngine);
        state_.gWinXP = pWinXP;
        state_.gMultiCurr = pMultiCurr;
        state_.gSessUser = pSessUser;
        load_lists(state_);
        Get_Defaults(state_);
        Get_TaxAuthorities(state_, pCustGroup, state_.gTaxAuthorities, state_.gTaxAuthorityCount);
        state_.gQuoteID = pQuoteID;
        state_.gOwnQuotes = pOwnQuotes;
        state_.gWhichReport = pWhichReport;
        state_.gShowCust = pShowCust;
        build_report_section(state_);
        Get_ModuleVersions(state_);
        windows(state_).open_selection(state_);
    });
}

void Report::Print_CurrentQuote(const Session& pSess, const Database& pConn, WhichEngine pEngine, bool pMultiCurr,
                                int32_t pQuoteID, const std::string& pCustGroup, int16_t pShowCust,
                                const std::string& pReportString, bool pExportIt, bool pPreview)
{
    with_failure_path(state_, ErrorMessenger, "clsReport.Print_CurrentQuote", [&] {
        store(state_, pSess, pConn, pEngine);
        load_lists(state_);
        Get_Defaults(state_);
        Get_TaxAuthorities(state_, pCustGroup, state_.gTaxAuthorities, state_.gTaxAuthorityCount);
        state_.gMultiCurr = pMultiCurr;
        build_report_section(state_);
        Get_ModuleVersions(state_);
        Print_Quote(state_, pQuoteID, pReportString, pShowCust, pPreview, pExportIt);
    });
}

void Report::Print_OrderChecklist(const Session& pSess, const Database& pConn, WhichEngine pEngine, int32_t pQuoteID,
                                  const std::string& pReportString, bool pExportIt, bool pPreview)
{
    store(state_, pSess, pConn, pEngine);
    load_company(state_);
    Print_Checklist(state_, pQuoteID, pReportString, pPreview, pExportIt);
}

void Report::Print_OrderConfirmation(const Session& pSess, const Database& pConn, WhichEngine pEngine, int32_t pQuoteID,
                                     const std::string& pReportString, bool pExportIt, bool pPreview)
{
    store(state_, pSess, pConn, pEngine);
    load_lists(state_);
    load_company(state_);
    Print_Confirmation(state_, pQuoteID, pReportString, pPreview, pExportIt);
}

void Report::Show_Emailer(const Session& pSess, bool pWinXP, WhichEngine pEngine)
{
    state_.gSess = pSess;
    state_.gWinXP = pWinXP;
    state_.gEngine = pEngine;
    build_report_section(state_);
    Get_ModuleVersions(state_);
    windows(state_).open_emailer(state_);
}

void Report::Print_OrderPickingSlip(const Session& pSess, const Database& pConn, WhichEngine pEngine, int32_t pQuoteID,
                                    const std::string& pReportString, bool pExportIt, bool pPreview, bool pQuantAsInt)
{
    store(state_, pSess, pConn, pEngine);
    load_lists(state_);
    load_company(state_);
    Print_PickingSlip(state_, pQuoteID, pReportString, pPreview, pExportIt, pQuantAsInt);
}

void Report::Print_QuoteExpiration(const Session& pSess, const Database& pConn, WhichEngine pEngine,
                                   const std::string& pReportString, bool pExportIt, bool pPreview)
{
    store(state_, pSess, pConn, pEngine);
    load_company(state_);
    Print_Expiration(state_, pReportString, pPreview, pExportIt);
}

}  // namespace velora
