#pragma once

#include "engine/expression/value_class.h"
#include "values/value.h"

/// Arithmetic of the aggregates, done in the class that a variable is declared with.
namespace velora::engine {

/// 0 for what is no number.
double as_double(const Value& value);

/// The number in the way the class holds it: whole, single, fixed point or double. Null for what is no number.
Value as_class(double number, ValueClass value_class);

/// What a cell gives to a field of the declared class; text that reads as a number counts for a number class.
Value coerced(const Value& cell, ValueClass value_class);
/// Whether a cell can be taken as it is.
bool fits_class(const Value& cell, ValueClass value_class);

Value sum_of(const Value& left, const Value& right, ValueClass value_class);
/// Null for a count of 0.
Value quotient_of(const Value& sum, const Value& count, ValueClass value_class);
/// Negative, zero or positive; numbers by size, dates by time, everything else by its text.
int compare_values(const Value& left, const Value& right);

}  // namespace velora::engine
