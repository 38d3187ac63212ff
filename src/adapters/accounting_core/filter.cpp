#include "adapters/accounting_core/filter.h"

#include <array>
#include <stdexcept>

#include "values/text.h"

namespace velora::accounting {

namespace {

using Operator = Condition::Operator;

constexpr std::string_view kAnd = " AND ";

struct OperatorText {
    std::string_view text;
    Operator comparison;
};

// The longer ones first, so that "<=" is not taken for "<".
constexpr auto kOperators = std::to_array<OperatorText>({
    {"<>", Operator::NotEqual},
    {"!=", Operator::NotEqual},
    {"<=", Operator::LessOrEqual},
    {">=", Operator::GreaterOrEqual},
    {"=", Operator::Equal},
    {"<", Operator::Less},
    {">", Operator::Greater},
});

constexpr bool is_name_character(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

class FilterReader {
public:
    explicit FilterReader(std::string_view text) : whole_(text), rest_(text) {}

    [[nodiscard]] bool at_end() const { return trimmed(rest_).empty(); }

    std::string field()
    {
        skip_blanks();
        size_t length = 0;
        while (length < rest_.size() && is_name_character(rest_[length])) ++length;
        if (length == 0) fail("a field name is expected");
        return std::string(take(length));
    }

    Operator comparison()
    {
        skip_blanks();
        for (const auto& candidate : kOperators) {
            if (rest_.starts_with(candidate.text)) {
                take(candidate.text.size());
                return candidate.comparison;
            }
        }
        fail("an operator is expected");
    }

    std::string value()
    {
        const auto start = rest_.find_first_not_of(' ');
        if (start != std::string_view::npos && rest_[start] == '"') return quoted(start);
        return std::string(trimmed(take(std::min(rest_.find(kAnd), rest_.size()))));
    }

    /// Takes the word between two conditions; false at the end of the text.
    bool joined()
    {
        if (at_end()) return false;
        while (rest_.starts_with("  ")) take(1);
        if (!rest_.starts_with(kAnd)) fail("the filter goes on behind a value");
        take(kAnd.size());
        return true;
    }

private:
    std::string quoted(size_t start)
    {
        take(start + 1);
        std::string value;
        while (true) {
            const auto end = rest_.find('"');
            if (end == std::string_view::npos) fail("a double quote is not closed");
            value += take(end);
            take(1);
            if (!rest_.starts_with('"')) return std::string(trimmed(value));
            value += take(1);
        }
    }

    std::string_view take(size_t length)
    {
        const auto taken = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return taken;
    }

    void skip_blanks() { take(std::min(rest_.find_first_not_of(' '), rest_.size())); }

    [[noreturn]] void fail(const std::string& reason) const
    {
        const auto place = std::to_string(whole_.size() - rest_.size() + 1);
        throw std::invalid_argument("The filter [" + std::string(whole_) + "] is not valid at character " + place +
                                    ": " + reason + ".");
    }

    std::string_view whole_;
    std::string_view rest_;
};

}  // namespace

std::vector<Condition> read_filter(std::string_view filter)
{
    std::vector<Condition> conditions;
    FilterReader reader(filter);
    if (reader.at_end()) return conditions;
    do {
        auto& condition = conditions.emplace_back();
        condition.field = reader.field();
        condition.comparison = reader.comparison();
        condition.value = reader.value();
    } while (reader.joined());
    return conditions;
}

std::string_view sql_operator(Condition::Operator comparison)
{
    switch (comparison) {
        case Operator::NotEqual:
            return "<>";
        case Operator::Less:
            return "<";
        case Operator::LessOrEqual:
            return "<=";
        case Operator::Greater:
            return ">";
        case Operator::GreaterOrEqual:
            return ">=";
        default:
            return "=";
    }
}

}  // namespace velora::accounting
