// Lists over many quotes, from the stores to the finished data pipe, beside their statements run bare.

#include "bench/company.h"
#include "reports/kinds.h"

namespace {

using namespace velora;
using namespace velora::bench;

constexpr int kQuotes = 200'000;
constexpr int kCustomers = 5'000;  // half of the accounting system, half of the product's own
constexpr int kLines = 1'000'000;
constexpr int kOpenLines = 100'000;
constexpr int kItems = 1'000;

/// The numbers from 1 on, as a table to select from.
std::string counted(int most)
{
    return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " + number(most) + ") ";
}

std::string quote_rows()
{
    return counted(kQuotes) +
           "INSERT INTO Quote (QuoteID, QuoteNumber, CustFrom, AccPacID, CustomerID, QuoteStatusID, quDateEnter, "
           "quDateShip, quDateExpire, quDateModify, quDateTransfer, quComplete, quUserEnter, quUserModify, quDesc, "
           "quReference, quLines, quNotes, quCurCode, quCustomerType, quPriceList, quTaxGroup, quTermsCode, "
           "quLocation, "
           "quPercentSS1, quHomeCurr, quSourceCurr, quRateType, quRateEx) SELECT i, 'Q-' || i, i % 2, 'A' || (i * 7919 "
           "% " +
           number(kCustomers / 2) + "), i * 7919 % " + number(kCustomers / 2) +
           ", 2 + i % 3, date('2020-01-01', (i % 2000) || ' days'), date('2020-01-09', (i % 2000) || ' days'), "
           "date('2020-02-01', (i % 2000) || ' days'), date('2020-01-02', (i % 2000) || ' days'), "
           "date('2020-01-03', (i % 2000) || ' days'), i % 10 <> 0, 'USER' || i % 30, 'USER' || i % 29, "
           "'Doors and hinges for house ' || i, 'R-' || i * 3, i % 40, 'Deliver before noon, gate ' || i % 50, 'CAD', "
           "i % 6, 'STD', 'TWO', 'N30', '1', 100, 'CAD', 'CAD', 'SP', 1 FROM n;";
}

/// Five lines a quote; every quote whose number ends in 0 is not complete, and its lines are open.
std::string detail_rows()
{
    return counted(kLines) +
           "INSERT INTO Details (QuoteID, Line, APItem, deIType, deDType, deDesc, deQuantity, deQtyTransfer, deUofM, "
           "deConvFactor, deQuotedPrice, dePriceList, deDiscount, deCost, deLocation, deCategory, deWeight) SELECT "
           "1 + (i - 1) / 5, i % 5, 'P-' || (100000 + i * 7919 % " +
           number(kItems) +
           "), 30, 20, 'Ball bearing, two rubber seals, size ' || i % 97, i % 40 + 1, 0, 'EA', 1, i % 900 + 5.35, "
           "'STD', "
           "1.25, 3.1, '1', 'A' || i % 20, 0.75 FROM n;";
}

std::string own_customers()
{
    return counted(kCustomers / 2) +
           "INSERT INTO Customer (CustomerID, CustomerNumber, cuFullName, cuShortName, cuAddress1, cuAddress2, cuCity, "
           "cuProvState, cuCountry, cuPCZip, cuPhone, cuFax, cuContact, cuEmail1, cuGroupCode) SELECT i - 1, 'C' || i, "
           "'Customer number ' || i || ' Limited', 'Cust' || i, i || ' Harbour Road', 'Unit ' || i, 'Halifax', 'NS', "
           "'Canada', 'B3J 1X1', 9025550000 + i, 9025560000 + i, 'Contact ' || i, 'orders' || i || '@example.com', "
           "'RETAIL' FROM n;";
}

std::string product_rows()
{
    return "INSERT INTO Defaults (Company, DefaultID, mdUsePLDef, mdDefaultPL, qdStatusOpen, anUseQuoteNum) VALUES "
           "('BENCH', 1, 0, 'STD', 1, 0); INSERT INTO QuoteStatus (QuoteStatusID, qsCode, qsName, qsDescription, "
           "qsActive) VALUES (1, 'O', 'Open', 'Open', 1), (2, 'W', 'Won', 'Won', 1), (3, 'L', 'Lost', 'Lost', 1), "
           "(4, 'H', 'Hold', 'On hold', 1);" +
           quote_rows() + detail_rows() + own_customers();
}

std::string accounting_rows()
{
    return "INSERT INTO CompanyInfo (CompanyID, Name, HomeCurrency, Multicurrency, PhoneFormat) VALUES ('BENCH', "
           "'Bench', 'CAD', 1, 1); INSERT INTO CurrencyInfo VALUES ('CAD', '$', ',', '.', 2, 2, 2);"
           "INSERT INTO ActiveApplications VALUES (1, 'IC', '60A');"
           "INSERT INTO IC0370 VALUES ('1', 'Main'); INSERT INTO IC0390 VALUES ('STD', 'Standard');" +
           counted(kCustomers / 2) +
           "INSERT INTO AR0024 (IDCUST, NAMECUST, TEXTSNAM, TEXTSTRE1, NAMECITY, CODESTTE, CODECTRY, CODEPSTL, "
           "TEXTPHON1, TEXTPHON2, NAMECTAC, EMAIL1, IDGRP) SELECT 'A' || (i - 1), 'Bay Works number ' || i, 'Bay' || "
           "i, "
           "i || ' Quay', 'Halifax', 'NS', 'Canada', 'B3J 1X1', 9025550000 + i, 9025560000 + i, 'Contact ' || i, "
           "'bay' || i || '@example.com', 'TRADE' FROM n;" +
           counted(20) + "INSERT INTO IC0210 SELECT 'A' || (i - 1), 'Category ' || i FROM n;" + counted(kItems) +
           "INSERT INTO IC0310 (ITEMNO, FMTITEMNO) SELECT 'P-' || (99999 + i), 'P-' || (99999 + i) FROM n;" +
           counted(kItems) +
           "INSERT INTO IC0480 (CURRENCY, ITEMNO, PRICELIST, PRICETYPE, PRICEBASE, PRICEFMT, DBASEPRICE, DBASEUNIT, "
           "DBASECONV) SELECT 'CAD', 'P-' || (99999 + i), 'STD', 1, 2, 1, i + 5.95, 'EA', 1 FROM n;";
}

const fs::path& stores()
{
    static const fs::path folder = make_stores("list", product_rows(), accounting_rows());
    return folder;
}

void print(Bench& bench, const char* kind)
{
    (void)find_report_kind(kind)->print(bench.state, {}, {});
}

/// Characters of the pipe that differ from the row before, which no form of it can leave out.
size_t text_bytes(const DataPipeRecordset& pipe)
{
    const auto table = pipe.table();
    std::vector<std::string> before(table->fields().size());
    size_t bytes = 0;
    while (table->next()) {
        for (size_t at = 0; at < before.size(); ++at) {
            const auto* text = table->cell(at).get_if<std::string>();
            if (text == nullptr || *text == before[at]) continue;
            bytes += text->size();
            before[at] = *text;
        }
    }
    return bytes;
}

void measure_list(benchmark::State& measured, const char* kind, size_t rows)
{
    Bench bench(stores());
    for (auto round : measured) print(bench, kind);
    if (bench.rows != rows) throw std::runtime_error(std::string(kind) + ": " + std::to_string(bench.rows) + " rows");
    size_t texts = 0;
    bench.state.ports.on_pipe = [&](const DataPipeRecordset& pipe) { texts = text_bytes(pipe); };
    print(bench, kind);
    const auto count = static_cast<double>(rows);
    measured.SetItemsProcessed(measured.iterations() * static_cast<int64_t>(rows));
    measured.counters["bytes_a_row"] = static_cast<double>(bench.bytes) / count;
    measured.counters["over_its_texts"] = static_cast<double>(bench.bytes - texts) / count;
}

void measure_list_bare(benchmark::State& measured, const char* kind)
{
    measure_bare(measured, statements_of(stores(), [&](Bench& bench) { print(bench, kind); }));
}

BENCHMARK_CAPTURE(measure_list, win_loss, "win-loss", kQuotes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(measure_list_bare, win_loss, "win-loss")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(measure_list, overview, "overview", kQuotes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(measure_list_bare, overview, "overview")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(measure_list, back_orders, "back-orders", kOpenLines)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(measure_list_bare, back_orders, "back-orders")->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
