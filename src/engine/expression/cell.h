#pragma once

#include <compare>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "engine/expression/decimal.h"
#include "engine/expression/value_class.h"
#include "values/value.h"

namespace velora::engine {

class Formatter;

/// A value inside the expression machine: the class it is of, and the value. An integer of any width and a
/// character (its UTF-16 unit) are held as int64_t, a float as a double that a float holds exactly.
struct Cell {
    using List = std::shared_ptr<const std::vector<Cell>>;
    using Data = std::variant<std::monostate, bool, int64_t, double, Decimal, DateTime, std::string,
                              std::shared_ptr<const Formatter>, List>;
    ValueClass value_class = ValueClass::Null;
    Data data;

    [[nodiscard]] bool is_null() const { return value_class == ValueClass::Null; }
    template <class T>
    [[nodiscard]] const T* get_if() const
    {
        return std::get_if<T>(&data);
    }
};

namespace cell {

Cell boolean(bool value);
/// Wraps around as the class does: an Integer has 32 bits.
Cell integer(int64_t value, ValueClass value_class = ValueClass::Integer);
Cell number(double value, ValueClass value_class = ValueClass::Double);
Cell decimal(const std::optional<Decimal>& value);
Cell date(DateTime value, ValueClass value_class = ValueClass::Date);
Cell text(std::string value);
Cell list(std::vector<Cell> parts, ValueClass value_class = ValueClass::List);

/// The cell of a value that was declared with a class: text "12" of an Integer field is 12. Null where the value
/// cannot be one of that class.
Cell from(const Value& value, ValueClass declared);
Value to_value(const Cell& cell);

/// The cell as one of another class, as a cast or a boxed constructor makes it. Null where that is impossible.
Cell converted(Cell cell, ValueClass to);

/// Appends what `+` with a text appends: "null", "true", 3.0, 1.50, dates in their fixed written form.
void append_text(const Cell& cell, std::string& out);

double to_double(const Cell& cell);    ///< of a number; 0 for anything else
int64_t to_integer(const Cell& cell);  ///< of a number, cut towards zero and to the range; 0 for anything else
std::optional<Decimal> to_decimal(const Cell& cell);

/// Order of two numbers, texts, dates or truth values; none where they have none.
std::optional<int> compared(const Cell& left, const Cell& right);
/// As `==` of the language sees it: null is equal to null only, numbers by value, texts by their characters.
bool equal(const Cell& left, const Cell& right);

}  // namespace cell

/// Shortest text that reads back as the same double (or float), with at least one place: 3.0, 0.1, 1.0E10.
std::string number_text(double value, bool single);

}  // namespace velora::engine
