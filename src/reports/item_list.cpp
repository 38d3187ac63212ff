#include "reports/item_list.h"

#include <array>

#include "pricing/amount_display.h"
#include "reports/company_block.h"
#include "reports/list_report.h"
#include "reports/pipe_writer.h"
#include "session/query.h"

namespace velora {

namespace {

const ListReport kList{.procedure = "Print_ItemList",
                       .nothing = "There are no Items in the database to place on the report.",
                       .export_name = "Item List"};

/// The item in hand with one of its prices.
struct ItemRow {
    SessionState& state;
    QueryRow row;
};

Outcome base_price(ItemRow& r)
{
    const Checked price = r.row.number<"ipBasePrice">();
    const Value& currency = r.row.at<"ipCurrency">();
    if (currency.is_null()) return Outcome::failed(fault::kNull);
    return Outcome::of(price, [&](double value) {
        std::string shown_in = to_text(currency);  // the row keeps its own, blank or not
        return Display_AccpacCurrency(r.state, value, shown_in, false);
    });
}

// clang-format off
constexpr auto kItemColumns = std::to_array<Column<ItemRow>>({
    // name               type               size  value
    {"Item Number",      ado::VarChar,        30, as_stored<"ItemNumber">},
    {"Description",      ado::VarChar,        60, as_stored<"itDesc">},
    {"Structure Code",   ado::VarChar,        10, as_stored<"itStructureCode">},
    {"Category",         ado::VarChar,        10, as_stored<"itCategory">},
    {"Account Set",      ado::VarChar,        10, as_stored<"itAccountSet">},
    {"Price List",       ado::VarChar,        10, as_stored<"itPriceList">},
    {"Last Maintained",  ado::DBTimeStamp,     0, as_stored<"itLastMaintained">},
    {"Stocking Unit",    ado::VarChar,        20, as_stored<"itStockUnit">},
    {"Additional 1",     ado::VarChar,       100, as_stored<"itAdditional">},   // counts from one higher than its column, as the next three
    {"Additional 2",     ado::VarChar,      1020, as_stored<"itAdditional1">},  // wider than the others: definitions rely on it
    {"Additional 3",     ado::VarChar,       100, as_stored<"itAdditional2">},
    {"Additional 4",     ado::VarChar,       100, as_stored<"itAdditional3">},
    {"Base Price",       ado::VarChar,        30, base_price},
    {"Currency",         ado::VarChar,        15, as_stored<"ipCurrency">},
});
// clang-format on
static_assert(well_formed(kItemColumns));

struct ItemFields : PipeLayout {
    Section<CompanyBlock> company = add(list_company_columns());
    Section<ItemRow> item = add(ColumnList<ItemRow>(kItemColumns));
};

/// The flag that counts is the session's own, not what a host says of the company.
std::unique_ptr<Rows> items_to_list(SessionState& state)
{
    const CompanyInfo& company = accounting(state).Company();
    std::string sql_server =
        "SELECT [Items].[ItemID],[Items].[ItemNumber],[Items].[itDesc],[Items].[itCategory],[Items].[itPriceList],"
        "[Items].[itStockUnit],[Items].[itLastMaintained],[Items].[itStructureCode],[Items].[itAccountSet],"
        "[Items].[itAdditional],[Items].[itAdditional1],[Items].[itAdditional2],[Items].[itAdditional3],"
        "[IPricing].[ipCurrency],[IPricing].[ipBasePrice] FROM [Items] INNER JOIN [IPricing] "
        "ON [Items].[ItemID] = [IPricing].[ItemID] AND [Items].[itPriceList] = [IPricing].[ipPriceList] "
        "WHERE ([Items].[Exported] = 0) ";
    std::string pervasive =
        "SELECT Items.ItemID,Items.ItemNumber,Items.itDesc,Items.itCategory,Items.itPriceList,Items.itStockUnit,"
        "Items.itLastMaintained,Items.itStructureCode,Items.itAccountSet,Items.itAdditional,Items.itAdditional1,"
        "Items.itAdditional2,Items.itAdditional3,IPricing.ipCurrency,IPricing.ipBasePrice "
        "FROM Items INNER JOIN IPricing "
        "ON Items.ItemID = IPricing.ItemID AND Items.itPriceList = IPricing.ipPriceList WHERE (Items.Exported = 0) ";
    if (company.Multicurrency) {
        const std::string home = doubled_quotes(company.HomeCurrency);
        sql_server += "AND ([IPricing].[ipCurrency] = '" + home + "') ";
        pervasive += "AND (IPricing.ipCurrency = '" + home + "') ";
    }
    return stream_query(state, {Command::statement(sql_server + "ORDER BY [Items].[ItemNumber]"),
                                Command::statement(pervasive + "ORDER BY Items.ItemNumber")});
}

void write_rows(ReportRun& run, const ItemFields& fields, Rows& rows, DataPipeRecordset& pipe)
{
    CompanyBlock company{accounting(run.state()).Company(), false};
    ItemRow item{run.state(), QueryRow(rows)};
    PipeWriter writer(run.state(), pipe, run.statements());
    for (; !rows.at_eof(); rows.MoveNext()) {
        writer.row([&] {
            writer.write_once(fields.company, company);
            writer.write(fields.item, item);
        });
    }
}

}  // namespace

RunEnd Print_ItemList(SessionState& state, const std::string& pReportString, bool pPreview, bool pExportIt)
{
    const ItemFields fields;
    return run_list(state, kList, {pReportString, pPreview, pExportIt}, fields.fields(), items_to_list,
                    [&](ReportRun& run, Rows& rows, DataPipeRecordset& pipe) { write_rows(run, fields, rows, pipe); });
}

std::vector<PipeField> item_list_fields()
{
    return ItemFields().fields();
}

}  // namespace velora
