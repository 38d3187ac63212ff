#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/accounting.h"
#include "platform/database.h"
#include "platform/mail_transport.h"
#include "platform/printers.h"
#include "platform/region.h"
#include "platform/report_engine.h"
#include "platform/stores.h"
#include "platform/user_interface.h"
#include "session/enumerations.h"
#include "session/records.h"
#include "session/run_cache.h"
#include "session/run_end.h"
#include "session/run_log.h"

namespace velora {

class DataPipeRecordset;
struct SessionState;

/// Windows of the component. A host without windows leaves the port empty; asking for one is then a fault.
class Windows {
public:
    virtual ~Windows() = default;
    virtual void open_selection(SessionState& state) = 0;
    virtual void open_options(SessionState& state, WhichFrame frame) = 0;
    virtual void open_emailer(SessionState& state) = 0;
};

/// Everything outside the component, set once by the host.
struct Ports {
    ReportEngine* engine = nullptr;
    Printers* printers = nullptr;
    SettingsStore* settings = nullptr;
    ProfileFile* profiles = nullptr;
    PasswordCipher* cipher = nullptr;
    UserInterface* user = nullptr;
    Windows* windows = nullptr;
    Clock* clock = nullptr;
    Region* region = nullptr;
    std::string application_folder;
    std::string export_file;  ///< a host may name the file of an export itself; blank: folder and name as set up
    /// Sees the finished data pipe of a run before it is delivered; a host may leave it empty.
    std::function<void(const DataPipeRecordset&)> on_pipe;
    bool numbers_outputs = false;  ///< files of one run of several reports get numbers, and empty reports no file
    bool marks_as_printed = true;  ///< a host may print documents without marking them, for a look
    MailTransport* mail = nullptr;
};

/// The state that all procedures share. It starts zeroed, each entry point overwrites what it is given, and nothing
/// clears it.
struct SessionState {
    Ports ports;

    std::shared_ptr<Connection> gConn;
    std::shared_ptr<AccountingSession> gSess;
    bool gWinXP = false;
    WhichEngine gEngine = eDBNone;
    bool gMultiCurr = false;
    std::string gSessUser;
    int32_t gQuoteID = 0;
    WhichReport gWhichReport = eRptQuote;
    bool gOwnQuotes = false;
    int16_t gShowCust = 0;
    std::string gReportSection;

    std::shared_ptr<Recordset> gQuoteStatus;
    std::shared_ptr<Recordset> gQuoteConfid;
    std::shared_ptr<Recordset> gQuoteType;
    std::shared_ptr<Recordset> gReasons;
    std::shared_ptr<Recordset> gDefaults;
    std::vector<ReportListEntry> gReportList;

    bool gExportOK = false;
    std::string gExportFile;

    std::shared_ptr<Recordset> gQuoteDetails;
    std::optional<std::vector<MiscChargeRecord>> gMiscCharges;  ///< none: the array has no storage
    QuoteRecord gQuote;
    TaxSlots gTaxAuthorities;
    int16_t gTaxAuthorityCount = 0;

    std::string gVerAR, gVerAP, gVerIC, gVerGL, gVerOE;

    std::shared_ptr<OpenedReport> gCrReport;
    std::optional<Printer> current_printer;  ///< chosen by a run or in the options; none: the machine's usual one

    double gPrSubTotal = 0;
    double gPrDiscount = 0;
    double gPrNetTotal = 0;
    double gPrTaxTotal = 0;
    double gPrTotal = 0;
    double gPrCost = 0;
    double gPrProfit = 0;
    std::string gPrMargin;
    double gPrWeight = 0;

    RunEnd run_end = RunEnd::Failed;  ///< of the latest run; every operation that prints sets it anew
    RunCache cache;
    RunLog log;
};

/// The connection, the session or another port. @throws Fault 91 when it is not set
Connection& connection(SessionState& state);
AccountingSession& accounting(SessionState& state);
/// @throws Fault 91 when the object is not there
Recordset& opened(const std::shared_ptr<Recordset>& rows, const char* name);

}  // namespace velora
