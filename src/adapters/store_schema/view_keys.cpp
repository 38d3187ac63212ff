#include "adapters/store_schema/view_keys.h"

#include <array>

#include "values/text.h"

namespace velora::accounting {

namespace {

struct ViewKey {
    std::string_view view;
    size_t count;
    std::array<std::string_view, 3> columns;
};

// clang-format off
constexpr auto kKeys = std::to_array<ViewKey>({
    {"AR0013", 1, {"IDACCTSET"}},
    {"AR0016", 1, {"CODETERM"}},
    {"AR0017", 1, {"CODETERM"}},
    {"AR0018", 1, {"CODESLSP"}},
    {"AR0023", 2, {"IDCUST", "IDCUSTSHPT"}},
    {"AR0024", 1, {"IDCUST"}},
    {"IC0210", 1, {"CATEGORY"}},
    {"IC0274", 3, {"CUSTNO", "ITEMNO", "PRICELIST"}},
    {"IC0290", 2, {"ITEMNO", "LOCATION"}},
    {"IC0310", 1, {"ITEMNO"}},
    {"IC0330", 2, {"ITEMNO", "AUTHORITY"}},
    {"IC0370", 1, {"LOCATION"}},
    {"IC0390", 1, {"PRICELIST"}},
    {"IC0480", 3, {"CURRENCY", "ITEMNO", "PRICELIST"}},
    {"IC0750", 2, {"ITEMNO", "UNIT"}},
    {"MW0200", 2, {"CTYPE", "CCODE"}},
    {"OE0440", 2, {"CURRENCY", "MISCCHARGE"}},
    {"OE0460", 2, {"CURRENCY", "MISCCHARGE"}},
    {"TX0003", 1, {"GROUPID"}},
    {"TX0004", 3, {"AUTHORITY", "TTYPE", "BUYERCLASS"}},
});
// clang-format on

}  // namespace

std::span<const std::string_view> key_columns(std::string_view view_id)
{
    for (const auto& key : kKeys) {
        if (same_name(key.view, view_id)) return std::span(key.columns).first(key.count);
    }
    return {};
}

}  // namespace velora::accounting
