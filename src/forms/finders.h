#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velora::forms {

class FormDesk;

/// Finds a quote, or a customer of the product's own. Both show a form and return when it is closed.
class QuoteFinder {
public:
    static constexpr int kQuotes = 0;
    static constexpr int kOrders = 2;

    explicit QuoteFinder(FormDesk& desk) : desk_(desk) {}
    /// The quotes of the session's user alone, where the state says so.
    void show_quotes(int mode);
    void show_customers();
    [[nodiscard]] int32_t id() const { return id_; }  ///< 0 for none

private:
    FormDesk& desk_;
    int32_t id_ = 0;
};

/// Finds a customer of the accounting system.
class AccpacCustomerFinder {
public:
    explicit AccpacCustomerFinder(FormDesk& desk) : desk_(desk) {}
    /// @param number  what the search begins with
    void show(std::string_view number);
    [[nodiscard]] const std::string& number() const { return number_; }  ///< blank for none

private:
    FormDesk& desk_;
    std::string number_;
};

}  // namespace velora::forms
