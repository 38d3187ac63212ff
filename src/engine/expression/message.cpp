#include <unicode/locid.h>
#include <unicode/msgfmt.h>

#include <vector>

#include "engine/expression/functions.h"

namespace velora::engine {

namespace {

icu::UnicodeString unicode(std::string_view text)
{
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

std::string utf8(const icu::UnicodeString& text)
{
    std::string out;
    text.toUTF8String(out);
    return out;
}

/// Arguments in the form that message patterns take; a null is the text "null".
std::vector<icu::Formattable> formattables(std::span<const Cell> arguments)
{
    std::vector<icu::Formattable> out;
    for (const Cell& value : arguments) {
        if (const auto* whole = value.get_if<int64_t>();
            whole != nullptr && value.value_class != ValueClass::Character) {
            out.emplace_back(*whole);
        } else if (is_number(value.value_class) && value.value_class != ValueClass::Character) {
            out.emplace_back(cell::to_double(value));
        } else if (is_date(value.value_class)) {
            out.emplace_back(static_cast<UDate>(value.get_if<DateTime>()->unix_milliseconds()),
                             icu::Formattable::kIsDate);
        } else {
            std::string text;
            cell::append_text(value, text);
            out.emplace_back(unicode(text));
        }
    }
    return out;
}

class MessageText : public Formatter {
public:
    MessageText(std::string pattern, std::string locale) : pattern_(std::move(pattern)), locale_(std::move(locale)) {}

    [[nodiscard]] std::optional<std::string> format(const Cell& cell) const override
    {
        return message(pattern_, {&cell, 1}, locale_);
    }
    [[nodiscard]] Cell parse(std::string_view) const override { return {}; }

private:
    std::string pattern_;
    std::string locale_;
};

}  // namespace

std::optional<std::string> message(std::string_view pattern, std::span<const Cell> arguments, const std::string& locale)
{
    if (arguments.size() == 1 && arguments.front().value_class == ValueClass::List) {
        arguments = **arguments.front().get_if<Cell::List>();
    }
    UErrorCode status = U_ZERO_ERROR;
    UParseError where;
    icu::MessageFormat format(u"", icu::Locale::createCanonical(locale.c_str()), status);
    format.applyPattern(unicode(pattern), UMSGPAT_APOS_DOUBLE_REQUIRED, &where, status);
    if (U_FAILURE(status)) return std::nullopt;
    const auto values = formattables(arguments);
    icu::UnicodeString text;
    icu::FieldPosition position(icu::FieldPosition::DONT_CARE);
    format.format(values.data(), static_cast<int32_t>(values.size()), text, position, status);
    if (U_FAILURE(status)) return std::nullopt;
    return utf8(text);
}

std::shared_ptr<const Formatter> make_message_formatter(std::string pattern, std::string locale)
{
    return std::make_shared<MessageText>(std::move(pattern), std::move(locale));
}

}  // namespace velora::engine
