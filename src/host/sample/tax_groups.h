#pragma once

#include <array>
#include <string_view>

namespace velora::sample {

struct TaxGroup {
    std::string_view id;
    std::string_view description;
    std::array<std::string_view, 5> authorities;
    std::array<bool, 5> taxable;  ///< the authority is charged on the tax of those before it
};

// clang-format off
inline constexpr auto kTaxGroups = std::to_array<TaxGroup>({
    {"ALBERTA",  "Alberta, federal tax only",                {"CAGST", "", "", "", ""},       {}},
    {"ATLANTIC", "Atlantic provinces, harmonized",           {"CAHST15", "", "", "", ""},     {}},
    {"BRITCOL",  "British Columbia, federal and provincial", {"CAGST", "", "BCPST", "", ""},  {}},
    {"ECO",      "Ontario with environmental fee",           {"CAHST", "ECOFEE", "", "", ""}, {}},
    {"EXPORT",   "Sales outside Canada",                     {"USNOTX", "", "", "", ""},      {}},
    {"ONTARIO",  "Ontario, harmonized",                      {"CAHST", "", "", "", ""},       {}},
    {"QUEBEC",   "Québec, federal and provincial",           {"CAGST", "CAQST", "", "", ""},  {false, true, false, false, false}},
    {"SASK",     "Saskatchewan, federal and provincial",     {"CAGST", "SKPST", "", "", ""},  {}},
});
// clang-format on

/// The group of an id, the first of all for an unknown one.
constexpr const TaxGroup& tax_group(std::string_view id)
{
    for (const TaxGroup& group : kTaxGroups) {
        if (group.id == id) return group;
    }
    return kTaxGroups.front();
}

}  // namespace velora::sample
