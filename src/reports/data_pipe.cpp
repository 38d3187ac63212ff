#include "reports/data_pipe.h"

#include <limits>

#include "reports/pipe_rows.h"
#include "values/fault.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora {

namespace {

// What is known of a field while its row is in hand.
constexpr uint8_t kWritten = 1;
constexpr uint8_t kChanged = 2;
constexpr uint8_t kCarried = 4;

Value to_tiny(const Value& value)
{
    const int16_t number = to_int16(value);
    if (number < std::numeric_limits<int8_t>::min() || number > std::numeric_limits<int8_t>::max()) {
        throw fault::overflow();
    }
    return number;
}

Value converted(const Value& value, ado::Type type)
{
    switch (type) {
        case ado::Integer:
            return to_int32(value);
        case ado::TinyInt:
            return to_tiny(value);
        case ado::Single:
            return to_single(value);
        case ado::Date:
        case ado::DBTimeStamp:
            return to_date(value);
        case ado::Boolean:
            return to_bool(value);
        default:
            return to_text(value);
    }
}

/// Reads the rows that stood in the pipe when the reader was made.
class PipeTable final : public TableSource {
public:
    PipeTable(const std::vector<PipeField>& fields, std::shared_ptr<const PipeRows> rows)
        : rows_(std::move(rows)), count_(rows_->count()), row_(fields.size())
    {
        for (const auto& field : fields)
            fields_.push_back({std::string(field.name), ado::type_record(field.type).cell});
    }

    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override
    {
        if (next_ >= count_) return false;
        rows_->apply(next_++, row_);
        return true;
    }
    void rewind() override
    {
        next_ = 0;
        std::fill(row_.begin(), row_.end(), Value());
    }
    [[nodiscard]] const Value& cell(size_t field) const override { return row_[field]; }

private:
    std::vector<Field> fields_;
    std::shared_ptr<const PipeRows> rows_;
    size_t count_;
    size_t next_ = 0;
    std::vector<Value> row_;
};

}  // namespace

DataPipeRecordset::DataPipeRecordset(std::vector<PipeField> fields, RunLog& log)
    : fields_(std::move(fields)),
      row_(fields_.size()),
      state_(fields_.size(), 0),
      rows_(std::make_shared<PipeRows>(fields_.size())),
      log_(log)
{
}

DataPipeRecordset::~DataPipeRecordset() = default;

size_t DataPipeRecordset::RecordCount() const
{
    return rows_->count();
}

size_t DataPipeRecordset::bytes_held() const
{
    return rows_->bytes();
}

void DataPipeRecordset::AddNew()
{
    for (auto& state : state_) state &= kCarried;
}

void DataPipeRecordset::carry(size_t field)
{
    state_[field] |= kCarried;
}

int32_t DataPipeRecordset::put(size_t field, const Value& value)
{
    if (value.is_null()) return fault::kNull;
    return fields_[field].type == ado::VarChar ? put_text(field, value) : put_typed(field, value);
}

int32_t DataPipeRecordset::put_text(size_t field, const Value& value)
{
    const size_t size = fields_[field].size;
    const auto* text = value.get_if<std::string>();
    if (text != nullptr && text->size() <= size) {
        if (const auto* held = row_[field].get_if<std::string>(); held != nullptr && *held == *text) {
            state_[field] |= kWritten;
            return 0;
        }
        row_[field] = value;  // keeps the memory of the text before
        state_[field] |= kWritten | kChanged;
        return 0;
    }
    std::string whole = text != nullptr ? *text : to_text(value);
    const auto cut = cut_to_characters(whole, size);
    if (cut.size() < whole.size()) {
        log_.cut(RecordCount() + 1, fields_[field].name, character_count(whole), size);
        whole.resize(cut.size());
    }
    store(field, Value(std::move(whole)));
    return 0;
}

int32_t DataPipeRecordset::put_typed(size_t field, const Value& value)
{
    try {
        store(field, converted(value, fields_[field].type));
    } catch (const Fault& caught) {
        return caught.number();
    }
    return 0;
}

void DataPipeRecordset::store(size_t field, Value&& value)
{
    state_[field] |= kWritten;
    if (row_[field] == value) return;
    row_[field] = std::move(value);
    state_[field] |= kChanged;
}

void DataPipeRecordset::Update()
{
    changed_.clear();
    for (size_t field = 0; field < fields_.size(); ++field) {
        if ((state_[field] & (kWritten | kCarried)) == 0 && !row_[field].is_null()) {
            row_[field] = Value();
            state_[field] |= kChanged;
        }
        if ((state_[field] & kChanged) != 0) changed_.push_back(static_cast<uint16_t>(field));
    }
    rows_->add(changed_, row_);
}

const Value& DataPipeRecordset::last(std::string_view field) const
{
    if (RecordCount() == 0) throw fault::no_current_row(std::string(field));
    for (size_t at = 0; at < fields_.size(); ++at) {
        if (same_name(fields_[at].name, field)) return row_[at];
    }
    throw fault::no_such_column(std::string(field));
}

std::shared_ptr<TableSource> DataPipeRecordset::table() const
{
    return std::make_shared<PipeTable>(fields_, rows_);
}

}  // namespace velora
