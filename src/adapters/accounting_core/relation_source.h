#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/recordset.h"

namespace velora::accounting {

/// What the database refused, in its own words.
class StoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What the declared type tells of a field: where it says nothing, each stored value decides for itself.
enum class FieldKind : uint8_t { Text, Number, Undeclared };

/// The columns of a table or an SQL view.
struct RelationShape {
    std::shared_ptr<const ColumnNames> names;
    std::vector<FieldKind> kinds;
};

/// A query with the values of its marks, in their order.
struct RelationQuery {
    std::string sql;
    std::vector<Value> values;
};

/// The rows of a query, as they come.
class RelationRows {
public:
    virtual ~RelationRows() = default;

    [[nodiscard]] virtual const ColumnNames& names() const = 0;
    virtual bool step() = 0;  ///< false when no row is left. @throws StoreError
    [[nodiscard]] virtual Value value(size_t column) const = 0;
};

/// How a database writes what the queries on relations need. A mark is a question mark.
class RelationWords {
public:
    virtual ~RelationWords() = default;

    [[nodiscard]] virtual std::string relation(const std::string& id) const = 0;
    [[nodiscard]] virtual std::string field(const std::string& name) const = 0;
    /// A text that equals the mark's trimmed and without case, worded as the key indexes are. How many marks it takes
    /// is for `equal_marks` to say.
    [[nodiscard]] virtual std::string equals(const std::string& field) const = 0;
    [[nodiscard]] virtual size_t equal_marks() const { return 1; }
    /// The text trimmed, a null as the empty one, for a comparison without case.
    [[nodiscard]] virtual std::string comparable(const std::string& field) const = 0;
    [[nodiscard]] virtual std::string comparable_mark() const = 0;
    [[nodiscard]] virtual std::string sort_term(const std::string& field, FieldKind kind) const = 0;
    /// The comparison of a field without a declared type: one of the two by what is stored.
    [[nodiscard]] virtual std::string by_stored_type(const std::string& field, const std::string& as_number,
                                                     const std::string& as_text) const = 0;
};

/// A database of relations.
class RelationSource {
public:
    virtual ~RelationSource() = default;

    [[nodiscard]] virtual const RelationWords& words() const = 0;
    /// @throws StoreError when there is no such relation
    virtual RelationShape shape(const std::string& id) = 0;
    /// @throws StoreError
    virtual std::unique_ptr<RelationRows> select(const RelationQuery& query) = 0;
    /// None where the database reads one state already. @throws StoreError
    virtual std::unique_ptr<Snapshot> begin_snapshot() = 0;
};

}  // namespace velora::accounting
