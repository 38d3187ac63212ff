#include "reports/checklist.h"

#include <array>

#include "gateway/database_lookups.h"
#include "reports/address_block.h"
#include "reports/company_block.h"
#include "reports/document_parameters.h"
#include "reports/pipe_writer.h"
#include "reports/run_frame.h"
#include "session/company.h"
#include "session/query.h"
#include "session/value_helpers.h"

namespace velora {

namespace {

constexpr Builder kBuilder{"Print_Checklist", kToleratedByOrders};

/// By what an order is listed: the company's "each location". Any other number asks for ranges that nobody loads.
enum Each : int16_t { kLocation = 0, kLocationRange = 1, kPickingRange = 2, kShipDate = 3 };

bool goes_by_ranges(int16_t each)
{
    return each != kLocation && each != kShipDate;
}

/// A distinct part of the order.
struct OrderPart {
    SessionState& state;
    QueryRow row;
    int16_t each;
    const Recordset* range = nullptr;  ///< on the row that the part lies in, where the order goes by ranges
};

/// A text that a list by ranges leaves empty.
template <ColumnName Name>
Outcome unless_by_ranges(OrderPart& p)
{
    return goes_by_ranges(p.each) ? Outcome::unwritten() : trimmed_column<Name>(p);
}

Outcome customer_number(OrderPart& p)
{
    if (to_number(p.row.at<"CustFrom">()) == 0) return trimmed_cell(p.row.at<"AccPacID">());
    return trimmed(Return_VLCustomer(p.state, to_int32(p.row.at<"CustomerID">())));
}

std::string part_name(OrderPart& p)
{
    if (p.range != nullptr) return trimmed_text(p.range->value("RName"));
    const Value& part = p.row.at<"Range">();
    const auto* date = part.get_if<DateTime>();
    return date != nullptr ? plain_date(p.state, *date) : trimmed_text(part);
}

Outcome part(OrderPart& p)
{
    return part_name(p);
}

Outcome part_description(OrderPart& p)
{
    const std::string name = p.each == kShipDate ? compact_date(p.state, p.row.at<"Range">()) : part_name(p);
    return part_of(p.row.text<"QuoteNumber">(), name);
}

// clang-format off
constexpr auto kOrderColumns = std::to_array<Column<OrderPart>>({
    // name                   type        size  value
    {"Quote Number",         ado::VarChar,  30, trimmed_column<"QuoteNumber", OrderPart>},
    {"Customer Number",      ado::VarChar,  20, customer_number},
    {"Customer Contact",     ado::VarChar,  60, trimmed_column<"CustContact", OrderPart>},
    {"PO Number",            ado::VarChar,  30, trimmed_column<"quPONumber", OrderPart>},
    {"Quote Date",           ado::Date,      0, as_stored<"quDateEnter", OrderPart>},
    {"User Entered",         ado::VarChar,  20, unless_by_ranges<"quUserEnter">},
    {"Shipping Date",        ado::Date,      0, as_stored<"quDateShip", OrderPart>},
    {"Description",          ado::VarChar, 100, trimmed_column<"quDesc", OrderPart>},
    {"Reference Number",     ado::VarChar,  60, trimmed_column<"quReference", OrderPart>},
    {"Detail Lines",         ado::VarChar,  10, trimmed_column<"quLines", OrderPart>},
    {"Ship-To Location",     ado::VarChar,  15, trimmed_column<"quShipToLoc", OrderPart>},
    {"Ship Via",             ado::VarChar,  15, trimmed_column<"quShipVia", OrderPart>},
    {"Ship Via Description", ado::VarChar,  60, trimmed_column<"quShipViaDesc", OrderPart>},
    {"FOB Point",            ado::VarChar,  60, trimmed_column<"quFOBPoint", OrderPart>},
    {"Email Address",        ado::VarChar,  60, trimmed_column<"quEmail", OrderPart>},
});

constexpr auto kSalespersonColumns = std::to_array<Column<OrderPart>>({
    {"Salesperson 1", ado::VarChar, 20, unless_by_ranges<"quSalesperson1">},
    {"Salesperson 2", ado::VarChar, 20, unless_by_ranges<"quSalesperson2">},
    {"Salesperson 3", ado::VarChar, 20, unless_by_ranges<"quSalesperson3">},
    {"Salesperson 4", ado::VarChar, 20, unless_by_ranges<"quSalesperson4">},
    {"Salesperson 5", ado::VarChar, 20, unless_by_ranges<"quSalesperson5">},
});

constexpr auto kPartColumns = std::to_array<Column<OrderPart>>({
    {"Detail Range",      ado::VarChar, 20, part},
    {"Detail Range Desc", ado::VarChar, 60, part_description},
});
// clang-format on
static_assert(well_formed(kOrderColumns));

struct ChecklistFields : PipeLayout {
    Section<CompanyBlock> company = add(ColumnList(company_columns()));
    Section<OrderPart> order = add(ColumnList<OrderPart>(kOrderColumns));
    Section<AddressBlock> addresses = add(order_address_columns());
    Section<OrderPart> salespersons = add(ColumnList<OrderPart>(kSalespersonColumns));
    Section<OrderPart> part = add(ColumnList<OrderPart>(kPartColumns));
};

constexpr std::string_view kSelectSqlServer =
    "SELECT DISTINCT [Quote].[QuoteID],[Quote].[QuoteNumber],[Quote].[CustFrom],[Quote].[AccPacID],"
    "[Quote].[CustomerID],[Quote].[CustName],[Quote].[BillToID],[Quote].[ShipToID],[Quote].[quPONumber],"
    "[Quote].[quDateEnter],[Quote].[quDateShip],[Quote].[quDesc],[Quote].[quReference],[Quote].[quLines],"
    "[Quote].[quShipToLoc],[Quote].[quShipVia],[Quote].[quShipViaDesc],[Quote].[quFOBPoint],"
    "[Quote].[quEmail],[Quote].[CustContact],[Quote].[quUserEnter],[Quote].[quSalesperson1],[Quote].[quSalesperson2],"
    "[Quote].[quSalesperson3],[Quote].[quSalesperson4],[Quote].[quSalesperson5],";
constexpr std::string_view kSelectPervasive =
    "SELECT DISTINCT Quote.QuoteID,Quote.QuoteNumber,Quote.CustFrom,Quote.AccPacID,"
    "Quote.CustomerID,Quote.CustName,Quote.BillToID,Quote.ShipToID,Quote.quPONumber,"
    "Quote.quDateEnter,Quote.quDateShip,Quote.quDesc,Quote.quReference,Quote.quLines,"
    "Quote.quShipToLoc,Quote.quShipVia,Quote.quShipViaDesc,Quote.quFOBPoint,"
    "Quote.quEmail,Quote.CustContact,Quote.quUserEnter,Quote.quSalesperson1,Quote.quSalesperson2,"
    "Quote.quSalesperson3,Quote.quSalesperson4,Quote.quSalesperson5,";

/// The distinct values of a column of the item lines, each with the order.
Query parts_query(const std::string& column, const std::string& quote)
{
    return {Command::statement(std::string(kSelectSqlServer) + "[Details].[" + column +
                               "] AS [Range] FROM [Quote] INNER JOIN "
                               "[Details] ON [Quote].[QuoteID] = [Details].[QuoteID] "
                               "WHERE ([Quote].[QuoteID] = " +
                               quote + ") AND ([Details].[deDType] = 20);"),
            Command::statement(std::string(kSelectPervasive) + "Details." + column +
                               " AS Range FROM Quote INNER JOIN "
                               "Details ON Quote.QuoteID = Details.QuoteID "
                               "WHERE (Quote.QuoteID = " +
                               quote + ") AND (Details.deDType = 20)")};
}

/// Meant: without picking ranges there is no text to open, and the database refuses the empty one.
Query query_of(int16_t each, const std::shared_ptr<Recordset>& ranges, const std::string& quote)
{
    switch (each) {
        case kPickingRange:
            return opened(ranges, "ranges").is_empty() ? Query{} : parts_query("dePickingSeq", quote);
        case kShipDate:
            return parts_query("deShipDate", quote);
        default:
            return parts_query("deLocation", quote);
    }
}

/// What decides an address of the order. The customer is asked for only where no address was saved.
AddressKeys address_keys(const QueryRow& row, const Value& saved, int32_t AddressKeys::*id, std::string& customer)
{
    AddressKeys keys;
    keys.CustFrom = to_int16(row.at<"CustFrom">());
    keys.*id = to_int32(saved);
    if (keys.*id != 0) return keys;
    if (keys.CustFrom != 0) {
        keys.CustomerID = to_int32(row.at<"CustomerID">());
    } else {
        customer = row.text<"AccPacID">();
        keys.AccpacID = customer;
    }
    return keys;
}

DocumentAddresses addresses_of(ReportRun& run, const QueryRow& row)
{
    auto& state = run.state();
    auto& statements = run.statements();
    DocumentAddresses found;
    std::string customer, location;
    statements.attempt("bill-to address", [&] {
        fetch_bill_to(state, address_keys(row, row.at<"BillToID">(), &AddressKeys::BillToID, customer), found.bill_to);
    });
    statements.attempt("ship-to address", [&] {
        AddressKeys keys = address_keys(row, row.at<"ShipToID">(), &AddressKeys::ShipToID, customer);
        const bool of_accounting = keys.ShipToID == 0 && keys.CustFrom == 0;
        if (of_accounting) location = row.text<"quShipToLoc">();
        keys.quShipToLoc = location;
        fetch_ship_to(state, keys, found.ship_to);
    });
    return found;
}

/// Moves the ranges to the first that holds the value, compared as they stand; false where none does.
bool move_to_range(Recordset& ranges, Statements& statements, const Value& value)
{
    for (move_to_first(ranges); !ranges.at_eof(); ranges.MoveNext()) {
        bool fits = false;
        statements.attempt("range", [&] {
            const std::string part = to_text(value);
            fits = part >= to_text(ranges.value("RStart")) && part <= to_text(ranges.value("REnd"));
        });
        if (fits) return true;
    }
    return false;
}

void write_parts(ReportRun& run, const ChecklistFields& fields, OrderPart order, AddressBlock addresses, Rows& rows,
                 Recordset* ranges, DataPipeRecordset& pipe)
{
    CompanyBlock company{addresses.company, true};
    PipeWriter writer(run.state(), pipe, run.statements());
    for (; !rows.at_eof(); rows.MoveNext()) {
        if (ranges != nullptr && !move_to_range(*ranges, run.statements(), order.row.at<"Range">())) continue;
        order.range = ranges;
        writer.row([&] {
            writer.write_once(fields.company, company);
            writer.write_once(fields.order, order);
            writer.write_once(fields.addresses, addresses);
            writer.write_once(fields.salespersons, order);
            writer.write(fields.part, order);
        });
    }
}

/// What `mdEachLoc` says; a null reads as the locations.
int16_t each_of(ReportRun& run)
{
    int16_t each = kLocation;
    run.statements().attempt("mdEachLoc", [&] { each = to_int16(company_default(run.state(), "mdEachLoc")); });
    return each;
}

}  // namespace

RunEnd Print_Checklist(SessionState& state, int32_t pQuoteID, const std::string& pReportString, bool pPreview,
                       bool pExportIt)
{
    return run_report(state, kBuilder, {pReportString, pPreview, pExportIt}, [&](ReportRun& run) {
        run.open_definition();
        const ChecklistFields fields;
        DataPipeRecordset pipe(fields.fields(), state.log);
        const int16_t each = each_of(run);
        std::shared_ptr<Recordset> ranges;
        if (each == kLocationRange) Get_LocationRange(state, ranges, 0);
        if (each == kPickingRange) Get_LocationRange(state, ranges, 1);
        const auto rows = stream_query(state, query_of(each, ranges, std::to_string(pQuoteID)));
        OrderPart order{state, QueryRow(*rows), each};
        AddressBlock addresses{accounting(state).Company(), {}};
        if (move_to_first(*rows)) addresses.addresses = addresses_of(run, order.row);
        write_parts(run, fields, order, addresses, *rows, goes_by_ranges(each) ? &opened(ranges, "ranges") : nullptr,
                    pipe);
        rows->Close();
        set_document_parameters(state, pipe);
        run.attach(pipe);
        run.choose_printer([&] { return to_text(company_default(state, "mdPrintName")); });
        return run.route([&] { return document_name(pipe, "Order Checklist"); });
    });
}

std::vector<PipeField> checklist_fields()
{
    return ChecklistFields().fields();
}

}  // namespace velora
