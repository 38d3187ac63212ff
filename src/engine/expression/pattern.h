#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "engine/expression/expression.h"
#include "values/value.h"

namespace velora::engine {

/// Formats numbers by patterns such as "#,##0.00" and dates by patterns such as "dd MMM yyyy", made once and used
/// for every value. Copies share the work. One object is to be used by one thread at a time.
class Pattern {
public:
    /// A pattern that cannot be read as one of a number (or date) formats as if there were none.
    Pattern(std::string_view pattern, const Surroundings& surroundings);

    /// The formatted value. A value that the pattern is not for (text, a truth value) gives its plain text, null
    /// gives the empty text. Halves are rounded to even, as designers show them.
    [[nodiscard]] std::string format(const Value& value) const;

private:
    struct State;
    std::shared_ptr<State> state_;
};

/// What a field without a pattern shows for a value: 3.0 for a double, "true" for a truth value; dates in the
/// locale's short form. Empty for null.
std::string display_text(const Value& value, const Surroundings& surroundings);

}  // namespace velora::engine
