#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "reports/field_types.h"
#include "session/run_log.h"
#include "values/table_source.h"
#include "values/value.h"

namespace velora {

/// One field of a report's contract with its definitions. A size stands exactly with text.
struct PipeField {
    std::string_view name;
    ado::Type type;
    uint16_t size;
};

class PipeRows;

/// The flat table of a report run: declared field by field, filled row by row, read by the report.
///
/// A row that repeats the row before costs a few bytes, and one field write costs well under a microsecond. Fields
/// of the whole document are put once and carried to every row.
class DataPipeRecordset {
public:
    DataPipeRecordset(std::vector<PipeField> fields, RunLog& log);
    ~DataPipeRecordset();

    [[nodiscard]] const std::vector<PipeField>& fields() const { return fields_; }
    [[nodiscard]] size_t RecordCount() const;

    /// Starts a row. All fields are null but those that are carried.
    void AddNew();
    /// Writes a field of the row in hand. Text is cut to the field's size. Answers 0, or the number of the fault
    /// that the value is: 94 for a null, 13 or 6 for a value that the field's type does not take; the field then
    /// stays as it was.
    [[nodiscard]] int32_t put(size_t field, const Value& value);
    /// Carries the field's present value to all rows to come.
    void carry(size_t field);
    void Update();

    /// The field of the last row. @throws Fault 3021 when there is no row
    [[nodiscard]] const Value& last(std::string_view field) const;

    /// A reader of the rows that are there now; it stays valid after the pipe is closed.
    [[nodiscard]] std::shared_ptr<TableSource> table() const;

    [[nodiscard]] size_t bytes_held() const;

private:
    [[nodiscard]] int32_t put_text(size_t field, const Value& value);
    [[nodiscard]] int32_t put_typed(size_t field, const Value& value);
    void store(size_t field, Value&& value);

    std::vector<PipeField> fields_;
    std::vector<Value> row_;      // the row in hand; between rows the last one
    std::vector<uint8_t> state_;  // one entry for each field, while its row is in hand
    std::vector<uint16_t> changed_;
    std::shared_ptr<PipeRows> rows_;
    RunLog& log_;
};

}  // namespace velora
