#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "reports/kinds.h"
#include "reports/preparation.h"
#include "support/test_company.h"
#include "values/utf8.h"

namespace velora::test {

/// A company whose lists are printed by their kind.
class ListCompany : public TestCompany {
public:
    explicit ListCompany(WhichEngine engine_in_use) : TestCompany(engine_in_use) {}

    RunEnd print(const std::string& kind, const Selection& what = {})
    {
        settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "0");
        load_lists(state());
        load_company(state());
        engine.report->rows.clear();
        return find_report_kind(kind)->print(state(), what, {"list.rpt", false, true});
    }

    const std::vector<FakeReport::Row>& rows(const std::string& kind, const Selection& what = {})
    {
        print(kind, what);
        return engine.report->rows;
    }
};

/// A field of a row as text; "<null>" where nothing was written.
inline std::string shown(const FakeReport::Row& row, const std::string& field)
{
    const auto found = row.find(field);
    if (found == row.end()) return "<no such field>";
    return found->second.is_null() ? "<null>" : to_text(found->second);
}

/// One field of all rows.
inline std::vector<std::string> shown(const std::vector<FakeReport::Row>& rows, const std::string& field)
{
    std::vector<std::string> texts;
    for (const auto& row : rows) texts.push_back(shown(row, field));
    return texts;
}

using Expected = std::map<std::string, std::string>;  // a field, and what it shows

/// Every field of the kind, none left out; those of the company but for its name are those of a company without them.
inline void expect_row(const std::string& kind, const FakeReport::Row& row, const Expected& expected)
{
    for (const auto& field : find_report_kind(kind)->fields()) {
        const std::string name(field.name);
        if (name.starts_with("Company ")) continue;
        const auto found = expected.find(name);
        if (found == expected.end()) {
            ADD_FAILURE() << "nothing is expected of " << name;
        } else {
            EXPECT_EQ(shown(row, name), found->second) << name;
        }
    }
}

/// Fields and the columns that they show, of a company whose columns were marked.
inline void take_sources(Expected& expected, const std::string& kind, const TestCompany& company,
                         const std::vector<std::pair<const char*, const char*>>& sources)
{
    std::map<std::string, size_t> sizes;
    for (const auto& field : find_report_kind(kind)->fields()) {
        sizes[std::string(field.name)] = field.type == ado::VarChar ? field.size : 1'000;
    }
    for (const auto& [field, column] : sources) {
        expected[field] = cut_to_characters(company.marker(column), sizes.at(field));
    }
}

}  // namespace velora::test
