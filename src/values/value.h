#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "values/date_time.h"
#include "values/fixed4.h"

namespace velora {

/// A cell that may be null: of a database row, of an accounting view, of the data pipe, of a report's table.
class Value {
public:
    enum class Type : uint8_t { Null, Boolean, Integer, Single, Double, Fixed, Date, Text };

    Value() = default;
    Value(std::nullptr_t) {}
    Value(bool value) : data_(value) {}
    Value(int16_t value) : data_(int64_t{value}) {}
    Value(int32_t value) : data_(int64_t{value}) {}
    Value(int64_t value) : data_(value) {}
    Value(float value) : data_(value) {}
    Value(double value) : data_(value) {}
    Value(Fixed4 value) : data_(value) {}
    Value(DateTime value) : data_(value) {}
    Value(std::string value) : data_(std::move(value)) {}
    Value(std::string_view value) : data_(std::string(value)) {}
    Value(const char* value) : data_(std::string(value)) {}

    [[nodiscard]] Type type() const { return static_cast<Type>(data_.index()); }
    [[nodiscard]] bool is_null() const { return data_.index() == 0; }

    /// Null when the value is of another type; no conversion takes place.
    template <class T>
    [[nodiscard]] const T* get_if() const
    {
        return std::get_if<T>(&data_);
    }

    /// Takes a text; where it holds one, the memory of that serves again.
    void assign(std::string_view text)
    {
        if (auto* held = std::get_if<std::string>(&data_)) {
            held->assign(text);
        } else {
            data_.emplace<std::string>(text);
        }
    }

    bool operator==(const Value&) const = default;

private:
    std::variant<std::monostate, bool, int64_t, float, double, Fixed4, DateTime, std::string> data_;
};

// Conversions in the manner of the product. All of them raise fault 94 for a null.

/// Text as it is, numbers as their plain text, truth values as "True" and "False", dates as ISO text.
std::string to_text(const Value& value);
/// Text has to be a number as a whole; a true truth value is -1; a date is its serial number. @throws Fault 13
double to_number(const Value& value);
/// The number rounded half to even. @throws Fault 13, 6
int32_t to_int32(const Value& value);
int16_t to_int16(const Value& value);
/// The nearest single. @throws Fault 6 beyond its range
float to_single(double value);
/// @throws Fault 13, 6
float to_single(const Value& value);
/// The number, not zero; of the texts also "True" and "False". @throws Fault 13
bool to_bool(const Value& value);
/// @throws Fault 13 for text that is no ISO date
DateTime to_date(const Value& value);
/// The value as a date where it is one or ISO text of one.
std::optional<DateTime> date_in(const Value& value);
/// The number at the start of the value's text: 0 for text that starts with none.
double numeric_value(const Value& value);
/// Whether the value is this number; a null equals nothing. @throws Fault 13
bool equals_number(const Value& value, double number);
/// The value's text without the blanks at both ends.
std::string trimmed_text(const Value& value);

}  // namespace velora
