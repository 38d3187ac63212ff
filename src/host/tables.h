#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "values/date_time.h"
#include "values/table_source.h"

namespace velora {

/// Rows in memory.
class HeldTable final : public TableSource {
public:
    HeldTable(std::vector<Field> fields, std::vector<std::vector<Value>> rows)
        : fields_(std::move(fields)), rows_(std::move(rows))
    {
    }

    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override { return ++at_ <= rows_.size(); }
    void rewind() override { at_ = 0; }
    [[nodiscard]] const Value& cell(size_t field) const override { return rows_.at(at_ - 1).at(field); }
    [[nodiscard]] size_t row_count() const { return rows_.size(); }

private:
    std::vector<Field> fields_;
    std::vector<std::vector<Value>> rows_;
    size_t at_ = 0;  // rows count from 1
};

/// So many rows in which each text is the name of its field and everything else a value of its type: a designer sees
/// what stands where. Whole numbers count the rows.
class SampleTable final : public TableSource {
public:
    /// The texts that a field goes through, row by row, instead of its name.
    using Choices = std::map<std::string, std::vector<std::string>, std::less<>>;

    SampleTable(std::vector<Field> fields, const Choices& choices, size_t count, const DateTime& now);

    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override;
    void rewind() override { at_ = 0; }
    [[nodiscard]] const Value& cell(size_t field) const override { return row_.at(field); }

private:
    std::vector<Field> fields_;
    std::vector<std::vector<std::string>> choices_;  ///< of each field
    std::vector<Value> row_;
    size_t count_;
    size_t at_ = 0;  // rows count from 1
};

/// The texts with which a definition compares fields, as in `"Item".equals($F{Detail Type})`: what it prints hangs on
/// them.
SampleTable::Choices compared_texts(std::string_view definition);

/// A file of values separated by commas; its columns are the texts COLUMN_0, COLUMN_1, ..., with a head those that its
/// first line names.
/// @throws HostError naming file and line
HeldTable read_csv(const std::filesystem::path& file, bool head = false);

/// A file in the form that `--pipe` writes. @throws HostError naming file and place
HeldTable read_pipe_json(const std::filesystem::path& file);

}  // namespace velora
