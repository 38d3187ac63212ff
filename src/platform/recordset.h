#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/rows.h"
#include "values/text.h"

namespace velora {

/// Column names of a recordset with their positions, looked up without case.
class ColumnNames {
public:
    explicit ColumnNames(std::vector<std::string> names);

    [[nodiscard]] size_t count() const { return names_.size(); }
    [[nodiscard]] const std::string& name(size_t column) const { return names_.at(column); }
    /// @throws Fault 3265
    [[nodiscard]] size_t find(std::string_view name) const;

private:
    std::vector<std::string> names_;
    std::unordered_map<std::string, size_t, NameHash, NameEqual> positions_;
};

/// Rows that all live in memory: counted, positioned at will, kept without the connection. A row may be added and
/// changed; that never reaches the database. Every driver hands out this one.
class Recordset final : public Rows {
public:
    Recordset(std::vector<std::string> column_names, std::vector<std::vector<Value>> rows);

    [[nodiscard]] bool at_bof() const override;
    [[nodiscard]] bool at_eof() const override;
    void MoveFirst() override;
    void MoveNext() override;
    void MoveLast();
    [[nodiscard]] size_t RecordCount() const;
    void AbsolutePosition(size_t position);  ///< counts from 1
    void Disconnect();                       ///< the rows live on without the connection
    [[nodiscard]] size_t column_count() const override { return names_.count(); }
    [[nodiscard]] const std::string& column_name(size_t column) const override { return names_.name(column); }
    [[nodiscard]] size_t column(std::string_view name) const override { return names_.find(name); }
    [[nodiscard]] const Value& value(size_t column) const override;
    using Rows::value;

    /// A new row of nulls becomes the current one.
    void AddNew();
    void put(size_t column, Value value);
    void put(std::string_view name, Value value) { put(column(name), std::move(value)); }

    void Close() override;

private:
    void require_open() const;
    void require_row() const;

    ColumnNames names_;
    std::vector<std::vector<Value>> rows_;
    size_t position_ = 0;  // rows_.size() stands for the end
    bool open_ = true;
};

}  // namespace velora
