#pragma once

#include <unordered_map>

#include "platform/database.h"
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

/// A recordset whose rows all live in memory; every driver hands out its client cursors as one of these.
class ClientRecordset final : public Recordset {
public:
    ClientRecordset(std::vector<std::string> column_names, std::vector<std::vector<Value>> rows);

    [[nodiscard]] bool at_bof() const override;
    [[nodiscard]] bool at_eof() const override;
    void MoveFirst() override;
    void MoveNext() override;
    void MoveLast() override;
    [[nodiscard]] size_t RecordCount() const override;
    void AbsolutePosition(size_t position) override;
    void Disconnect() override;
    [[nodiscard]] size_t column_count() const override { return names_.count(); }
    [[nodiscard]] const std::string& column_name(size_t column) const override { return names_.name(column); }
    [[nodiscard]] size_t column(std::string_view name) const override { return names_.find(name); }
    [[nodiscard]] const Value& value(size_t column) const override;
    void AddNew() override;
    void put(size_t column, Value value) override;
    void Close() override;
    using Recordset::put;
    using Recordset::value;

private:
    void require_open() const;
    void require_row() const;

    ColumnNames names_;
    std::vector<std::vector<Value>> rows_;
    size_t position_ = 0;  // rows_.size() stands for the end
    bool open_ = true;
};

}  // namespace velora
