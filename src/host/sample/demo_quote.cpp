#include "host/sample/quotes.h"

namespace velora::sample {
namespace {

/// Adds the lines of one after the other.
class LineBuilder {
public:
    LineBuilder(Quote& quote, const std::vector<Item>& catalog) : quote_(quote), catalog_(catalog) {}

    Line& item(std::string_view number, int quantity, int discount_percent = 0)
    {
        quote_.lines.push_back(item_line(find_item(catalog_, number), *quote_.customer, quantity));
        quote_.lines.back().discount_percent = discount_percent;
        return quote_.lines.back();
    }

    Line& own(int32_t id, int quantity)
    {
        quote_.lines.push_back(own_line(own_items().at(static_cast<size_t>(id) - 1), *quote_.customer, quantity));
        return quote_.lines.back();
    }

    void heading(const char* text) { quote_.lines.push_back(comment_line(text)); }

private:
    Quote& quote_;
    const std::vector<Item>& catalog_;
};

Quote demo_head(int32_t id)
{
    Quote quote;
    quote.id = id;
    quote.customer = &find_customer("1200");
    quote.status = kFollowUp;
    quote.confidence = 1;
    quote.entered = *DateTime::from_ymd(2026, 6, 8);
    quote.user = "LCT";
    quote.description = "Rebuild of roll table drives 4 and 5, July shutdown";
    quote.reference = "RFQ 2026-0417";
    quote.purchase_order = "To follow";
    quote.notes =
        "Prices are firm until the expiry date. Goods for the July shutdown are reserved for you against "
        "a written order received by 26 June 2026.";
    quote.ship_to = "QUAI";
    quote.ship_via = "OURTRK";
    quote.fob = "Delivered Beauharnois";
    quote.second_salesperson = "SKP";
    return quote;
}

void drive_lines(LineBuilder& add)
{
    add.heading("Roll table drive 4");
    add.item("MTR-5.0HP-184T", 4).comment = "Supplied with the conduit box on the left (F1), seen from the shaft end.";
    add.item("RED-W325-50", 4, 5).lead_time = "3 weeks";
    add.item("CPL-L110-1-3/8", 8);
    add.item("BRG-6308-2RS", 16, 10);
    Line& base = add.own(1, 2);
    base.comment = "Test run for two hours at no load; the protocol comes with the delivery.";
    base.lead_time = "4 weeks after approval of the drawing";
    add.item("PBL-UCP211-35", 12, 5);
    add.item("CHN-80-1R", 6);
    add.item("SPR-80B19H", 4);
    add.item("SPR-80B40H", 4).instruction = "Bore to 48 mm with keyway DIN 6885 before delivery.";
}

void hydraulic_lines(LineBuilder& add)
{
    add.heading("Hydraulics and lubrication, drives 4 and 5");
    add.item("SYS-HPU-5GAL-3HP", 1).lead_time = "6 to 8 weeks";
    add.item("HOS-R2-08", 2);
    add.item("FIT-8JIC-8NPT", 24, 5);
    add.item("FIT-8JIC-90", 12);
    add.item("FLT-HF10-SPIN", 6);
    add.item("SYS-LUB-AUTO-12PT", 1, 8).comment =
        "Twelve points are enough for both drives. Tubing is run on site by your own people.";
    add.item("LUB-ISO46-205L", 1);
    add.item("LUB-EP2-400G", 24);
}

void small_goods(LineBuilder& add)
{
    add.heading("Fasteners and services");
    add.item("BLT-M16X60", 2);
    add.item("BLT-M20X80", 1);
    add.own(14, 6).lead_time = "During the shutdown";
    add.own(21, 1).lead_time = "During the shutdown";
}

}  // namespace

Quote demo_quote(int32_t id)
{
    const std::vector<Item> catalog = items();
    Quote quote = demo_head(id);
    LineBuilder add(quote, catalog);
    drive_lines(add);
    hydraulic_lines(add);
    small_goods(add);
    quote.charges = {{"FREIGHT", "", 28500}, {"CRATE", "Skids and weather protection for two gear units", 14250}};
    return quote;
}

}  // namespace velora::sample
