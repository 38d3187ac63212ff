#include "gateway/addresses.h"

#include <array>
#include <span>

#include "gateway/view_reading.h"
#include "session/error_messengers.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

/// One kind of address: the table, how it is read by key, and its column prefix.
struct AddressKind {
    std::string_view name;  ///< of the procedure that opens a saved row
    std::string_view procedure;
    std::string_view parameter;
    std::string_view text;
    std::string_view prefix;
};

constexpr AddressKind kBillTo{"modGeneral.Fetch_VLBillTo", "sprBillToOne", "BTID",
                              "SELECT * FROM BillTo WHERE (BillToID=", "bt"};
constexpr AddressKind kShipTo{"modGeneral.Fetch_VLShipTo", "sprShipToOne", "STID",
                              "SELECT * FROM ShipTo WHERE (ShipToID=", "st"};

struct AddressField {
    std::string_view field;  // behind the prefix
    std::string_view source;
};

// clang-format off
constexpr auto kFromCustomerView = std::to_array<AddressField>({
    {"Name", "NAMECUST"}, {"Address1", "TEXTSTRE1"}, {"Address2", "TEXTSTRE2"}, {"Address3", "TEXTSTRE3"},
    {"Address4", "TEXTSTRE4"}, {"City", "NAMECITY"}, {"ProvState", "CODESTTE"}, {"Country", "CODECTRY"},
    {"PCZip", "CODEPSTL"}, {"Phone", "TEXTPHON1"}, {"Fax", "TEXTPHON2"}, {"Contact", "NAMECTAC"},
});
constexpr auto kFromLocationView = std::to_array<AddressField>({
    {"Name", "NAMELOCN"}, {"Address1", "TEXTSTRE1"}, {"Address2", "TEXTSTRE2"}, {"Address3", "TEXTSTRE3"},
    {"Address4", "TEXTSTRE4"}, {"City", "NAMECITY"}, {"ProvState", "CODESTTE"}, {"Country", "CODECTRY"},
    {"PCZip", "CODEPSTL"}, {"Phone", "TEXTPHON1"}, {"Fax", "TEXTPHON2"}, {"Contact", "NAMECTAC"},
    {"Instructions", "SPCLINST"},
});
/// The third and fourth address lines stay unset on purpose.
constexpr auto kFromCustomerTable = std::to_array<AddressField>({
    {"Name", "cuFullName"}, {"Address1", "cuAddress1"}, {"Address2", "cuAddress2"}, {"City", "cuCity"},
    {"ProvState", "cuProvState"}, {"Country", "cuCountry"}, {"PCZip", "cuPCZip"}, {"Phone", "cuPhone"},
    {"Fax", "cuFax"}, {"Contact", "cuContact"},
});
// clang-format on

std::string column(const AddressKind& kind, std::string_view field)
{
    return std::string(kind.prefix).append(field);
}

void fetch_saved(SessionState& state, const AddressKind& kind, AddressRows& rows, int32_t id)
{
    with_failure_path(state, ErrorADO, kind.name, [&] {
        open_query(state, rows,
                   {Command::procedure(std::string(kind.procedure),
                                       {Command::Parameter::integer(std::string(kind.parameter), id)}),
                    Command::statement(std::string(kind.text) + std::to_string(id) + ")")});
        move_to_first(*rows);
    });
}

/// An empty reference becomes a recordset in the table's shape with one blank row. Where the table cannot be opened
/// that has been told already, and the row is a fault of the caller too.
void add_row_if_empty(SessionState& state, const AddressKind& kind, AddressRows& rows)
{
    if (rows) return;
    constexpr int32_t kNoSuchRow = -1;
    fetch_saved(state, kind, rows, kNoSuchRow);
    rows->AddNew();
}

void fill_from_view(SessionState& state, const AddressKind& kind, Recordset& row, std::string_view customer)
{
    OpenedView view(state, "AR0024");
    view.put_key("IDCUST", customer);
    if (view.read()) {
        for (const auto& [field, source] : kFromCustomerView) row.put(column(kind, field), view.text(source));
    }
}

void fill_from_location(SessionState& state, Recordset& row, std::string_view customer, std::string_view code)
{
    OpenedView view(state, "AR0023");
    view.put_key("IDCUST", customer);
    view.put_key("IDCUSTSHPT", code);
    if (view.read()) {
        row.put("stCode", code);
        for (const auto& [field, source] : kFromLocationView) row.put(column(kShipTo, field), view.text(source));
    }
}

void fill_from_table(SessionState& state, const AddressKind& kind, AddressRows& rows, int32_t customer)
{
    add_row_if_empty(state, kind, rows);
    const auto source = open_query(
        state, {Command::procedure("sprCustomerOneID", {Command::Parameter::integer("CID", customer)}),
                Command::statement("SELECT * FROM Customer WHERE (CustomerID=" + std::to_string(customer) + ")")});
    if (move_to_first(*source)) {
        for (const auto& [field, name] : kFromCustomerTable) {
            rows->put(column(kind, field), trimmed_text(source->value(name)));
        }
    }
    source->Close();
}

}  // namespace

void Fetch_VLBillTo(SessionState& state, AddressRows& rows, int32_t pBillToID)
{
    fetch_saved(state, kBillTo, rows, pBillToID);
}

void Fetch_VLShipTo(SessionState& state, AddressRows& rows, int32_t pShipToID)
{
    fetch_saved(state, kShipTo, rows, pShipToID);
}

void Fetch_ACCPACBillTo(SessionState& state, std::string_view pCustomer, AddressRows& rows)
{
    with_failure_path(state, ErrorACCPAC, "modGeneral.Fetch_ACCPACBillTo", [&] {
        const auto customer = trimmed(pCustomer);
        if (customer.empty()) return;
        add_row_if_empty(state, kBillTo, rows);
        fill_from_view(state, kBillTo, *rows, customer);
    });
}

void Fetch_ACCPACShipTo(SessionState& state, std::string_view pCustomer, AddressRows& rows,
                        std::string_view pShipToCode)
{
    with_failure_path(state, ErrorACCPAC, "modGeneral.Fetch_ACCPACShipTo", [&] {
        const auto customer = trimmed(pCustomer);
        if (customer.empty()) return;
        add_row_if_empty(state, kShipTo, rows);
        const auto code = trimmed(pShipToCode);
        if (code.empty()) {
            fill_from_view(state, kShipTo, *rows, customer);
        } else {
            fill_from_location(state, *rows, customer, code);
        }
    });
}

void Fetch_VLBDefaultAddress(SessionState& state, int32_t pCustomerID, AddressRows& rows)
{
    with_failure_path(state, ErrorADO, "modGeneral.Fetch_VLBDefaultAddress",
                      [&] { fill_from_table(state, kBillTo, rows, pCustomerID); });
}

void Fetch_VLSDefaultAddress(SessionState& state, int32_t pCustomerID, AddressRows& rows)
{
    with_failure_path(state, ErrorADO, "modGeneral.Fetch_VLSDefaultAddress",
                      [&] { fill_from_table(state, kShipTo, rows, pCustomerID); });
}

void fetch_bill_to(SessionState& state, const AddressKeys& keys, AddressRows& rows)
{
    if (keys.BillToID != 0) return Fetch_VLBillTo(state, rows, keys.BillToID);
    if (keys.CustFrom != 0) return Fetch_VLBDefaultAddress(state, keys.CustomerID, rows);
    Fetch_ACCPACBillTo(state, keys.AccpacID, rows);
}

void fetch_ship_to(SessionState& state, const AddressKeys& keys, AddressRows& rows)
{
    if (keys.ShipToID != 0) return Fetch_VLShipTo(state, rows, keys.ShipToID);
    if (keys.CustFrom != 0) return Fetch_VLSDefaultAddress(state, keys.CustomerID, rows);
    Fetch_ACCPACShipTo(state, keys.AccpacID, rows, keys.quShipToLoc);
}

DocumentAddresses fetch_addresses(SessionState& state, const AddressKeys& keys)
{
    DocumentAddresses found;
    fetch_bill_to(state, keys, found.bill_to);
    fetch_ship_to(state, keys, found.ship_to);
    return found;
}

}  // namespace velora
