#include "reports/quote_report.h"

#include <array>

#include "gateway/quote_record.h"
#include "pricing/charges.h"
#include "reports/company_block.h"
#include "reports/detail_lines.h"
#include "reports/print_totals.h"
#include "reports/quote_document.h"
#include "reports/quote_rows.h"
#include "reports/run_frame.h"
#include "session/error_messengers.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr std::array<int32_t, 4> kTolerated{fault::kOverflow, fault::kSubscript, fault::kDivisionByZero, fault::kNull};

/// Fills the pipe row by row: first what the whole document shares, carried from row to row, then the line's own.
class QuotePipe {
public:
    QuotePipe(QuoteDocument& document, DataPipeRecordset& pipe)
        : document_(document),
          pipe_(pipe),
          statements_(document.state, kTolerated),
          row_{document, opened(document.state.gQuoteDetails, "gQuoteDetails"),
               LineColumns(opened(document.state.gQuoteDetails, "gQuoteDetails"))}
    {
    }

    void fill()
    {
        auto& state = document_.state;
        const size_t lines = row_.line.RecordCount();
        const size_t charges = state.gMiscCharges ? state.gMiscCharges->size() : 0;
        if (!state.gMiscCharges) statements_.settle("charges", fault::kSubscript);
        for (size_t at = 1; at <= lines + charges; ++at) {
            statements_.at_row(at);
            pipe_.AddNew();
            if (at == 1) write_document_header();
            if (at > lines) {
                write_charge((*state.gMiscCharges)[at - lines - 1]);
            } else {
                row_.line.AbsolutePosition(at);
                row_.is_item() ? write_item() : write_comment();
            }
            if (at == 1) write_document_totals();
            pipe_.Update();
            if (state.ports.user != nullptr && at % 256 == 0) state.ports.user->progress(at, lines + charges);
        }
    }

private:
    static constexpr size_t kCompanyStart = 0;

    void write_document_header()
    {
        CompanyBlock company{accounting(document_.state).Company(), true};
        write_columns(pipe_, statements_, kCompanyStart, quote_company_columns(), company);
        write_columns(pipe_, statements_, header_start(), quote_header_columns(), document_);
        carry_fields(pipe_, kCompanyStart, detail_start());
    }

    void write_document_totals()
    {
        write_columns(pipe_, statements_, totals_start(), quote_total_columns(), document_);
        carry_fields(pipe_, totals_start(), quote_total_columns().size());
    }

    void write_item()
    {
        prepare_item_row(row_, statements_);
        write_details([](const DetailColumn& column) { return column.item; }, row_);
    }

    void write_comment()
    {
        write_details([](const DetailColumn& column) { return column.comment; }, row_);
    }

    /// Charges go on with the numbering behind the last line, as far as 16 bits reach.
    void write_charge(const MiscChargeRecord& record)
    {
        statements_.attempt("last line number", [&] { row_.last_line = to_int16(row_.last_line + 1); });
        ChargeRow charge{document_, record, row_.last_line};
        write_details([](const DetailColumn& column) { return column.charge; }, charge);
    }

    template <class Choose, class Source>
    void write_details(Choose choose, Source& source)
    {
        size_t field = detail_start();
        for (const auto& column : quote_detail_columns()) {
            if (const auto value = choose(column)) {
                statements_.attempt(column.name, [&] { write_field(pipe_, statements_, field, value(source)); });
            }
            ++field;
        }
    }

    static size_t header_start() { return quote_company_columns().size(); }
    static size_t detail_start() { return header_start() + quote_header_columns().size(); }
    static size_t totals_start() { return detail_start() + quote_detail_columns().size(); }

    QuoteDocument& document_;
    DataPipeRecordset& pipe_;
    Statements statements_;
    DetailRow row_;
};

RunEnd not_found(SessionState& state)
{
    tell(state,
         {"Quote Report Cancelled",
          "The selected Quote information could not be found.\r\nThe report will be cancelled.", Icon::Exclamation});
    return RunEnd::NotFound;
}

std::string bill_to_name(const QuoteDocument& document)
{
    const Value name = document.bill_to("btName");
    return name.is_null() ? std::string() : to_text(name);
}

}  // namespace

RunEnd Print_Quote(SessionState& state, int32_t pQuoteID, const std::string& pReportString, int16_t, bool pPreview,
                   bool pExportIt)
{
    return run_report(state, "Print_Quote", [&] {
        open_definition(state, pReportString);
        DataPipeRecordset pipe(quote_fields(), state.log);
        if (!Fetch_QuoteInfo(state, state.gQuote, pQuoteID)) return not_found(state);
        Get_DetailPrRecordset(state, pQuoteID);
        Get_MiscChargeInfo(state, state.gMiscCharges, pQuoteID, state.gQuote.quCurCode);
        QuoteDocument document = load_quote_document(state);
        if (state.gQuoteDetails) Calculate_PrintTotals(state, pQuoteID, document.slot_count, document.slots);
        QuotePipe(document, pipe).fill();
        attach_pipe(state, pipe);
        choose_printer(state, printer_setting(state));
        return route_output(state, {pReportString, pPreview, pExportIt},
                            std::string(trimmed(state.gQuote.QuoteNumber)) + " - " + bill_to_name(document));
    });
}

std::vector<PipeField> quote_fields()
{
    std::vector<PipeField> fields;
    append_fields(fields, quote_company_columns());
    append_fields(fields, quote_header_columns());
    append_fields(fields, quote_detail_columns());
    append_fields(fields, quote_total_columns());
    return fields;
}

}  // namespace velora
