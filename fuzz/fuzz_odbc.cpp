#include <stdexcept>
#include <string>
#include <string_view>

#include "adapters/odbc_text/connection_string.h"
#include "adapters/odbc_text/conversions.h"
#include "adapters/odbc_text/single_query.h"
#include "adapters/odbc_text/wide_text.h"

namespace {

/// What goes into a field of eight bits comes from the bytes themselves.
int number_in(std::string_view text, size_t at)
{
    return at < text.size() ? static_cast<unsigned char>(text[at]) * 47 - 3000 : 0;
}

}  // namespace

/// Any bytes as what a driver or a settings file hands over: connection strings, decimals, moments, texts, queries.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace velora;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        static_cast<void>(odbc::with_environment(text, [&](const char* name) { return std::string(name) + ";}"; }));
    } catch (const std::invalid_argument&) {
        // a mark without an end, or without a name
    }
    const auto shown = odbc::without_passwords("PWD={" + odbc::from_wide(u"hidden") + "};" + std::string(text));
    if (shown.starts_with("PWD={")) __builtin_trap();
    for (const int decimals : {0, 2, 4, 9}) {
        const Value value = odbc::decimal_value(text, decimals);
        if (value.type() == Value::Type::Fixed) {
            const auto amount = *value.get_if<Fixed4>();
            if (odbc::decimal_value(odbc::amount_text(amount), 4) != value) __builtin_trap();
        }
    }
    static_cast<void>(odbc::moment_value({number_in(text, 0), number_in(text, 1), number_in(text, 2),
                                          number_in(text, 3), number_in(text, 4), number_in(text, 5)}));
    const auto wide = odbc::to_wide(text);
    if (odbc::to_wide(odbc::from_wide(wide)) != wide) __builtin_trap();
    static_cast<void>(odbc::refusal_of(text));
    return 0;
}
