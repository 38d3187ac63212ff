#pragma once

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
    bool all = false;
    int jobs = 1;
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

}  // namespace velora
