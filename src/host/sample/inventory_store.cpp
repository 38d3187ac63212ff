#include "host/sample/inventory_store.h"

#include <array>

#include "host/sample/catalog.h"
#include "host/sample/random.h"

namespace velora::sample {
namespace {

constexpr uint64_t kSeed = 20260615;

void write_inventory_setup(RowWriter& out)
{
    out.insert("IC0380", {{"WEIGHTUNIT", "kg"},
                          {"HYHEN", 1},
                          {"FWDSLASH", 1},
                          {"BCKSLASH", 1},
                          {"ASTERISK", 1},
                          {"PERIOD", 1},
                          {"LFTPARENS", 1},
                          {"RGTPARENS", 1},
                          {"POUNDSGN", 1}});
    for (const Category& category : categories()) {
        out.insert("IC0210", {{"CATEGORY", category.code}, {"DESC", category.description}});
    }
    for (const auto& [code, text] : {std::pair{"10", "Hamilton main warehouse"},
                                     {"20", "Longueuil branch"},
                                     {"30", "Edmonton branch"},
                                     {"40", "Delta branch"},
                                     {"SERV", "Service vans"}}) {
        out.insert("IC0370", {{"LOCATION", code}, {"DESC", text}});
    }
    for (const auto& [code, text] : {std::pair{"STD", "Standard list 2026"}, {"OEM", "OEM and contract list 2026"}}) {
        out.insert("IC0390", {{"PRICELIST", code}, {"DESC", text}});
    }
}

/// The breaks and levels of a price row. `kind` holds the three choices: discount or markup, by customer type or by
/// quantity, percentages or amounts.
Row level_cells(const Item& item, int64_t price, int64_t cost)
{
    static constexpr std::array kDiscounts{5, 8, 12, 16, 20};
    static constexpr std::array kMarkups{68, 62, 56, 50, 44};
    static constexpr std::array kBreaks{10, 25, 50, 100, 250};
    const bool markup = (item.kind & 4) != 0;
    Row cells;
    for (int level = 1; level <= 5; ++level) {
        const auto at = static_cast<size_t>(level - 1);
        const int percent = markup ? kMarkups[at] : kDiscounts[at];
        cells.emplace_back(numbered("PRCNTLVL", level), percent);
        cells.emplace_back(numbered("AMOUNTLVL", level), amount((markup ? cost : price) * percent / 100));
        cells.emplace_back(numbered("PRICEQTY", level), item.category == "SYS" ? 0 : kBreaks[at]);
    }
    return cells;
}

struct Sale {
    std::string_view start, end;
    int percent_off;
};

/// Lubricants are on sale this month; safety supplies were in February.
Sale sale_of(const Item& item)
{
    if (item.category == "LUB") return {"2026-06-01", "2026-06-30", 15};
    if (item.category == "SAF") return {"2026-02-01", "2026-02-28", 20};
    return {"", "", 0};
}

void write_price(RowWriter& out, const Item& item, std::string_view list, std::string_view currency)
{
    const int64_t price = list_price(item, list, currency);
    const int64_t cost = price * item.cost / item.price;
    const Sale sale = sale_of(item);
    const double sale_price = sale.percent_off == 0 ? 0.0 : amount(price * (100 - sale.percent_off) / 100);
    Row row{{"CURRENCY", currency},
            {"ITEMNO", item.number},
            {"PRICELIST", list},
            {"PRICETYPE", (item.kind & 4) == 0 ? 1 : 2},
            {"PRICEBASE", (item.kind & 2) == 0 ? 1 : 2},
            {"PRICEFMT", (item.kind & 1) == 0 ? 1 : 2},
            {"MARKUPCOST", amount(cost)}};
    for (const char* prefix : {"", "D"}) {  // the names of newer inventory modules begin with a D
        const std::string d = prefix;
        append(row, {{d + "BASEPRICE", amount(price)},
                     {d + "SALESTART", sale.start},
                     {d + "SALEEND", sale.end},
                     {d + "SALEPRICE", sale_price},
                     {d + "BASEUNIT", item.priced_by_pack() ? item.pack_unit : item.stock_unit},
                     {d + "BASECONV", item.priced_by_pack() ? item.pack_factor : 1}});
    }
    append(row, level_cells(item, price, cost));
    out.insert("IC0480", row);
}

void write_prices(RowWriter& out, const Item& item)
{
    for (const char* currency : {"CAD", "USD"}) {
        write_price(out, item, "STD", currency);
        if (item.on_oem_list()) write_price(out, item, "OEM", currency);
    }
}

void write_stock(RowWriter& out, const Item& item, Random& random)
{
    for (const char* location : {"10", "20", "30", "40"}) {
        const bool kept = std::string_view(location) == "10" || random.chance(55);
        if (!kept) continue;
        const int on_hand = random.between(0, 180);
        const auto cost = [&](int low, int high) { return amount(item.cost * random.between(low, high) / 100); };
        out.insert("IC0290", {{"ITEMNO", item.number},
                              {"LOCATION", location},
                              {"AQTYONHAND", on_hand},
                              {"QTYSALORDR", random.between(0, on_hand / 3)},
                              {"STDCOST", amount(item.cost)},
                              {"RECENTCOST", cost(100, 106)},
                              {"AVGCOST", cost(97, 103)},
                              {"LASTCOST", cost(99, 107)},
                              {"COST1", cost(102, 108)},
                              {"COST2", cost(95, 99)}});
    }
    if (item.category == "LUB" || item.category == "FST") {  // vans carry consumables; their code is no number
        out.insert("IC0290", {{"ITEMNO", item.number},
                              {"LOCATION", "SERV"},
                              {"AQTYONHAND", random.between(2, 20)},
                              {"QTYSALORDR", 0},
                              {"STDCOST", amount(item.cost)},
                              {"RECENTCOST", amount(item.cost)},
                              {"AVGCOST", amount(item.cost)},
                              {"LASTCOST", amount(item.cost)},
                              {"COST1", amount(item.cost)},
                              {"COST2", amount(item.cost)}});
    }
}

constexpr std::array kAuthorities{"CAHST", "CAHST15", "CAGST", "CAQST", "BCPST", "SKPST", "ECOFEE", "USNOTX"};

void write_items(RowWriter& out)
{
    Random random(kSeed);
    for (const Item& item : items()) {
        out.insert("IC0310", {{"ITEMNO", item.number},
                              {"FMTITEMNO", item.formatted},
                              {"COMMODIM", item.commodity},
                              {"DESC", item.description},
                              {"DEFPRICLST", "STD"},
                              {"CATEGORY", item.category},
                              {"STOCKUNIT", item.stock_unit}});
        out.insert("IC0750", {{"ITEMNO", item.number}, {"UNIT", item.stock_unit}, {"FACTOR", 1}});
        if (!item.pack_unit.empty()) {
            out.insert("IC0750", {{"ITEMNO", item.number}, {"UNIT", item.pack_unit}, {"FACTOR", item.pack_factor}});
        }
        for (const char* authority : kAuthorities) {
            // Safety supplies are exempt from the provincial tax; engineered systems leave theirs to the default.
            if (item.category == "SYS") continue;
            const bool exempt = item.category == "SAF" && std::string_view(authority) == "BCPST";
            out.insert("IC0330",
                       {{"ITEMNO", item.number}, {"AUTHORITY", authority}, {"SALESTAXCL", exempt ? "2" : "1"}});
        }
        write_prices(out, item);
        write_stock(out, item, random);
    }
}

struct Contract {
    std::string_view customer, item, list, start, expire;
    int price_type;
    int cost_method;
    double calculated, fixed, percent, plus;
};

// clang-format off
constexpr auto kContracts = std::to_array<Contract>({
    // customer item              list   start         expire        type method calculated fixed percent plus
    {"1200", "BRG-6205-2RS",      "STD", "2026-01-01", "2026-12-31", 6, 1,  0,      12.40, 0,    0},     // fixed
    {"1200", "MTR-5.0HP-184T",    "STD", "2026-01-01", "2026-12-31", 1, 1,  685.00, 0,     0,    0},     // calculated
    {"1200", "VBT-B60",           "STD", "2026-01-01", "2026-12-31", 4, 1,  0,      0,     38.0, 0},     // markup cost and a percentage
    {"1200", "HOS-R2-08",         "STD", "2025-01-01", "2025-12-31", 6, 1,  0,      9.95,  0,    0},     // has run out
    {"1130", "PBL-UCP207-23",     "OEM", "2026-01-01", "2026-12-31", 4, 2,  0,      0,     42.5, 0},     // standard cost
    {"1130", "CHN-60-1R",         "OEM", "2026-01-01", "2026-12-31", 5, 3,  0,      0,     0,    31.50}, // most recent cost and an amount
    {"1130", "LUB-ISO46-205L",    "OEM", "2026-01-01", "2026-12-31", 4, 4,  0,      0,     33.0, 0},     // average cost
    {"1110", "LUB-FOOD-H1-400G",  "OEM", "",           "",           2, 1,  15.75,  0,     0,    0},     // without an end
    {"1110", "BRG-6204-2RS",      "OEM", "2025-07-01", "2026-12-31", 4, 5,  0,      0,     47.0, 0},     // last cost
    {"1210", "SPR-60B20H",        "OEM", "2026-01-01", "2026-12-31", 5, 6,  0,      0,     0,    18.25}, // first own cost
    {"1210", "CPL-L100-1-1/8",    "OEM", "2026-01-01", "2026-12-31", 4, 7,  0,      0,     51.0, 0},     // second own cost
    {"1310", "FIT-8JIC-8NPT",     "OEM", "2026-03-01", "2027-02-28", 3, 1,  5.60,   0,     0,    0},     // calculated
    {"1410", "DRV-VFD-10HP-480",  "OEM", "2026-01-01", "2026-12-31", 5, 1,  0,      0,     0,    240.0}, // markup cost and an amount
    {"1230", "CYL-NC63-200",      "STD", "2026-07-01", "2026-12-31", 6, 1,  0,      189.0, 0,    0},     // begins later
});
// clang-format on

void write_contracts(RowWriter& out)
{
    const std::vector<Item> all = items();
    for (const Contract& contract : kContracts) {
        out.insert("IC0274", {{"CUSTNO", contract.customer},
                              {"ITEMNO", find_item(all, contract.item).number},
                              {"PRICELIST", contract.list},
                              {"STARTDATE", contract.start},
                              {"EXPIRE", contract.expire},
                              {"PRICETYPE", contract.price_type},
                              {"CALCPRICE", contract.calculated},
                              {"FIXPRICE", contract.fixed},
                              {"COSTMETHOD", contract.cost_method},
                              {"PLUSPER", contract.percent},
                              {"PLUSAMT", contract.plus}});
    }
}

}  // namespace

void write_inventory(RowWriter& out)
{
    write_inventory_setup(out);
    write_items(out);
    write_contracts(out);
}

}  // namespace velora::sample
