#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/accounting_core/filter.h"
#include "adapters/accounting_core/relation_source.h"

namespace velora::accounting {

/// The table or SQL view that stands for an accounting view, and the queries on it.
class Relation {
public:
    /// @throws StoreError when there is no such relation
    Relation(RelationSource& source, std::string view_id);

    [[nodiscard]] const std::string& id() const { return id_; }
    /// @throws Fault 3265
    [[nodiscard]] size_t field(std::string_view name) const { return shape_.names->find(name); }

    /// The rows that fulfil all conditions, in key order. Text is compared trimmed and without case, a null as the
    /// empty text; a field of numbers is compared as number with a value that is one. Values never enter the text.
    /// @throws Fault 3265 for a condition on a field that is not there
    [[nodiscard]] RelationQuery browse(const std::vector<Condition>& conditions, bool ascending) const;

private:
    [[nodiscard]] std::string written_name(size_t field) const;
    void add_condition(RelationQuery& query, const Condition& condition) const;
    [[nodiscard]] std::string text_comparison(RelationQuery& query, size_t field, const Condition& condition) const;
    [[nodiscard]] std::string order(const std::vector<Condition>& conditions, bool ascending) const;

    std::string id_;
    const RelationWords* words_;
    RelationShape shape_;
};

}  // namespace velora::accounting
