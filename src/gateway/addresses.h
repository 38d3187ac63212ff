#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// A recordset in the shape of `BillTo` or `ShipTo` with one current row, wherever the address came from.
/// Empty at first; an added row lives in memory only.
using AddressRows = std::shared_ptr<Recordset>;

void Fetch_VLBillTo(SessionState& state, AddressRows& rows, int32_t pBillToID);
void Fetch_ACCPACBillTo(SessionState& state, std::string_view pCustomer, AddressRows& rows);
void Fetch_VLBDefaultAddress(SessionState& state, int32_t pCustomerID, AddressRows& rows);
void Fetch_VLShipTo(SessionState& state, AddressRows& rows, int32_t pShipToID);
/// From the customer's ship-to location, or from the customer where the code is blank. A location that does not
/// exist gives a blank row, without a fallback.
void Fetch_ACCPACShipTo(SessionState& state, std::string_view pCustomer, AddressRows& rows,
                        std::string_view pShipToCode);
void Fetch_VLSDefaultAddress(SessionState& state, int32_t pCustomerID, AddressRows& rows);

/// The two addresses of a document.
struct DocumentAddresses {
    AddressRows bill_to;
    AddressRows ship_to;
};

/// What decides where a document's addresses come from.
struct AddressKeys {
    int16_t CustFrom = 0;
    std::string_view AccpacID;
    int32_t CustomerID = 0;
    int32_t BillToID = 0;
    int32_t ShipToID = 0;
    std::string_view quShipToLoc;
};

// A saved row wins; else the customer's own address, by where the customer lives.
void fetch_bill_to(SessionState& state, const AddressKeys& keys, AddressRows& rows);
void fetch_ship_to(SessionState& state, const AddressKeys& keys, AddressRows& rows);
DocumentAddresses fetch_addresses(SessionState& state, const AddressKeys& keys);

}  // namespace velora
