#pragma once

#include "values/value.h"

namespace velora {

// What the numbers of a detail line say of it. Each is the number at the start of its text.

/// `deDType`: an item line; anything else, a null too, is a comment.
inline bool is_item_line(const Value& detail_type)
{
    constexpr double kItemLine = 20;
    return !detail_type.is_null() && numeric_value(detail_type) == kItemLine;
}

/// `deIType`, where a price hangs on it: an item of the accounting system; any other number is one of the product's
/// own.
/// @throws Fault 94 for a null
inline bool is_accounting_item(const Value& item_type)
{
    constexpr double kAccountingItem = 30;
    return numeric_value(item_type) == kAccountingItem;
}

/// The same where it is only shown: a null is one of the product's own, too.
inline bool shows_accounting_item(const Value& item_type)
{
    return !item_type.is_null() && is_accounting_item(item_type);
}

}  // namespace velora
