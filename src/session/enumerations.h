#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace velora {

/// Report kinds as the host names them.
enum WhichReport : int32_t {
    eRptAllOrderMenu = -1,  ///< the selection form's own: its menu entry that lists all order reports
    eRptQuote = 0,
    eRptCustomerList = 1,
    eRptItemList = 2,
    eRptWinLossGraph = 3,
    eRptLostReasonGraph = 4,
    eRptOverviewQuotes = 5,
    eRptOrderChecklist = 6,
    eRptPickingSlip = 7,
    eRptOrderConfirmation = 8,
    eRptExpireQuotes = 9,
    eRptAllOrder = 10,
    eRptBackOrder = 11,
    eRptCustom = 22,
};

/// The database engine decides the dialect of every query; with `eDBNone` no query is opened at all.
enum WhichEngine : int32_t { eDBNone = 0, eDBSQLServer = 1, eDBPervasive = 2 };

/// The pane that the options dialog opens on.
enum WhichFrame : int32_t {
    eFPrinter = 0,
    eFRptQuote = 1,
    eFRptExpiration = 2,
    eFRptChecklist = 3,
    eFRptConfirmation = 4,
    eFRptPickingSlip = 5,
    eFExport = 6,
    eFEmail = 7,
    eFLogFile = 8,
    eFMiscOptions = 9,
};

/// One tax authority slot of a tax group.
struct vlTaxInformation {
    std::string Authority;
    std::string TaxClass;
    bool CascadeTax = false;
    std::string RegNumber;
    float Amount = 0;
};

/// Slots 1 to 5 stand at the positions 0 to 4: slot n goes with the n-numbered tax fields of quote, line and charge.
inline constexpr size_t kTaxSlots = 5;
using TaxSlots = std::array<vlTaxInformation, kTaxSlots>;

}  // namespace velora
