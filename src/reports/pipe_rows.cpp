#include "reports/pipe_rows.h"

#include <bit>
#include <cstring>

#include "values/fault.h"

namespace velora {

namespace {

constexpr int kTypeShift = 56;
constexpr uint64_t kPayload = (uint64_t{1} << kTypeShift) - 1;
constexpr int kDayShift = 20;  // a second of the day takes 17 bits

uint64_t tagged(Value::Type type, uint64_t payload)
{
    return (uint64_t{static_cast<uint8_t>(type)} << kTypeShift) | (payload & kPayload);
}

/// The payload's 56 bits as a signed number.
int64_t signed_payload(uint64_t cell)
{
    return static_cast<int64_t>(cell << 8) >> 8;
}

}  // namespace

void PipeRows::add(std::span<const uint16_t> changed, std::span<const Value> row)
{
    const size_t start = words_.reserve(mask_words_ + changed.size());
    uint64_t* mask = words_.at(start);
    std::fill_n(mask, mask_words_, uint64_t{0});
    uint64_t* cell = mask + mask_words_;
    for (const uint16_t field : changed) {
        mask[field / kBitsInWord] |= uint64_t{1} << (field % kBitsInWord);
        *cell++ = encode(row[field]);
    }
    rows_.push_back(start);
}

void PipeRows::apply(size_t number, std::span<Value> row) const
{
    const uint64_t* mask = words_.at(rows_[number]);
    const uint64_t* cell = mask + mask_words_;
    for (size_t word = 0; word < mask_words_; ++word) {
        for (uint64_t bits = mask[word]; bits != 0; bits &= bits - 1) {
            decode(*cell++, row[word * kBitsInWord + static_cast<size_t>(std::countr_zero(bits))]);
        }
    }
}

size_t PipeRows::bytes() const
{
    return words_.bytes() + texts_.bytes() + rows_.capacity() * sizeof(uint64_t);
}

uint64_t PipeRows::encode(const Value& value)
{
    switch (value.type()) {
        case Value::Type::Null:
            return tagged(value.type(), 0);
        case Value::Type::Boolean:
            return tagged(value.type(), *value.get_if<bool>() ? 1 : 0);
        case Value::Type::Integer:
            return tagged(value.type(), static_cast<uint64_t>(*value.get_if<int64_t>()));
        case Value::Type::Single:
            return tagged(value.type(), std::bit_cast<uint32_t>(*value.get_if<float>()));
        case Value::Type::Date: {
            const auto& date = *value.get_if<DateTime>();
            const int64_t day = date.serial_day();
            return tagged(value.type(), static_cast<uint64_t>(day * (1 << kDayShift) + date.second_of_day()));
        }
        case Value::Type::Text: {
            const auto& text = *value.get_if<std::string>();
            const auto length = static_cast<uint16_t>(text.size());
            const size_t start = texts_.reserve(sizeof length + length);
            std::memcpy(texts_.at(start), &length, sizeof length);
            std::memcpy(texts_.at(start) + sizeof length, text.data(), length);
            return tagged(value.type(), start);
        }
        default:
            throw fault::type_mismatch();
    }
}

void PipeRows::decode(uint64_t cell, Value& into) const
{
    const uint64_t payload = cell & kPayload;
    switch (static_cast<Value::Type>(cell >> kTypeShift)) {
        case Value::Type::Boolean:
            into = Value(payload != 0);
            break;
        case Value::Type::Integer:
            into = Value(signed_payload(cell));
            break;
        case Value::Type::Single:
            into = Value(std::bit_cast<float>(static_cast<uint32_t>(payload)));
            break;
        case Value::Type::Date: {
            const int64_t packed = signed_payload(cell);
            into = Value(DateTime(static_cast<int32_t>(packed >> kDayShift),
                                  static_cast<int32_t>(packed & ((1 << kDayShift) - 1))));
            break;
        }
        case Value::Type::Text: {
            uint16_t length = 0;
            std::memcpy(&length, texts_.at(payload), sizeof length);
            into.assign({texts_.at(payload) + sizeof length, length});
            break;
        }
        default:
            into = Value();
    }
}

}  // namespace velora
