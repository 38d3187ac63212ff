#include "engine/expression/pattern.h"

#include "engine/expression/formatter.h"

namespace velora::engine {

/// The two formatters are made when the first value of their kind comes.
struct Pattern::State {
    std::string pattern;
    Surroundings surroundings;
    std::optional<std::shared_ptr<const Formatter>> number;
    std::optional<std::shared_ptr<const Formatter>> date;

    const Formatter* for_number()
    {
        if (!number) number = pattern.empty() ? nullptr : make_number_formatter(pattern, surroundings.locale);
        return number->get();
    }

    const Formatter* for_date()
    {
        if (!date) date = make_date_formatter(pattern, surroundings.locale, surroundings.time_zone);
        return date->get();
    }
};

Pattern::Pattern(std::string_view pattern, const Surroundings& surroundings)
    : state_(std::make_shared<State>(State{std::string(pattern), surroundings, {}, {}}))
{
}

std::string Pattern::format(const Value& value) const
{
    if (const auto* text = value.get_if<std::string>()) return *text;
    const Cell cell = cell::from(value, ValueClass::Object);
    const Formatter* formatter = nullptr;
    if (is_number(cell.value_class)) formatter = state_->for_number();
    if (is_date(cell.value_class)) formatter = state_->for_date();
    if (formatter != nullptr) {
        if (auto text = formatter->format(cell)) return *std::move(text);
    }
    std::string out;
    if (!cell.is_null()) cell::append_text(cell, out);
    return out;
}

std::string display_text(const Value& value, const Surroundings& surroundings)
{
    return Pattern("", surroundings).format(value);
}

}  // namespace velora::engine
