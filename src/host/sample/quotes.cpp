#include "host/sample/quotes.h"

namespace velora::sample {
namespace {

std::string_view home_location(const Address& address)
{
    if (address.province == "QC") return "20";
    if (address.province == "AB" || address.province == "SK") return "30";
    if (address.province == "BC") return "40";
    return "10";
}

/// A whole percentage off, rounded to the cent.
int64_t reduced(int64_t price, int percent)
{
    return (price * (100 - percent) + 50) / 100;
}

}  // namespace

int64_t Line::gross() const
{
    return (price * quantity * factor + pricing_factor / 2) / pricing_factor;
}

int64_t Line::discount() const
{
    return (gross() * discount_percent + 50) / 100;
}

std::string Quote::number() const
{
    return "Q-" + std::to_string(10000 + id);
}

Line item_line(const Item& item, const Customer& customer, int quantity, bool in_packs)
{
    const bool packs = !item.pack_unit.empty() && (in_packs || item.priced_by_pack());
    Line line;
    line.number = item.number;
    line.description = item.description;
    line.category = item.category;
    line.quantity = quantity;
    line.unit = packs ? item.pack_unit : item.stock_unit;
    line.factor = packs ? item.pack_factor : 1;
    line.pricing_factor = item.priced_by_pack() ? item.pack_factor : 1;
    line.price_list = item.on_oem_list() ? customer.price_list : "STD";
    line.price = reduced(list_price(item, line.price_list, customer.currency()), customer.discount_level * 2);
    line.cost = item.cost * line.factor * (customer.currency() == "USD" ? 74 : 100) / 100;
    line.location = home_location(customer.address);
    line.picking_sequence = item.picking_sequence;
    line.weight = item.weight;
    line.lead_time = "In stock";
    return line;
}

Line own_line(const OwnItem& item, const Customer& customer, int quantity)
{
    const bool in_dollars = customer.currency() == "USD";
    Line line;
    line.item_kind = kOwnItem;
    line.own_id = item.id;
    line.number = item.number;
    line.description = item.description;
    line.category = item.category;
    line.quantity = quantity;
    line.unit = item.unit;
    line.price = in_dollars ? item.price * 74 / 100 : item.price;
    line.cost = line.price * 62 / 100;
    line.price_list = "STD";
    line.location = "10";
    line.picking_sequence = "990";
    line.weight = item.weight;
    line.lead_time = "10 working days";
    return line;
}

Line comment_line(std::string text)
{
    Line line;
    line.kind = kCommentLine;
    line.description = std::move(text);
    return line;
}

DateTime days_after(const DateTime& date, int days)
{
    return {date.serial_day() + days, 0};
}

}  // namespace velora::sample
