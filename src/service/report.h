#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "session/session_state.h"

namespace velora {

/// The component's public class: eight operations and no state of its own. Several may exist; they share the state
/// that they were made with, or the process's one.
///
/// Every operation stores what it is given in the state, loads what the work needs and hands over to a builder or a
/// form. No argument is changed. How a printing operation ended stands in `state().run_end`.
class Report {
public:
    Report();
    explicit Report(SessionState& state) : state_(state) {}

    using Session = std::shared_ptr<AccountingSession>;
    using Database = std::shared_ptr<Connection>;

    void Show_Printers(const Session& pSess, const Database& pConn, bool pWinXP, WhichEngine pEngine,
                       WhichFrame pFrame);
    /// @param pEmailIt  accepted and never read: it stays for the host's sake
    void Open_Reports(const Session& pSess, const Database& pConn, bool pWinXP, WhichEngine pEngine,
                      WhichReport pWhichReport, bool pMultiCurr, const std::string& pSessUser, int32_t pQuoteID = 0,
                      const std::string& pCustGroup = {}, bool pOwnQuotes = false, bool pEmailIt = false,
                      int16_t pShowCust = 0);
    void Print_CurrentQuote(const Session& pSess, const Database& pConn, WhichEngine pEngine, bool pMultiCurr,
                            int32_t pQuoteID, const std::string& pCustGroup, int16_t pShowCust,
                            const std::string& pReportString, bool pExportIt, bool pPreview);

    // The five below have no failure path of their own: a fault goes back to the caller.
    void Print_OrderChecklist(const Session& pSess, const Database& pConn, WhichEngine pEngine, int32_t pQuoteID,
                              const std::string& pReportString, bool pExportIt, bool pPreview);
    void Print_OrderConfirmation(const Session& pSess, const Database& pConn, WhichEngine pEngine, int32_t pQuoteID,
                                 const std::string& pReportString, bool pExportIt, bool pPreview);
    void Show_Emailer(const Session& pSess, bool pWinXP, WhichEngine pEngine);
    void Print_OrderPickingSlip(const Session& pSess, const Database& pConn, WhichEngine pEngine, int32_t pQuoteID,
                                const std::string& pReportString, bool pExportIt, bool pPreview,
                                bool pQuantAsInt = false);
    void Print_QuoteExpiration(const Session& pSess, const Database& pConn, WhichEngine pEngine,
                               const std::string& pReportString, bool pExportIt, bool pPreview);

    [[nodiscard]] SessionState& state() { return state_; }

private:
    SessionState& state_;
};

}  // namespace velora
