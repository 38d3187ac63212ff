#include "gateway/quote_record.h"

#include <variant>

#include "gateway/accounting_lookups.h"
#include "gateway/database_lookups.h"
#include "session/error_messengers.h"
#include "session/query.h"
#include "session/settings.h"
#include "values/text.h"

namespace velora {

namespace {

using Member = std::variant<int32_t QuoteRecord::*, int16_t QuoteRecord::*, float QuoteRecord::*, double QuoteRecord::*,
                            bool QuoteRecord::*, std::string QuoteRecord::*, DateTime QuoteRecord::*>;

struct Column {
    std::string_view name;
    Member member;
};

// clang-format off
/// The columns up to the currency, whose completion stands between the two lists.
constexpr auto kColumnsToCurrency = std::to_array<Column>({
    {"QuoteID",        &QuoteRecord::QuoteID},        {"QuoteNumber",   &QuoteRecord::QuoteNumber},
    {"CustFrom",       &QuoteRecord::CustFrom},       {"CustomerID",    &QuoteRecord::CustomerID},
    {"AccpacID",       &QuoteRecord::AccpacID},       {"CustContact",   &QuoteRecord::CustContact},
    {"BillToID",       &QuoteRecord::BillToID},       {"ShipToID",      &QuoteRecord::ShipToID},
    {"QuoteStatusID",  &QuoteRecord::QuoteStatusID},  {"QuoteTypeID",   &QuoteRecord::QuoteTypeID},
    {"QuoteConfidID",  &QuoteRecord::QuoteConfidID},  {"quACCPACNum",   &QuoteRecord::quACCPACNum},
    {"quPONumber",     &QuoteRecord::quPONumber},     {"quDateEnter",   &QuoteRecord::quDateEnter},
    {"quDateShip",     &QuoteRecord::quDateShip},     {"quDateExpire",  &QuoteRecord::quDateExpire},
    {"quDateTransfer", &QuoteRecord::quDateTransfer}, {"quUserEnter",   &QuoteRecord::quUserEnter},
    {"quCompany",      &QuoteRecord::quCompany},      {"quDateModify",  &QuoteRecord::quDateModify},
    {"quUserModify",   &QuoteRecord::quUserModify},   {"quLocation",    &QuoteRecord::quLocation},
    {"quDesc",         &QuoteRecord::quDesc},         {"quReference",   &QuoteRecord::quReference},
    {"quLines",        &QuoteRecord::quLines},        {"quNotes",       &QuoteRecord::quNotes},
    {"quShipToLoc",    &QuoteRecord::quShipToLoc},    {"quShipVia",     &QuoteRecord::quShipVia},
    {"quShipViaDesc",  &QuoteRecord::quShipViaDesc},  {"quFOBPoint",    &QuoteRecord::quFOBPoint},
    {"quCustomerType", &QuoteRecord::quCustomerType}, {"quPriceList",   &QuoteRecord::quPriceList},
    {"quTaxGroup",     &QuoteRecord::quTaxGroup},     {"quTermsCode",   &QuoteRecord::quTermsCode},
    {"quCurCode",      &QuoteRecord::quCurCode},
});

constexpr auto kColumnsBehindShares = std::to_array<Column>({
    {"quRevision",   &QuoteRecord::quRevision},   {"quOriginal",   &QuoteRecord::quOriginal},
    {"quHomeCurr",   &QuoteRecord::quHomeCurr},   {"quSourceCurr", &QuoteRecord::quSourceCurr},
    {"quRateType",   &QuoteRecord::quRateType},   {"quRateDate",   &QuoteRecord::quRateDate},
    {"quRateEx",     &QuoteRecord::quRateEx},     {"quOnHold",     &QuoteRecord::quOnHold},
    {"quOverCredit", &QuoteRecord::quOverCredit}, {"quCrApprLimit", &QuoteRecord::quCrApprLimit},
});

constexpr auto kLastColumns = std::to_array<Column>({
    {"quPrPickSlip", &QuoteRecord::quPrPickSlip}, {"quPrConfirm", &QuoteRecord::quPrConfirm},
    {"quComplete",   &QuoteRecord::quComplete},   {"quBOfor",     &QuoteRecord::quBOfor},
});
// clang-format on

/// A null is a failure of the load, but for the transfer date: an untransferred quote has none.
DateTime read_date(const Column& column, const Value& cell)
{
    if (cell.is_null() && column.name == "quDateTransfer") return {};
    return to_date(cell);
}

void read(const Recordset& row, const Column& column, QuoteRecord& record)
{
    const Value& cell = row.value(column.name);
    std::visit(
        [&](auto member) {
            using Type = std::remove_reference_t<decltype(record.*member)>;
            if constexpr (std::is_same_v<Type, int32_t>) record.*member = to_int32(cell);
            if constexpr (std::is_same_v<Type, int16_t>) record.*member = to_int16(cell);
            if constexpr (std::is_same_v<Type, float>) record.*member = to_single(cell);
            if constexpr (std::is_same_v<Type, double>) record.*member = to_number(cell);
            if constexpr (std::is_same_v<Type, bool>) record.*member = to_bool(cell);
            if constexpr (std::is_same_v<Type, std::string>) record.*member = to_text(cell);
            if constexpr (std::is_same_v<Type, DateTime>) record.*member = read_date(column, cell);
        },
        column.member);
}

void read_five(const Recordset& row, std::string_view name, std::array<std::string, 5>& members)
{
    for (size_t n = 0; n < members.size(); ++n) {
        members[n] = to_text(row.value(std::string(name) + std::to_string(n + 1)));
    }
}

/// A quote without a currency takes its customer's, in a single-currency company that of the company.
void complete_currency(SessionState& state, QuoteRecord& record)
{
    if (!trimmed(record.quCurCode).empty()) return;
    const auto& company = accounting(state).Company();
    if (!company.Multicurrency) {
        record.quCurCode = trimmed(company.HomeCurrency);
    } else if (record.CustFrom == 0) {
        record.quCurCode = Return_CustCurCode(state, record.AccpacID);
    } else {
        record.quCurCode = Return_VLCustCurCode(state, record.CustomerID);
    }
}

void read_record(SessionState& state, const Recordset& row, QuoteRecord& record)
{
    for (const auto& column : kColumnsToCurrency) read(row, column, record);
    complete_currency(state, record);
    read(row, {"quEmail", &QuoteRecord::quEmail}, record);
    read_five(row, "quTaxClass", record.quTaxClass);
    read_five(row, "quRegNumber", record.quRegNumber);
    read_five(row, "quSalesperson", record.quSalesperson);
    for (size_t n = 0; n < record.quPercentSS.size(); ++n) {
        record.quPercentSS[n] = to_single(row.value("quPercentSS" + std::to_string(n + 1)));
    }
    for (const auto& column : kColumnsBehindShares) read(row, column, record);
    record.quCrApproval = trimmed_text(row.value("quCrApproval"));
    record.quCrApprPwd = Decrypt(state, to_text(row.value("quCrApprPwd")));
    for (const auto& column : kLastColumns) read(row, column, record);
}

}  // namespace

bool Fetch_QuoteInfo(SessionState& state, QuoteRecord& record, int32_t quoteID)
{
    bool found = false;
    with_failure_path(state, ErrorADO, "modGeneral.Fetch_QuoteInfo", [&] {
        const auto rows = open_query(
            state, {Command::procedure("sprQuoteOneID", {Command::Parameter::integer("QID", quoteID)}),
                    Command::statement("SELECT * FROM Quote WHERE (QuoteID =" + std::to_string(quoteID) + ")")});
        if (move_to_first(*rows)) {
            read_record(state, *rows, record);
            found = true;
        }
        rows->Close();
    });
    return found;
}

}  // namespace velora
