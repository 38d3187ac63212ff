#include "adapters/accounting_core/store.h"

#include "values/fault.h"

namespace velora::accounting {

namespace {

constexpr int32_t kErrorPriority = 2;  // an error, as against a message (0) and a warning (1)

}  // namespace

const Relation& Store::relation(const std::string& view_id)
{
    const auto known = relations_.find(view_id);
    if (known != relations_.end()) return known->second;
    try {
        return relations_.emplace(view_id, Relation(*source_, view_id)).first->second;
    } catch (const StoreError& error) {
        fail("The view " + view_id + " cannot be opened: " + error.what() + ".", view_id);
    }
}

void Store::fail(const std::string& description, const std::string& where)
{
    errors_.push_back({kErrorPriority, description});
    throw Fault(fault::kAccounting, description, where);
}

}  // namespace velora::accounting
