#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "reports/marked_quote.h"

namespace velora::test {

/// The marked quote as an order with lines of its own.
class OrderCompany : public MarkedQuote {
public:
    explicit OrderCompany(WhichEngine engine_in_use, AddressSource source = AddressSource::Saved)
        : MarkedQuote(engine_in_use, source)
    {
        product("DELETE FROM Details");
        accounting(
            "UPDATE CompanyInfo SET PhoneFormat = 0;"
            "INSERT INTO IC0310 (ITEMNO, FMTITEMNO, DEFPRICLST) VALUES ('ITEM', 'IT-EM', 'STD')");
        settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "0");
        printers.printers = {{"drv", "Office", "P1"}, {"drv", "Dock 1", "P2"}, {"drv", "Dock 2", "P3"}};
    }

    /// Adds lines, each with the columns that are named, as "Line = 1, deDType = 20".
    OrderCompany& lines(std::initializer_list<std::string> each)
    {
        std::string sql;
        for (const auto& columns : each) {
            sql += "INSERT INTO Details (QuoteID, Line) VALUES (1, -1); UPDATE Details SET " + columns +
                   " WHERE Line = -1;";
        }
        product(sql);
        return *this;
    }
    OrderCompany& line(const std::string& columns) { return lines({columns}); }

    SessionState& loaded()
    {
        auto& it = state();
        Get_QuoteStatus(it, false);
        Get_QuoteType(it, false);
        Get_QuoteConfid(it, false);
        Get_Defaults(it);
        return it;
    }

    /// A column of the quote as the database has it now.
    std::string stored(const std::string& column)
    {
        return to_text(connection()->Execute("SELECT " + column + " FROM Quote WHERE QuoteID = 1")->value(size_t{0}));
    }
};

/// The fields of a kind with what they hold, one a line: "name | type size | value", or a value for each row where the
/// rows differ.
inline std::string listed(const std::vector<PipeField>& fields, const std::vector<FakeReport::Row>& rows)
{
    std::ostringstream list;
    for (const auto& field : fields) {
        list << field.name << " | " << static_cast<int>(field.type) << ' ' << field.size;
        std::vector<std::string> values;
        for (const auto& row : rows) values.push_back(shown(row, std::string(field.name)));
        if (std::ranges::count(values, values.front()) == std::ranges::ssize(values)) values.resize(1);
        for (const auto& value : values) list << " | " << value;
        list << '\n';
    }
    return list.str();
}

/// Compares line by line with a file of `tests/golden/reports`. VELORA_RENEW_GOLDEN=1 writes it anew.
inline void expect_listed(const std::string& list, const std::string& golden)
{
    const std::string path = VELORA_SOURCE_DIR "/tests/golden/reports/" + golden;
    if (std::getenv("VELORA_RENEW_GOLDEN") != nullptr) std::ofstream(path) << list;
    std::ifstream file(path);
    std::istringstream given(list);
    std::string expected, line;
    while (std::getline(file, expected)) {
        std::getline(given, line);
        EXPECT_EQ(line, expected) << golden;
    }
    EXPECT_FALSE(std::getline(given, line)) << golden << " lacks: " << line;
}

}  // namespace velora::test
