#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velora::sample {

/// An item of the accounting system. Amounts are in cents of the home currency, weights in kilograms.
struct Item {
    std::string number;     ///< as stored, without separators
    std::string formatted;  ///< as people read it
    std::string description;
    std::string category;
    std::string commodity;
    std::string stock_unit;
    std::string pack_unit;  ///< blank when the item is sold in its stock unit only
    int pack_factor = 1;
    int64_t price = 0;
    int64_t cost = 0;
    double weight = 0;
    int kind = 0;  ///< 0 to 7: which of the eight ways its price list row works
    std::string picking_sequence;

    [[nodiscard]] bool on_oem_list() const;     ///< the others fall back on the standard list
    [[nodiscard]] bool priced_by_pack() const;  ///< the price list states its price for a pack
};

/// An item of the product's own, with its price in cents of the home currency.
struct OwnItem {
    int32_t id;
    std::string_view number;
    std::string_view description;
    std::string_view category;
    std::string_view unit;
    int64_t price;
    double weight;
};

struct Category {
    std::string_view code;
    std::string_view description;
};

std::vector<Item> items();
const std::vector<OwnItem>& own_items();
const std::vector<Category>& categories();

/// The item of a formatted number. @throws std::out_of_range when there is none
const Item& find_item(const std::vector<Item>& all, std::string_view formatted);

/// What the standard list asks for one pricing unit, in cents of the currency.
int64_t list_price(const Item& item, std::string_view price_list, std::string_view currency);

}  // namespace velora::sample
