// From the two stores to a finished data pipe, beside the same SQL statements run bare through SQLite's C interface.

#include "bench/company.h"
#include "reports/customer_list.h"
#include "reports/quote_report.h"

namespace {

using namespace velora;
using namespace velora::bench;

constexpr int kLines = 5'000;
constexpr int kItems = 1'000;
constexpr int kCustomers = 100'000;

std::string quote_rows()
{
    std::string sql =
        "INSERT INTO Quote (QuoteID, QuoteNumber, AccPacID, quDateEnter, quCurCode, quTaxGroup, quPriceList, "
        "quTaxClass1, "
        "quTaxClass2) VALUES (1, 'Q-1', '1200', '2026-03-01', 'CAD', 'TWO', 'STD', '1', '1');"
        "INSERT INTO Defaults (Company, DefaultID, mdUsePLDef, mdDefaultPL, mdShowCustItem) VALUES ('BENCH', 1, 0, "
        "'STD', 0);";
    for (int line = 1; line <= kLines; ++line) {
        const auto item = "P-" + number(100'000 + line * 7919 % kItems);
        sql +=
            "INSERT INTO Details (QuoteID, Line, APItem, deIType, deDType, deDesc, deQuantity, deQtyTransfer, deUofM, "
            "deConvFactor, deQuotedPrice, dePriceList, deDiscount, deCost, deLocation, deCategory, deWeight, "
            "deLeadTime, "
            "deTaxClass1, deTaxClass2, deTaxIncl1, deTaxIncl2) VALUES (1, " +
            number(line) + ", '" + item + "', 30, 20, 'Ball bearing, two rubber seals, size " + number(line % 97) +
            "', " + number(line % 40 + 1) + ", 0, 'EA', 1, " + number(line % 900 + 5) +
            ".35, 'STD', 1.25, 3.1, '1', 'A" + number(line % 20) + "', 0.75, 'In stock', '1', '1', '0', '0');";
    }
    return sql;
}

std::string customer_rows()
{
    std::string sql;
    for (int id = 1; id <= kCustomers; ++id) {
        const auto n = number(id);
        sql += "INSERT INTO Customer VALUES (" + n + ", 'C" + number(1'000'000 + id) + "', 'Customer number " + n +
               " Limited', 'Cust" + n + "', '" + n + " Harbour Road', 'Unit " + n +
               "', NULL, NULL, 'Halifax', 'NS', 'Canada', 'B3J " + number(id % 10) + "X1', '902555" +
               number(1000 + id % 9000) + "', '902556" + number(1000 + id % 9000) + "', 'Contact " + n + "', 'orders" +
               n + "@example.com', 'info" + n + "@example.com', 'RETAIL', 'STD', 'N30', 'NS', " + number(id % 6) +
               ", NULL, 'CAD', 'TRADE', '1', '1', '1', '1', '1', '', '', '', '', '', 0);";
    }
    return sql;
}

std::string accounting_rows()
{
    std::string sql =
        "INSERT INTO CompanyInfo (CompanyID, Name, HomeCurrency, Multicurrency, PhoneFormat) VALUES ('BENCH', 'Bench', "
        "'CAD', 1, 1); INSERT INTO CurrencyInfo VALUES ('CAD', '$', ',', '.', 2, 2, 2);"
        "INSERT INTO ActiveApplications VALUES (1, 'IC', '60A');"
        "INSERT INTO TX0003 (GROUPID, AUTHORITY1, TAXABLE1, AUTHORITY2, TAXABLE2) VALUES ('TWO', 'FED', 0, 'PROV', 0);"
        "INSERT INTO TX0004 (AUTHORITY, TTYPE, BUYERCLASS, ITEMRATE1) VALUES ('FED', 1, '1', 5), ('PROV', 1, '1', "
        "9.975);"
        "INSERT INTO IC0370 VALUES ('1', 'Main'); INSERT INTO IC0390 VALUES ('STD', 'Standard');"
        "INSERT INTO AR0024 (IDCUST, NAMECUST) VALUES ('1200', 'Bay Works');";
    for (int category = 0; category < 20; ++category)
        sql += "INSERT INTO IC0210 VALUES ('A" + number(category) + "', 'x');";
    for (int at = 0; at < kItems; ++at) {
        const auto item = "P-" + number(100'000 + at);
        sql += "INSERT INTO IC0310 (ITEMNO, FMTITEMNO) VALUES ('" + item + "', '" + item + "');";
        sql +=
            "INSERT INTO IC0480 (CURRENCY, ITEMNO, PRICELIST, PRICETYPE, PRICEBASE, PRICEFMT, DBASEPRICE, MARKUPCOST, "
            "PRCNTLVL1, PRCNTLVL2, PRCNTLVL3, PRCNTLVL4, PRCNTLVL5, PRICEQTY1, PRICEQTY2, PRICEQTY3, PRICEQTY4, "
            "PRICEQTY5, DBASEUNIT, DBASECONV) VALUES ('CAD', '" +
            item + "', 'STD', 1, 2, 1, " + number(at + 5) + ".95, 3, 1, 2, 3, 4, 5, 10, 20, 30, 40, 50, 'EA', 1);";
    }
    return sql;
}

/// The stores, filled once.
const fs::path& stores()
{
    static const fs::path folder = make_stores("pipe", quote_rows() + customer_rows(), accounting_rows());
    return folder;
}

void quote_pipe(benchmark::State& measured)
{
    Bench bench(stores());
    for (auto round : measured) Print_Quote(bench.state, 1, "", 0, false, false);
    if (bench.rows != kLines) throw std::runtime_error("the quote was not printed");
    measured.counters["bytes_a_row"] = static_cast<double>(bench.bytes) / kLines;
    measured.counters["fields"] =
        benchmark::Counter(157.0 * kLines * static_cast<double>(measured.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(quote_pipe)->Unit(benchmark::kMillisecond);

void customer_pipe(benchmark::State& measured)
{
    Bench bench(stores());
    for (auto round : measured) Print_CustomerList(bench.state, "", false, false);
    if (bench.rows != kCustomers) throw std::runtime_error("the list was not printed");
    measured.SetItemsProcessed(measured.iterations() * kCustomers);
    measured.counters["bytes_a_row"] = static_cast<double>(bench.bytes) / kCustomers;
}
BENCHMARK(customer_pipe)->Unit(benchmark::kMillisecond);

void quote_statements_bare(benchmark::State& measured)
{
    measure_bare(measured,
                 statements_of(stores(), [](Bench& bench) { Print_Quote(bench.state, 1, "", 0, false, false); }));
}
BENCHMARK(quote_statements_bare)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
