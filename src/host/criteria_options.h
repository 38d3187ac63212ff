#pragma once

#include <span>
#include <string>
#include <vector>

#include "reports/kinds.h"

namespace CLI {
class App;
}

namespace velora {

/// What a person may say of the data of a report, as it was typed.
struct CriteriaOptions {
    std::vector<std::string> quotes;
    bool by_number = false;
    bool whole_quantities = false;
    std::string from, to;
    std::string accounting_customer;
    int32_t customer = 0;
    int32_t status = 0;
    int32_t reason = 0;
    std::string file;
    std::string name;
};

/// The options of the criteria that the kind has.
void add_criteria_options(CLI::App& command, const Criteria& criteria, CriteriaOptions& options);

/// The selection that the options mean, but for the quote. @throws UsageError for a period that ends before it begins
Selection selection_of(const CriteriaOptions& options, const DateTime& today);

/// @throws UsageError for a text that is no id
void require_ids(std::span<const std::string> quotes);

/// The id of a quote that was named by its id or its number. @throws HostError for a number that no quote has
int32_t quote_id(SessionState& state, const std::string& quote, bool by_number);

}  // namespace velora
