#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velora::accounting {

/// One comparison of a filter. The value stands as it was written, without the blanks around it.
struct Condition {
    enum class Operator : uint8_t { Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual };

    std::string field;
    Operator comparison = Operator::Equal;
    std::string value;
};

/// Reads "FIELD op value" joined by " AND ". A value stands between double quotes, one of its own doubled, or reaches
/// to the next " AND ". A blank filter has no conditions.
/// @throws std::invalid_argument with the place where the text is no filter
std::vector<Condition> read_filter(std::string_view filter);

/// The operator as SQL writes it.
std::string_view sql_operator(Condition::Operator comparison);

}  // namespace velora::accounting
