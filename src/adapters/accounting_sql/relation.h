#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/accounting_sql/filter.h"
#include "adapters/sqlite_core/statement.h"

namespace velora::accounting {

/// The table or SQL view that stands for an accounting view, and the queries on it.
class Relation {
public:
    /// What the declared type tells of a field: where it says nothing, each stored value decides for itself.
    enum class FieldKind : uint8_t { Text, Number, Undeclared };

    /// A query with the values of its marks.
    struct Query {
        std::string sql;
        std::vector<Value> values;
    };

    /// @throws DriverError when there is no such relation
    Relation(sqlite::StatementPool& pool, std::string view_id);

    [[nodiscard]] const std::string& id() const { return id_; }
    /// @throws Fault 3265
    [[nodiscard]] size_t field(std::string_view name) const { return names_->find(name); }

    /// The rows that fulfil all conditions, in key order. Text is compared trimmed and without case, a null as the
    /// empty text; a field of numbers is compared as number with a value that is one. Values never enter the text.
    /// @throws Fault 3265 for a condition on a field that is not there
    [[nodiscard]] Query browse(const std::vector<Condition>& conditions, bool ascending) const;

private:
    [[nodiscard]] std::string quoted_name(size_t field) const;
    void add_condition(Query& query, const Condition& condition) const;
    [[nodiscard]] std::string order(const std::vector<Condition>& conditions, bool ascending) const;
    [[nodiscard]] std::string sort_term(size_t field) const;

    std::string id_;
    std::shared_ptr<const ColumnNames> names_;
    std::vector<FieldKind> kinds_;
};

}  // namespace velora::accounting
