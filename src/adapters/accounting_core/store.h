#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "adapters/accounting_core/relation.h"
#include "platform/accounting.h"

namespace velora::accounting {

/// What a session and its views share: the database, the relations met so far, the error stack.
class Store {
public:
    explicit Store(std::unique_ptr<RelationSource> source) : source_(std::move(source)) {}

    [[nodiscard]] RelationSource& source() { return *source_; }
    [[nodiscard]] std::vector<AccountingError>& errors() { return errors_; }

    /// @throws Fault when the store has no relation of that name, with an entry in the errors
    const Relation& relation(const std::string& view_id);

    /// Adds an entry to the errors and raises the fault for it.
    [[noreturn]] void fail(const std::string& description, const std::string& where);

private:
    std::unique_ptr<RelationSource> source_;
    std::unordered_map<std::string, Relation> relations_;
    std::vector<AccountingError> errors_;
};

/// @throws Fault as `Store::relation`
std::unique_ptr<View> open_view(const std::shared_ptr<Store>& store, const std::string& view_id);

}  // namespace velora::accounting
