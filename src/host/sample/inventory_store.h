#pragma once

#include "host/sample/row_writer.h"

namespace velora::sample {

/// Items with their units, prices, stock and tax classes, price lists, locations and customers' contracts.
void write_inventory(RowWriter& out);

}  // namespace velora::sample
