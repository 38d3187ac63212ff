#pragma once

#include <span>
#include <string>

#include "gateway/addresses.h"
#include "reports/columns.h"

namespace velora {

/// The two addresses of a document, under the same field names wherever they came from.
struct AddressBlock {
    const CompanyInfo& company;
    DocumentAddresses addresses;
};

/// 12 fields of the bill-to and 11 of the ship-to address.
std::span<const Column<AddressBlock>> address_columns();
/// As the order documents print them: the third and fourth address lines repeat the first and second on purpose.
ColumnList<AddressBlock> order_address_columns();

/// A trimmed field of an address; null where the address has no row.
/// @throws Fault 91 for an address that was never fetched, 3265 for one that could not be opened
Value address_field(const AddressRows& rows, std::string_view column);

template <ColumnName Name>
Outcome bill_to(AddressBlock& block)
{
    return address_field(block.addresses.bill_to, Name.text);
}

template <ColumnName Name>
Outcome ship_to(AddressBlock& block)
{
    return address_field(block.addresses.ship_to, Name.text);
}

}  // namespace velora
