#include "reports/document_parameters.h"

#include <algorithm>

#include "values/fault.h"
#include "values/text.h"

namespace velora {

namespace {

/// The currency as the accounting system knows it. The document goes out without it, with a note instead of a box.
const CurrencyInfo* known_currency(SessionState& state, std::string_view code)
{
    if (!state.gSess) return nullptr;
    auto& session = *state.gSess;
    const size_t errors = session.Errors().size();
    try {
        return &session.GetCurrency(code);
    } catch (const Fault& caught) {
        session.Errors().resize(std::min(errors, session.Errors().size()));
        state.log.note("Amounts are written as the definition says, since the currency \"" +
                       std::string(trimmed(code)) + "\" could not be read: " + caught.description());
        return nullptr;
    }
}

/// The forms of a number above and below zero, as patterns have them.
std::string amount_pattern(const CurrencyInfo& currency)
{
    std::string plain = "#,##0";
    if (currency.Decimals > 0)
        plain.append(1, '.').append(std::min<size_t>(static_cast<size_t>(currency.Decimals), 5), '0');
    switch (currency.NegativeDisplay) {
        case 1:
            return plain + ";" + plain + "-";
        case 3:
            return plain + ";(" + plain + ")";
        default:
            return plain;
    }
}

std::string amount_marks(const CurrencyInfo& currency)
{
    return std::string("en@marks=")
        .append(trimmed(currency.DecimalSeparator))
        .append("|")
        .append(trimmed(currency.ThousandSeparator));
}

bool any_line_includes(Recordset& lines, size_t flag)
{
    for (lines.MoveFirst(); !lines.at_eof(); lines.MoveNext()) {
        const Value& included = lines.value(flag);
        if (!included.is_null() && trimmed(to_text(included)) == "1") return true;
    }
    return false;
}

/// The authorities with a line whose price holds their tax.
std::string included_taxes(Recordset& lines, const TaxSlots& slots)
{
    std::string names;
    if (lines.RecordCount() == 0) return names;
    for (size_t slot = 0; slot < kTaxSlots; ++slot) {
        const std::string_view name = trimmed(slots.at(slot).Authority);
        if (name.empty() || !any_line_includes(lines, lines.column("deTaxIncl" + std::to_string(slot + 1)))) continue;
        names.append(names.empty() ? "" : ", ").append(name);
    }
    return names;
}

}  // namespace

void set_document_parameters(SessionState& state, std::string_view number, std::string_view currency,
                             const TaxSlots& slots)
{
    if (!state.gCrReport) return;
    OpenedReport& report = *state.gCrReport;
    report.SetParameter("Document Number", trimmed(number));
    if (state.gQuoteDetails) {
        const auto taxes = included_taxes(*state.gQuoteDetails, slots);
        if (!taxes.empty()) report.SetParameter("Included Taxes", taxes);
    }
    const auto* known = known_currency(state, currency);
    if (known == nullptr) return;
    report.SetParameter("Amount Pattern", amount_pattern(*known));
    report.SetParameter("Amount Marks", amount_marks(*known));
}

void set_document_parameters(SessionState& state, const QuoteDocument& document)
{
    set_document_parameters(state, document.quote().QuoteNumber, document.currency, document.slots);
}

void set_document_parameters(SessionState& state, const DataPipeRecordset& pipe)
{
    if (!state.gCrReport || pipe.RecordCount() == 0) return;
    const Value& number = pipe.last("Quote Number");
    if (!number.is_null()) state.gCrReport->SetParameter("Document Number", trimmed(to_text(number)));
}

}  // namespace velora
