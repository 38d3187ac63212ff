#include "reports/picking_slip.h"

#include <array>

#include "gateway/accounting_lookups.h"
#include "gateway/quote_record.h"
#include "pricing/amount_display.h"
#include "reports/company_block.h"
#include "reports/detail_lines.h"
#include "reports/detail_rows.h"
#include "reports/document_parameters.h"
#include "reports/pipe_writer.h"
#include "reports/quote_document.h"
#include "reports/run_frame.h"
#include "reports/slip_split.h"
#include "session/company.h"
#include "session/error_messengers.h"
#include "session/value_helpers.h"

namespace velora {

namespace {

constexpr Builder kBuilder{"Print_PickingSlip", kToleratedByOrders, true};
constexpr Mark kMark{"UPDATE [Quote] SET [quPrPickSlip] = 1 WHERE ([QuoteID] = ",
                     "UPDATE Quote SET quPrPickSlip = 1 WHERE (QuoteID = "};
constexpr std::string_view kNotToPick = "ZDEL1111";  // the item number of a line that is not to be picked

/// The line in hand of the slip in hand.
struct SlipRow {
    SessionState& state;
    const SlipSplit& split;
    QueryRow row;
    Checked each =
        Checked(company_default(state, "mdEachLoc"));  ///< says what a range is, even where it does not split

    [[nodiscard]] const QuoteRecord& quote() const { return state.gQuote; }
    [[nodiscard]] bool by_location() const { return each.raised() == 0; }
    [[nodiscard]] bool by_ship_date() const { return each.raised() == 3; }
};

std::string range_text(SlipRow& r)
{
    if (r.by_location()) return trimmed_text(r.row.at<"deLocation">());
    if (!r.by_ship_date()) return r.split.range_name();
    Value date = r.row.at<"deShipDate">();
    return Display_Date(r.state, date);
}

Outcome range(SlipRow& r)
{
    return range_text(r);
}

Outcome range_description(SlipRow& r)
{
    const std::string range = r.by_ship_date() ? compact_date(r.state, r.row.at<"deShipDate">()) : range_text(r);
    return part_of(r.quote().QuoteNumber, range);
}

/// An order that has no number in the accounting system yet goes by its range.
Outcome order_number(SlipRow& r)
{
    const auto number = trimmed(r.quote().quACCPACNum);
    return number.empty() ? range_description(r) : Outcome(number);
}

Outcome shipping_date(SlipRow& r)
{
    return r.by_ship_date() ? as_stored<"deShipDate">(r) : Outcome(r.quote().quDateShip);
}

Outcome item_number(SlipRow& r)
{
    return Return_FormatItem(r.state, r.row.text<"APItem">());
}

Outcome whole_quantity(SlipRow& r)
{
    return to_int16(r.row.at<"deQuantity">());
}

Outcome money(SlipRow& r, Checked amount)
{
    return Outcome::of(amount, [&](double value) {
        std::string currency = r.row.text<"quSourceCurr">();
        return Display_AccpacCurrency(r.state, value, currency, false);
    });
}

Checked unit_price(const SlipRow& r)
{
    return r.row.number<"deQuotedPrice">() * r.row.number<"deConvFactor">();
}

/// Without a row in stock the text is empty.
Outcome quantity_available(SlipRow& r)
{
    Value quantity = Return_QuantityAvailable(r.state, r.row.text<"APItem">(), r.row.text<"deLocation">(),
                                              to_single(r.row.at<"deConvFactor">()));
    return quantity.is_null() ? Outcome("") : Outcome(std::move(quantity));
}

Outcome location_name(SlipRow& r)
{
    return Return_LocationName(r.state, r.row.text<"deLocation">());
}

Outcome printed_before(SlipRow& r)
{
    return int32_t{r.quote().quPrPickSlip ? 1 : 0};
}

// clang-format off
constexpr auto kOrderColumns = std::to_array<Column<SlipRow>>({
    {"Accpac Order Number", ado::VarChar, 30, order_number},
});

constexpr auto kShippingColumns = std::to_array<Column<SlipRow>>({
    {"Shipping Date", ado::Date, 0, shipping_date},
});

constexpr auto kLineColumns = std::to_array<Column<SlipRow>>({
    // name                        type        size  value
    {"Detail Range",              ado::VarChar, 40, range},
    {"Detail Range Desc",         ado::VarChar, 60, range_description},
    {"Detail Item Number",        ado::VarChar, 30, item_number},
    {"Detail Desc",               ado::VarChar, 100, trimmed_column<"deDesc", SlipRow>},
    {"Detail Quantity",           ado::VarChar, 20, trimmed_column<"deQuantity", SlipRow>},
    {"Detail Quote UofM",         ado::VarChar, 15, trimmed_column<"deUofM", SlipRow>},
    {"Detail Unit Price",         ado::VarChar, 30, [](SlipRow& r) { return money(r, unit_price(r)); }},
    {"Detail Amount",             ado::VarChar, 30, [](SlipRow& r) { return money(r, r.row.number<"deQuantity">() * unit_price(r)); }},
    {"Detail Quantity Available", ado::VarChar, 20, quantity_available},
    {"Detail Picking Sequence",   ado::VarChar, 10, trimmed_column<"dePickingSeq", SlipRow>},
    {"Detail Location",           ado::VarChar, 20, trimmed_column<"deLocation", SlipRow>},
    {"Detail Location Desc",      ado::VarChar, 60, location_name},
    {"Detail Lead Time",          ado::VarChar, 60, trimmed_column<"deLeadTime", SlipRow>},
    {"Reprint",                   ado::TinyInt,  0, printed_before},
});
// clang-format on
static_assert(well_formed(kLineColumns));

ColumnList<QuoteDocument> quote_columns()
{
    return ColumnList(quote_header_columns())
        .pick({"Quote Number", "Entered By", "Customer Number", "Customer Contact", "PO Number", "Quote Status",
               "Quote Date", "Quote Type", "Quote Confidence"});
}

ColumnList<QuoteDocument> shipment_columns()
{
    return ColumnList(quote_header_columns())
        .pick({"Location", "Location Desc", "Description", "Reference Number", "Quote Notes", "Ship-To Location",
               "Ship Via", "Ship Via Description"});
}

/// Whole quantities and the comments of the lines come together.
ColumnList<SlipRow> line_columns(bool whole_quantities)
{
    ColumnList<SlipRow> list(kLineColumns);
    if (!whole_quantities) return list;
    return list.retype("Detail Quantity", ado::Integer)
        .revalue("Detail Quantity", whole_quantity)
        .insert_behind("Detail Quantity", {{"Detail Item Comm/Ins", ado::VarChar, 250, line_comment<SlipRow>}});
}

struct SlipFields : PipeLayout {
    Section<CompanyBlock> company = add(ColumnList(company_columns()));
    Section<SlipRow> order = add(ColumnList<SlipRow>(kOrderColumns));
    Section<QuoteDocument> quote = add(quote_columns());
    Section<SlipRow> shipping = add(ColumnList<SlipRow>(kShippingColumns));
    Section<QuoteDocument> shipment = add(shipment_columns());
    Section<AddressBlock> addresses = add(order_address_columns());
    Section<SlipRow> line;

    explicit SlipFields(bool whole_quantities) : line(add(line_columns(whole_quantities))) {}
};

constexpr std::string_view kSelectSqlServer =
    "SELECT [Details].[APItem],[Details].[deDesc],[Details].[deQuantity],"
    "[Details].[deUofM],[Details].[deQuotedPrice],[Details].[deConvFactor],[Details].[deLocation],"
    "[Details].[dePickingSeq],[Details].[deShipDate],[Details].[deLeadTime],[Quote].[quSourceCurr],";
constexpr std::string_view kSelectPervasive =
    "SELECT Details.APItem,Details.deDesc,Details.deQuantity,"
    "Details.deUofM,Details.deQuotedPrice,Details.deConvFactor,Details.deLocation,"
    "Details.dePickingSeq,Details.deShipDate,Details.deLeadTime,Quote.quSourceCurr,";

/// The lines of a slip in the order of the quote.
Query lines_query(const std::string& quote, const std::string& condition)
{
    return {Command::statement(std::string(kSelectSqlServer) +
                               "[Details].[deHasItemCom]FROM [Details] INNER JOIN "
                               "[Quote] ON [Details].[QuoteID] = [Quote].[QuoteID] WHERE ([Details].[QuoteID] =" +
                               quote + ")" + condition + " AND ([deDType] = 20) ORDER BY [Line];"),
            Command::statement(std::string(kSelectPervasive) +
                               "Details.deHasItemCom FROM Details INNER JOIN "
                               "Quote ON Details.QuoteID = Quote.QuoteID WHERE (Details.QuoteID =" +
                               quote + ")" + condition + " AND (deDType = 20) ORDER BY Line")};
}

/// The same with the comments of the lines. Meant: these come in no order that the query asks for.
Query commented_lines_query(const std::string& quote, const std::string& condition)
{
    return {Command::statement(std::string(kSelectSqlServer) +
                               "[Details].[deHasItemCom],[CommIns].[CoInType],[CommIns].[CommIns] "
                               "FROM [Details] INNER JOIN "
                               "[Quote] ON [Details].[QuoteID] = [Quote].[QuoteID] LEFT OUTER JOIN "
                               "[CommIns] ON [Details].[QuoteID] = [CommIns].[QuoteID] AND "
                               "[Details].[Line] = [CommIns].[Line] "
                               "WHERE ([Details].[QuoteID] = " +
                               quote + ")" + condition + " AND ([deDType] = 20)"),
            Command::statement(std::string(kSelectPervasive) +
                               "Details.deHasItemCom,CommIns.CoInType,CommIns.CommIns "
                               "FROM Details INNER JOIN "
                               "Quote ON Details.QuoteID = Quote.QuoteID LEFT OUTER JOIN "
                               "CommIns ON Details.QuoteID = CommIns.QuoteID AND Details.Line = CommIns.Line "
                               "WHERE (Details.QuoteID = " +
                               quote + ")" + condition + " AND (deDType = 20)")};
}

RunEnd cancelled(SessionState& state, std::string_view reason)
{
    tell(state, {"Picking Slip Report Cancelled", std::string(reason) + "\r\nThe report will be cancelled.",
                 Icon::Exclamation});
    return RunEnd::NotFound;
}

bool is_to_be_picked(const QueryRow& row)
{
    const Value& item = row.at<"APItem">();
    return item.is_null() || trimmed_text(item) != kNotToPick;
}

/// What the slips of a run share.
struct Order {
    int32_t id;
    bool whole_quantities;
    SlipFields fields;
    QuoteDocument document;
    AddressBlock addresses;
};

std::unique_ptr<Rows> lines_of_slip(ReportRun& run, const Order& order, const SlipSplit& split)
{
    std::string condition;
    run.statements().attempt("slip condition", [&] { condition = split.condition(run.state()); });
    const auto query = order.whole_quantities ? commented_lines_query : lines_query;
    return stream_query(run.state(), query(std::to_string(order.id), condition));
}

void write_lines(ReportRun& run, Order& order, const SlipSplit& split, DataPipeRecordset& pipe)
{
    const auto rows = lines_of_slip(run, order, split);
    SlipRow line{run.state(), split, QueryRow(*rows)};
    CompanyBlock company{order.addresses.company, true};
    PipeWriter writer(run.state(), pipe, run.statements());
    for (; !rows->at_eof(); rows->MoveNext()) {
        if (!is_to_be_picked(line.row)) continue;
        writer.row([&] {
            writer.write_once(order.fields.company, company);
            writer.write(order.fields.order, line);
            writer.write_once(order.fields.quote, order.document);
            writer.write(order.fields.shipping, line);
            writer.write_once(order.fields.shipment, order.document);
            writer.write_once(order.fields.addresses, order.addresses);
            writer.write(order.fields.line, line);
        });
    }
    rows->Close();
}

/// Says which slip has no line and gets no file.
void note_empty(SessionState& state, const SlipSplit& split)
{
    state.log.note("Slip " + std::to_string(split.slip() + 1) + " of " + std::to_string(split.slips()) + " of quote " +
                   std::string(trimmed(state.gQuote.QuoteNumber)) + " has no lines and no file.");
}

RunEnd print_slip(ReportRun& run, Order& order, const SlipSplit& split)
{
    run.open_definition();
    DataPipeRecordset pipe(order.fields.fields(), run.state().log);
    write_lines(run, order, split, pipe);
    set_document_parameters(run.state(), pipe);
    run.attach(pipe);
    if (run.numbers_files() && pipe.RecordCount() == 0) {
        note_empty(run.state(), split);
        return RunEnd::NoData;
    }
    if (!run.delivery().preview) run.choose_printer([&] { return split.printer(run.state()); });
    return run.route([&] { return document_name(pipe, "Picking Slip"); });
}

/// Prints the slips in turn, and says which of them went out where not all of them did.
RunEnd print_slips(ReportRun& run, Order& order, SlipSplit& split)
{
    std::string went_out;
    const auto tell_what_went_out = [&] {
        if (went_out.empty()) return;
        run.state().log.note("Of the " + std::to_string(split.slips()) + " slips of quote " +
                             std::string(trimmed(run.state().gQuote.QuoteNumber)) + " went out: " + went_out + ".");
    };
    RunEnd end = RunEnd::NoData;
    try {
        for (size_t slip = 0; slip < split.slips(); ++slip) {
            split.take(slip);
            const RunEnd went = print_slip(run, order, split);
            if (went != RunEnd::NoData && end != RunEnd::Failed) end = went;
            if (went == RunEnd::Delivered) went_out += (went_out.empty() ? "" : ", ") + std::to_string(slip + 1);
        }
    } catch (...) {
        tell_what_went_out();
        throw;
    }
    if (end != RunEnd::Delivered) tell_what_went_out();
    return end;
}

}  // namespace

RunEnd Print_PickingSlip(SessionState& state, int32_t pQuoteID, const std::string& pReportString, bool pPreview,
                         bool pExportIt, bool pQuantAsInt)
{
    return run_report(state, kBuilder, {pReportString, pPreview, pExportIt}, [&](ReportRun& run) {
        if (!Fetch_QuoteInfo(state, state.gQuote, pQuoteID)) {
            return cancelled(state, "The selected Quote information could not be found.");
        }
        Get_DetailPrRecordset(state, pQuoteID);
        SlipSplit split(state, run.statements());
        if (split.lacks_ranges()) {
            return cancelled(state, "The required Location or Picking Slip ranges could not be found.");
        }
        Order order{pQuoteID, pQuantAsInt, SlipFields(pQuantAsInt), QuoteDocument{state}, quote_addresses(state)};
        const RunEnd end = print_slips(run, order, split);
        run.mark(kMark, pQuoteID, end);
        return end;
    });
}

std::vector<PipeField> picking_slip_fields()
{
    return SlipFields(false).fields();
}

std::vector<PipeField> whole_quantity_slip_fields()
{
    return SlipFields(true).fields();
}

}  // namespace velora
