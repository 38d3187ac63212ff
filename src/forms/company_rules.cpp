#include "forms/company_rules.h"

#include "session/company.h"

namespace velora::forms {

std::optional<double> default_number(SessionState& state, std::string_view column)
{
    const Value& value = company_default(state, column);
    return value.is_null() ? std::nullopt : std::optional(to_number(value));
}

}  // namespace velora::forms
