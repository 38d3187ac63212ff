#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/sample/catalog.h"
#include "host/sample/customers.h"
#include "values/date_time.h"

namespace velora::sample {

inline constexpr int kItemLine = 20;
inline constexpr int kCommentLine = 10;
inline constexpr int kAccountingItem = 30;
inline constexpr int kOwnItem = 10;

enum Status : int16_t { kOpen = 1, kFollowUp = 2, kWon = 3, kLost = 4, kHeld = 5, kVoid = 6 };

/// A line of a quote. Amounts are in cents of the quote's currency.
struct Line {
    int kind = kItemLine;
    int item_kind = kAccountingItem;
    int32_t own_id = 0;
    std::string number;
    std::string description;  ///< of a comment line: its text
    std::string category;
    int quantity = 0;
    int transferred = 0;
    std::string unit;
    int factor = 1;          ///< stock units in the quote's unit
    int pricing_factor = 1;  ///< stock units in the unit of the price
    int64_t price = 0;       ///< of one pricing unit
    int64_t cost = 0;        ///< of one quote unit
    int discount_percent = 0;
    std::string price_list;
    std::string location;
    std::string customer_item;
    std::string lead_time;
    std::string picking_sequence;
    double weight = 0;
    bool tax_included = false;
    std::string comment;
    std::string instruction;

    [[nodiscard]] int64_t gross() const;
    [[nodiscard]] int64_t discount() const;
};

struct Charge {
    std::string code;
    std::string description;  ///< blank: the accounting system has it
    int64_t amount = 0;
};

struct Loss {
    int16_t reason;
    std::string reference;
    std::string notes;
};

struct Quote {
    int32_t id = 0;
    const Customer* customer = nullptr;
    int32_t own_customer = 0;  ///< 0 for a customer of the accounting system
    Status status = kOpen;
    int16_t type = 1;
    int16_t confidence = 2;
    DateTime entered;
    int valid_days = 30;
    std::optional<DateTime> transferred;
    bool complete = true;
    int32_t back_order_for = 0;
    std::string user;
    std::string description;
    std::string reference;
    std::string purchase_order;
    std::string notes;
    std::string ship_to;  ///< code of the customer's location
    std::string ship_via;
    std::string fob;
    std::string second_salesperson;
    bool saved_bill_to = false;
    bool saved_ship_to = false;
    bool on_hold = false;
    std::vector<Line> lines;
    std::vector<Charge> charges;
    std::optional<Loss> loss;

    [[nodiscard]] std::string number() const;
};

/// A line of an accounting item at the customer's price.
Line item_line(const Item& item, const Customer& customer, int quantity, bool in_packs = false);
Line own_line(const OwnItem& item, const Customer& customer, int quantity);
Line comment_line(std::string text);

/// The quote that shows everything.
Quote demo_quote(int32_t id);

/// All quotes and orders of the company, in the order of their ids.
std::vector<Quote> quotes();

/// The day so many days after.
DateTime days_after(const DateTime& date, int days);

}  // namespace velora::sample
