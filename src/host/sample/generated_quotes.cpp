#include <algorithm>
#include <array>

#include "host/sample/quotes.h"
#include "host/sample/random.h"
#include "host/sample/sample_company.h"

namespace velora::sample {
namespace {

constexpr uint64_t kSeed = 1001;
constexpr int32_t kDemoId = 52;
constexpr int32_t kLastId = 58;

// clang-format off
constexpr auto kSubjects = std::to_array<std::string_view>({
    "Spare parts for packaging line 3", "Annual bearing requirement", "Conveyor extension, shipping dock",
    "Replacement drive, screw press", "Hydraulic hoses and fittings, stock order", "Shutdown parts, boiler house",
    "Pump room upgrade", "Sorting table rebuild", "Maintenance stock, quarterly", "Dust collector fan drive",
    "Bucket elevator overhaul", "Compressed air system parts", "Safety supplies for contractors",
    "Crusher feed conveyor, wear parts", "Palletizer repair", "New mixing line, mechanical package"});
constexpr auto kRemarks = std::to_array<std::string_view>({
    "Items below are quoted as alternates.", "The following parts are for the east line only.",
    "Quantities as on your sketch of last week.", "Delivery in two lots is possible at no charge."});
constexpr auto kComments = std::to_array<std::string_view>({
    "Replaces the superseded part; dimensions are the same.", "Packed one by one, labelled with your stock number.",
    "Price holds for the full box quantity only.", "Made to order, not returnable."});
constexpr auto kInstructions = std::to_array<std::string_view>({
    "Check the bore before packing.", "Ship with certificate of conformity.", "Do not stack."});
constexpr auto kNotes = std::to_array<std::string_view>({
    "", "", "Prices do not include installation.", "Subject to prior sale.",
    "Please quote our number on your order. Minimum order value 50.00."});
constexpr auto kLeadTimes = std::to_array<std::string_view>({"In stock", "In stock", "In stock", "3 to 5 days", "2 weeks", "6 to 8 weeks"});
constexpr auto kUsers = std::to_array<std::string_view>({"JMB", "LCT", "RWG", "SKP", "CHIEF"});
constexpr auto kShipVia = std::to_array<std::string_view>({"OURTRK", "NORTHX", "PICKUP"});
constexpr auto kSizes = std::to_array<int>({1, 2, 3, 3, 4, 5, 6, 6, 8, 9, 11, 14, 18});
// clang-format on

int usual_quantity(int64_t price, Random& random)
{
    static constexpr auto kMany = std::to_array<int>({10, 24, 25, 50, 100, 144});
    static constexpr auto kSome = std::to_array<int>({2, 4, 6, 8, 10, 12, 24});
    static constexpr auto kFew = std::to_array<int>({1, 1, 2, 3, 4});
    if (price < 1000) return random.pick(kMany);
    if (price < 20000) return random.pick(kSome);
    return random.pick(kFew);
}

Line random_line(const Customer& customer, const std::vector<Item>& catalog, Random& random)
{
    if (random.chance(12)) {
        const OwnItem& own = random.pick(own_items());
        return own_line(own, customer, usual_quantity(own.price, random));
    }
    const Item& item = random.pick(catalog);
    const bool packs = random.chance(15);
    const int64_t unit_price = item.price * (packs || item.priced_by_pack() ? item.pack_factor : 1);
    Line line = item_line(item, customer, usual_quantity(unit_price, random), packs);
    line.lead_time = random.pick(kLeadTimes);
    if (random.chance(15)) line.location = "10";
    if (random.chance(10)) line.customer_item = std::to_string(random.between(100200, 998700));
    return line;
}

void add_remarks(Line& line, Random& random)
{
    if (random.chance(25)) line.discount_percent = random.between(1, 5) * 2;
    if (random.chance(12)) line.comment = random.pick(kComments);
    if (random.chance(7)) line.instruction = random.pick(kInstructions);
}

void add_lines(Quote& quote, const std::vector<Item>& catalog, Random& random)
{
    const int count = quote.id == 31 ? 60 : quote.id == 12 ? 1 : random.pick(kSizes);
    for (int line = 0; line < count; ++line) {
        if (line > 0 && random.chance(6)) {
            quote.lines.push_back(comment_line(std::string(random.pick(kRemarks))));
        }
        quote.lines.push_back(random_line(*quote.customer, catalog, random));
        add_remarks(quote.lines.back(), random);
        // Counter prices include the tax; so does the environmental fee on fluids.
        quote.lines.back().tax_included = quote.customer->number == "9000";
    }
}

void add_charges(Quote& quote, Random& random)
{
    if (random.chance(45)) {
        quote.charges.push_back(
            {"FREIGHT", random.chance(50) ? "" : "Freight, prepaid and added", random.between(6, 60) * 500});
    }
    if (quote.customer->currency() == "USD") quote.charges.push_back({"BROKER", "", 8500});
    if (random.chance(12)) quote.charges.push_back({"RUSH", "Expediting by air", random.between(5, 20) * 1000});
}

/// How the quote ended; the newest are open still.
void decide_outcome(Quote& quote, const DateTime& today, Random& random)
{
    const int age = today.serial_day() - quote.entered.serial_day();
    const int drawn = random.between(1, 100);
    if (quote.id > kDemoId) {
        quote.valid_days = quote.id == kDemoId + 2 ? age : random.between(2, 9);
    } else if (age < 45) {
        quote.status = drawn <= 70 ? kOpen : drawn <= 90 ? kFollowUp : kWon;
    } else {
        quote.status = drawn <= 50 ? kWon : drawn <= 78 ? kLost : drawn <= 90 ? kOpen : drawn <= 96 ? kHeld : kVoid;
    }
}

void transfer(Quote& quote, const DateTime& today, Random& random)
{
    const int age = today.serial_day() - quote.entered.serial_day();
    quote.transferred = days_after(quote.entered, std::min(age, random.between(3, 12)));
    quote.purchase_order = "PO " + std::to_string(random.between(40100, 89900));
    for (Line& line : quote.lines) line.transferred = line.quantity;
    if (!random.chance(40)) return;
    quote.complete = false;
    for (size_t at = 0; at < quote.lines.size(); at += 2) {
        Line& line = quote.lines[at];
        line.transferred = line.quantity / 3;
    }
}

void lose(Quote& quote, Random& random)
{
    static constexpr auto kWhy = std::to_array<std::string_view>(
        {"Competitor about four percent lower.", "Customer bought through head office.",
         "Project postponed to next year.", "We could not meet the delivery date.", ""});
    quote.loss = Loss{static_cast<int16_t>(random.between(1, 6)), "", std::string(random.pick(kWhy))};
    if (random.chance(40)) quote.loss->reference = "Call " + std::to_string(random.between(200, 999));
}

const Customer* choose_customer(Quote& quote, Random& random)
{
    if (quote.id == 36) return &find_customer("9000");  // the counter
    if (quote.id == 44) return &find_customer("1120");  // pays the environmental fee
    if (quote.id % 5 != 0) return &random.pick(customers());
    const OwnCustomer& own = random.pick(own_customers());
    quote.own_customer = own.id;
    return &own.customer;
}

void fill_head(Quote& quote, Random& random)
{
    quote.type = static_cast<int16_t>(random.chance(70) ? 1 : random.between(2, 4));
    quote.confidence = static_cast<int16_t>(random.between(1, 3));
    quote.user = random.pick(kUsers);
    quote.description = random.pick(kSubjects);
    quote.notes = random.pick(kNotes);
    quote.ship_via = random.pick(kShipVia);
    quote.fob = random.chance(60) ? "Our warehouse" : "Destination";
    if (random.chance(60)) quote.reference = "RFQ " + std::to_string(random.between(1000, 9999));
    if (random.chance(20)) quote.second_salesperson = "HSE";
    quote.saved_bill_to = random.chance(15);
    quote.saved_ship_to = random.chance(20);
    quote.on_hold = quote.status == kHeld;
}

Quote generated_quote(int32_t id, const std::vector<Item>& catalog, Random& random)
{
    const DateTime today = *DateTime::from_iso(kToday);
    Quote quote;
    quote.id = id;
    quote.customer = choose_customer(quote, random);
    const int weeks = kDemoId - id;
    const int days_ago = id > kDemoId ? kLastId - id : 7 + weeks * 7 - random.between(0, 4);
    quote.entered = days_after(today, -days_ago);
    decide_outcome(quote, today, random);
    fill_head(quote, random);
    add_lines(quote, catalog, random);
    if (quote.customer->tax_group == "ECO") {
        quote.lines.push_back(item_line(find_item(catalog, "LUB-ISO46-20L"), *quote.customer, 4));
    }
    add_charges(quote, random);
    if (quote.status == kWon) transfer(quote, today, random);
    if (quote.status == kLost) lose(quote, random);
    for (const ShipToLocation& location : ship_to_locations()) {
        if (quote.own_customer == 0 && location.customer == quote.customer->number && random.chance(60)) {
            quote.ship_to = location.code;
        }
    }
    return quote;
}

/// What stayed open of the newest incomplete order became a quote of its own.
void add_back_order_quote(std::vector<Quote>& all)
{
    for (size_t at = all.size(); at-- > 0;) {
        if (all[at].complete || all[at].back_order_for != 0) continue;
        Quote rest = all[at];
        rest.id = kLastId + 1;
        rest.back_order_for = all[at].id;
        rest.entered = *rest.transferred;
        rest.transferred.reset();
        rest.complete = true;
        rest.status = kOpen;
        rest.description = "Back order for " + all[at].number();
        rest.charges.clear();
        std::erase_if(rest.lines, [](const Line& line) { return line.quantity == line.transferred; });
        for (Line& line : rest.lines) {
            line.quantity -= line.transferred;
            line.transferred = 0;
        }
        all.push_back(std::move(rest));
        return;
    }
}

}  // namespace

std::vector<Quote> quotes()
{
    const std::vector<Item> catalog = items();
    Random random(kSeed);
    std::vector<Quote> all;
    for (int32_t id = 1; id <= kLastId; ++id) {
        all.push_back(id == kDemoId ? demo_quote(id) : generated_quote(id, catalog, random));
    }
    add_back_order_quote(all);
    return all;
}

}  // namespace velora::sample
