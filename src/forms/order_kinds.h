#pragma once

#include "session/enumerations.h"

namespace velora::forms {

inline bool is_order_kind(WhichReport kind)
{
    return kind == eRptOrderChecklist || kind == eRptPickingSlip || kind == eRptOrderConfirmation;
}

/// The kinds of the list of order reports: the three, and the menu's "Order" that stands for them all.
inline bool shares_order_list(WhichReport kind)
{
    return kind == eRptAllOrderMenu || is_order_kind(kind);
}

}  // namespace velora::forms
