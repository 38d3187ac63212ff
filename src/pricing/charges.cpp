#include "pricing/charges.h"

#include "gateway/view_reading.h"
#include "session/error_messengers.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

void read_charge(const Recordset& row, MiscChargeRecord& charge)
{
    charge.ChargeID = to_int32(row.value("ChargeID"));
    charge.QuoteID = to_int32(row.value("QuoteID"));
    charge.Line = to_int16(row.value("Line"));
    charge.ChargeCode = to_text(row.value("ChargeCode"));
    charge.ChDesc = to_text(row.value("ChDesc"));
    charge.Amount = to_single(row.value("Amount"));
    for (size_t n = 0; n < kTaxSlots; ++n) {
        charge.TaxClass[n] = to_text(row.value("TaxClass" + std::to_string(n + 1)));
    }
    for (size_t n = 0; n < kTaxSlots; ++n) {
        charge.TaxIncl[n] = to_text(row.value("TaxIncl" + std::to_string(n + 1)));
    }
}

/// The description saved with the quote wins; the account always comes from the accounting system.
void complete_charge(OpenedView& view, std::string_view currency, MiscChargeRecord& charge)
{
    view.browse(
        std::string("CURRENCY = ").append(currency).append(" AND MISCCHARGE = ").append(trimmed(charge.ChargeCode)));
    if (!view.fetch()) return;
    if (trimmed(charge.ChDesc).empty()) charge.ChDesc = view.text("DESC");
    charge.MiscAccount = view.text("MISCACCT");
    charge.MiscAccountDesc = view.text("MISCACDESC");
    view.cancel();
}

void load_charges(SessionState& state, Recordset& rows, std::string_view currency,
                  std::vector<MiscChargeRecord>& charges)
{
    OpenedView view(state, "OE0440");
    OpenedView details(state, "OE0460");
    compose(view, 1, {{0, &details}});
    compose(details, 1, {{0, &view}});
    charges.resize(rows.RecordCount());
    rows.MoveFirst();
    for (auto& charge : charges) {
        read_charge(rows, charge);
        complete_charge(view, currency, charge);
        rows.MoveNext();
    }
}

}  // namespace

bool Get_MiscChargeInfo(SessionState& state, std::optional<std::vector<MiscChargeRecord>>& charges, int32_t quoteID,
                        std::string_view currency)
{
    bool found = false;
    charges.reset();
    with_failure_path(state, ErrorACCPAC, "modGeneral.Get_MiscChargeInfo", [&] {
        const auto rows = open_query(
            state, {Command::procedure("sprMiscChargeAll", {Command::Parameter::integer("QID", quoteID)}),
                    Command::statement("SELECT * FROM DMiscCharge WHERE (QuoteID=" + std::to_string(quoteID) +
                                       ") ORDER BY Line")});
        if (!rows->is_empty()) {
            const std::string lookup_currency(state.gMultiCurr ? trimmed(currency)
                                                               : accounting(state).Company().HomeCurrency);
            load_charges(state, *rows, lookup_currency, charges.emplace());
            found = true;
        }
        rows->Close();
    });
    return found;
}

}  // namespace velora
