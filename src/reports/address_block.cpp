#include "reports/address_block.h"

#include <array>

#include "reports/company_block.h"
#include "values/text.h"

namespace velora {

namespace {

template <ColumnName Name>
Outcome bill_to_phone(AddressBlock& block)
{
    return phone_text(block.company, address_field(block.addresses.bill_to, Name.text));
}

template <ColumnName Name>
Outcome ship_to_phone(AddressBlock& block)
{
    return phone_text(block.company, address_field(block.addresses.ship_to, Name.text));
}

// clang-format off
constexpr auto kAddressColumns = std::to_array<Column<AddressBlock>>({
    // name                type        size  value
    {"BillTo Name",       ado::VarChar, 60, bill_to<"btName">},
    {"BillTo Address1",   ado::VarChar, 60, bill_to<"btAddress1">},
    {"BillTo Address2",   ado::VarChar, 60, bill_to<"btAddress2">},
    {"BillTo Address3",   ado::VarChar, 60, bill_to<"btAddress3">},
    {"BillTo Address4",   ado::VarChar, 60, bill_to<"btAddress4">},
    {"BillTo City",       ado::VarChar, 30, bill_to<"btCity">},
    {"BillTo Prov/State", ado::VarChar, 30, bill_to<"btProvState">},
    {"BillTo Country",    ado::VarChar, 30, bill_to<"btCountry">},
    {"BillTo PCZip",      ado::VarChar, 20, bill_to<"btPCZip">},
    {"BillTo Phone",      ado::VarChar, 30, bill_to_phone<"btPhone">},
    {"BillTo Fax",        ado::VarChar, 30, bill_to_phone<"btFax">},
    {"BillTo Contact",    ado::VarChar, 60, bill_to<"btContact">},
    {"ShipTo Name",       ado::VarChar, 60, ship_to<"stName">},
    {"ShipTo Address1",   ado::VarChar, 60, ship_to<"stAddress1">},
    {"ShipTo Address2",   ado::VarChar, 60, ship_to<"stAddress2">},
    {"ShipTo Address3",   ado::VarChar, 60, ship_to<"stAddress3">},
    {"ShipTo Address4",   ado::VarChar, 60, ship_to<"stAddress4">},
    {"ShipTo City",       ado::VarChar, 30, ship_to<"stCity">},
    {"ShipTo Prov/State", ado::VarChar, 30, ship_to<"stProvState">},
    {"ShipTo Country",    ado::VarChar, 30, ship_to<"stCountry">},
    {"ShipTo PCZip",      ado::VarChar, 20, ship_to<"stPCZip">},
    {"ShipTo Phone",      ado::VarChar, 30, ship_to_phone<"stPhone">},
    {"ShipTo Contact",    ado::VarChar, 60, ship_to<"stContact">},
});
// clang-format on
static_assert(well_formed(kAddressColumns));

}  // namespace

std::span<const Column<AddressBlock>> address_columns()
{
    return kAddressColumns;
}

ColumnList<AddressBlock> order_address_columns()
{
    return ColumnList(address_columns())
        .revalue("BillTo Address3", bill_to<"btAddress1">)
        .revalue("BillTo Address4", bill_to<"btAddress2">)
        .revalue("ShipTo Address3", ship_to<"stAddress1">)
        .revalue("ShipTo Address4", ship_to<"stAddress2">);
}

Value address_field(const AddressRows& rows, std::string_view column)
{
    const auto& row = opened(rows, "address");
    const size_t place = row.column(column);
    if (row.at_eof() || row.value(place).is_null()) return Value();
    return trimmed_text(row.value(place));
}

}  // namespace velora
