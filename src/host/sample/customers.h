#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace velora::sample {

/// An address as both stores keep it.
struct Address {
    std::string_view name;
    std::string_view line1;
    std::string_view line2;
    std::string_view city;
    std::string_view province;
    std::string_view country;
    std::string_view postal_code;
    std::string_view phone;  ///< digits as entered
    std::string_view fax;
    std::string_view contact;
};

/// A customer of the accounting system.
struct Customer {
    std::string_view number;
    std::string_view short_name;
    std::string_view group;
    Address address;
    std::string_view email;
    std::string_view tax_group;
    std::string_view price_list;
    int discount_level;
    std::string_view terms;
    std::string_view salesperson;

    [[nodiscard]] std::string_view currency() const { return address.country == "USA" ? "USD" : "CAD"; }
    [[nodiscard]] std::string_view account_set() const { return address.country == "USA" ? "USA" : "TRADE"; }
};

/// A customer of the product's own that has not gone to the accounting system, or has where `exported` says so.
struct OwnCustomer {
    int32_t id;
    Customer customer;
    bool exported;
};

/// A ship-to location of an accounting customer.
struct ShipToLocation {
    std::string_view customer;
    std::string_view code;
    Address address;
    std::string_view instructions;
};

const std::vector<Customer>& customers();
const std::vector<OwnCustomer>& own_customers();
const std::vector<ShipToLocation>& ship_to_locations();

/// @throws std::out_of_range when there is none
const Customer& find_customer(std::string_view number);

}  // namespace velora::sample
