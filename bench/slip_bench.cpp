// The picking slips of an order of 5,000 lines over 50 locations, from the stores to the finished pipes, beside their
// statements run bare.

#include "bench/company.h"
#include "reports/picking_slip.h"

namespace {

using namespace velora;
using namespace velora::bench;

constexpr int kLines = 5'000;
constexpr int kLocations = 50;
constexpr int kItems = 1'000;

std::string product_rows()
{
    return "INSERT INTO Defaults (Company, DefaultID, mdUseDLRange, mdEachLoc, mdPSSplit) VALUES ('BENCH', 1, 1, 0, 0);"
           "INSERT INTO Quote (QuoteID, QuoteNumber, CustFrom, AccPacID, QuoteStatusID, quDateEnter, quDateShip, "
           "quSourceCurr, quCurCode, quLocation) VALUES (1, 'Q-1', 0, '1200', 2, '2026-03-01', '2026-03-20', 'CAD', "
           "'CAD', 'L1');"
           "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
           number(kLines) +
           ") INSERT INTO Details (QuoteID, Line, APItem, deIType, deDType, deDesc, deQuantity, deUofM, deConvFactor, "
           "deQuotedPrice, deLocation, dePickingSeq, deLeadTime, deShipDate) SELECT 1, i, 'P-' || (i * 7919 % " +
           number(kItems) +
           "), 30, 20, 'Ball bearing, two rubber seals, size ' || i % 97, i % 40 + 1, 'EA', 1, i % 900 + 5.35, 'L' || "
           "(i % " +
           number(kLocations) + "), 'A-' || i % 30, 'a week', '2026-03-20' FROM n;";
}

std::string accounting_rows()
{
    const auto counted = [](int most) {
        return "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < " + number(most - 1) + ") ";
    };
    return "INSERT INTO CompanyInfo (CompanyID, Name, HomeCurrency, Multicurrency, PhoneFormat) VALUES ('BENCH', "
           "'Bench', 'CAD', 1, 1); INSERT INTO CurrencyInfo VALUES ('CAD', '$', ',', '.', 2, 2, 2);"
           "INSERT INTO ActiveApplications VALUES (1, 'IC', '60A');"
           "INSERT INTO AR0024 (IDCUST, NAMECUST) VALUES ('1200', 'Bay Works');" +
           counted(kLocations) + "INSERT INTO IC0370 SELECT 'L' || i, 'Location ' || i FROM n;" + counted(kItems) +
           "INSERT INTO IC0310 (ITEMNO, FMTITEMNO) SELECT 'P-' || i, 'P-' || i FROM n;" + counted(kItems) +
           "INSERT INTO IC0290 (ITEMNO, LOCATION, AQTYONHAND, QTYSALORDR) SELECT 'P-' || i, 'L' || (i % " +
           number(kLocations) + "), 100, 3 FROM n;";
}

const fs::path& stores()
{
    static const fs::path folder = make_stores("slip", product_rows(), accounting_rows());
    return folder;
}

void print(Bench& bench)
{
    bench.state.ports.marks_as_printed = false;
    if (Print_PickingSlip(bench.state, 1, "slip", false, false, false) != RunEnd::Delivered) {
        throw std::runtime_error("the slips were not delivered");
    }
}

void slips(benchmark::State& measured)
{
    Bench bench(stores());
    size_t rows = 0;
    bench.state.ports.on_pipe = [&](const DataPipeRecordset& pipe) { rows += pipe.RecordCount(); };
    for (auto round : measured) print(bench);
    if (rows != kLines * static_cast<size_t>(measured.iterations())) throw std::runtime_error("lines are missing");
    measured.SetItemsProcessed(static_cast<int64_t>(rows));
}

void slips_bare(benchmark::State& measured)
{
    measure_bare(measured, statements_of(stores(), print));
}

BENCHMARK(slips)->Unit(benchmark::kMillisecond);
BENCHMARK(slips_bare)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
