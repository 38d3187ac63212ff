#pragma once

#include <functional>
#include <vector>

#include "values/table_source.h"

namespace velora::engine {

/// All rows of a table, kept so that reports inside a report can read them while the report itself does.
class RowStore {
public:
    /// @param cancelled  asked for every row that is read, here and later; true ends the run
    RowStore(TableSource& table, const std::function<bool()>& cancelled);

    [[nodiscard]] const std::vector<TableSource::Field>& fields() const { return fields_; }
    /// @throws Fault 20545 when the run was cancelled
    void check() const;
    [[nodiscard]] size_t size() const { return rows_.size(); }
    [[nodiscard]] const Value& cell(size_t row, size_t field) const { return rows_[row][field]; }

private:
    const std::function<bool()>& cancelled_;
    std::vector<TableSource::Field> fields_;
    std::vector<std::vector<Value>> rows_;
};

/// Reads a store from its first row.
class StoredTable : public TableSource {
public:
    explicit StoredTable(const RowStore& store) : store_(store) {}

    [[nodiscard]] const std::vector<Field>& fields() const override { return store_.fields(); }
    bool next() override
    {
        store_.check();
        return at_ < store_.size() && ++at_;
    }
    void rewind() override { at_ = 0; }
    [[nodiscard]] const Value& cell(size_t field) const override { return store_.cell(at_ - 1, field); }

private:
    const RowStore& store_;
    size_t at_ = 0;
};

/// So many rows without any field.
class EmptyRows : public TableSource {
public:
    explicit EmptyRows(size_t count) : count_(count) {}

    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override { return at_ < count_ && ++at_; }
    void rewind() override { at_ = 0; }
    [[nodiscard]] const Value& cell(size_t) const override { return none_; }

private:
    std::vector<Field> fields_;
    Value none_;
    size_t count_;
    size_t at_ = 0;
};

}  // namespace velora::engine
