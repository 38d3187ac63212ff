#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "adapters/accounting_sql/relation.h"
#include "platform/accounting.h"

namespace velora::accounting {

/// What a session and its views share: the file, the relations met so far, the error stack.
class Store {
public:
    explicit Store(sqlite::Database database) : pool_(std::make_shared<sqlite::StatementPool>(std::move(database))) {}

    [[nodiscard]] sqlite::StatementPool& pool() { return *pool_; }
    [[nodiscard]] std::vector<AccountingError>& errors() { return errors_; }

    /// @throws Fault when the store has no relation of that name, with an entry in the errors
    const Relation& relation(const std::string& view_id);

    /// Adds an entry to the errors and raises the fault for it.
    [[noreturn]] void fail(const std::string& description, const std::string& where);

private:
    std::shared_ptr<sqlite::StatementPool> pool_;
    std::unordered_map<std::string, Relation> relations_;
    std::vector<AccountingError> errors_;
};

/// @throws Fault as `Store::relation`
std::unique_ptr<View> open_view(const std::shared_ptr<Store>& store, const std::string& view_id);

}  // namespace velora::accounting
