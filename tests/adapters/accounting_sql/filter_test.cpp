#include "adapters/accounting_core/filter.h"

#include <stdexcept>

using velora::accounting::Condition;
using velora::accounting::read_filter;
using velora::accounting::sql_operator;

namespace {

/// The conditions as "FIELD|op|value" joined by ";".
std::string shown(std::string_view filter)
{
    std::string text;
    for (const auto& condition : read_filter(filter)) {
        if (!text.empty()) text += ";";
        text += condition.field + "|" + std::string(sql_operator(condition.comparison)) + "|" + condition.value;
    }
    return text;
}

}  // namespace

TEST(AccountingFilter, ConditionsAreReadAsTheLogicWritesThem)
{
    struct Case {
        const char* why;
        const char* filter;
        const char* expected;
    };
    for (const auto& c : {
             Case{"one bare value", "IDCUST = 1100", "IDCUST|=|1100"},
             Case{"a bare value keeps its inner blanks", "CATEGORY = OFFICE SUPPLIES ", "CATEGORY|=|OFFICE SUPPLIES"},
             Case{"mixed values", "CURRENCY = USD AND ITEMNO = \"A1-103/0\" AND PRICELIST = WHS",
                  "CURRENCY|=|USD;ITEMNO|=|A1-103/0;PRICELIST|=|WHS"},
             Case{"an AND between quotes is part of the value", "ITEMNO = \"SALT AND PEPPER\" AND UNIT = EA",
                  "ITEMNO|=|SALT AND PEPPER;UNIT|=|EA"},
             Case{"a small and is no word of the filter", "CATEGORY = salt and pepper", "CATEGORY|=|salt and pepper"},
             Case{"a blank value at the end", "IDCUST = ", "IDCUST|=|"},
             Case{"a blank value in the middle", "AUTHORITY =  AND TTYPE = 1", "AUTHORITY|=|;TTYPE|=|1"},
             Case{"blanks around a quoted value", "ITEMNO =  \" A1 \"  AND UNIT = EA", "ITEMNO|=|A1;UNIT|=|EA"},
             Case{"an inch mark, doubled", "ITEMNO = \"BLT1/2\"\"\" AND UNIT = EA", "ITEMNO|=|BLT1/2\";UNIT|=|EA"},
             Case{"quotes at both ends", "ITEMNO = \"\"\"19\"\" RACK\"\"\"", "ITEMNO|=|\"19\" RACK\""},
             Case{"an empty quoted value", "ITEMNO = \"\"", "ITEMNO|=|"},
             Case{"no blanks at all", "CTYPE=1", "CTYPE|=|1"},
             Case{"every operator", "A <> 1 AND B < 2 AND C <= 3 AND D > 4 AND E >= 5 AND F != 6",
                  "A|<>|1;B|<|2;C|<=|3;D|>|4;E|>=|5;F|<>|6"},
             Case{"signs inside a bare value", "IDCUST = a=b\"c';--", "IDCUST|=|a=b\"c';--"},
             Case{"no filter", "  ", ""},
         }) {
        EXPECT_EQ(shown(c.filter), c.expected) << c.why;
    }
}

TEST(AccountingFilter, WhatDoesNotParseSaysWhere)
{
    for (const auto& [filter, place] : {
             std::pair{"ITEMNO = \"19\" RACK\"", "character 14"},
             std::pair{"ITEMNO = \"open", "not closed"},
             std::pair{"ITEMNO = \"open\"\"", "not closed"},
             std::pair{"= 5", "field name"},
             std::pair{"ITEMNO", "operator"},
             std::pair{"ITEMNO LIKE \"A%\"", "operator"},
             std::pair{"IDCUST = A AND B", "operator"},
             std::pair{"IDCUST = A AND ", "field name"},
             std::pair{"\"IDCUST\" = A", "field name"},
         }) {
        try {
            read_filter(filter);
            ADD_FAILURE() << filter;
        } catch (const std::invalid_argument& error) {
            EXPECT_THAT(error.what(), testing::AllOf(testing::HasSubstr(filter), testing::HasSubstr(place)));
        }
    }
}
