#include <nlohmann/json.hpp>

#include "adapters/odbc/connection.h"
#include "host/servers/companies.h"

using namespace velora;
using namespace velora::testing;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

class OddCells : public ServersTest {
protected:
    /// A cell of the first row of a pipe, as JSON.
    [[nodiscard]] static std::string cell(const fs::path& pipe, const std::string& field)
    {
        const auto told = nlohmann::json::parse(file_text(pipe), nullptr, false);
        if (told.is_discarded()) return "no pipe";
        for (size_t at = 0; at < told["fields"].size(); ++at) {
            if (told["fields"][at]["name"] == field) return told["rows"][0][at].dump();
        }
        return "no such field";
    }
};

}  // namespace

TEST_F(OddCells, WhatAServerHoldsBesideItsSchemaIsReadOrToldAndNeverHalfDelivered)
{
    struct Case {
        const char* why;
        std::string sql;
        int status;
        const char* field;
        const char* says;  ///< the cell's beginning, or the box of a run that failed
    };
    for (const auto& server : test::running_servers()) {
        const bool is_mariadb = server->name() == "MariaDB";
        const auto as_type = [&](const std::string& table, const std::string& column, const std::string& mariadb,
                                 const std::string& postgresql) {
            return is_mariadb ? "ALTER TABLE " + table + " MODIFY " + column + " " + mariadb
                              : "ALTER TABLE " + table + " ALTER " + column + " DROP DEFAULT, ALTER " + column +
                                    " TYPE " + postgresql;
        };
        const auto entered = [](const std::string& date) { return "UPDATE Quote SET quDateEnter = '" + date + "'"; };
        const auto ordered = [](const std::string& quantity) {
            return "UPDATE Details SET deQuantity = '" + quantity + "'";
        };
        const std::vector<Case> cases{
            {"a date before 1900", entered("1899-12-30"), 0, "Quote Date", "\"1899-12-30\""},
            {"a date of the year 1", entered("0001-01-01"), 0, "Quote Date", "\"0001-01-01\""},
            {"no day of any year", entered(is_mariadb ? "0000-00-00" : "0044-03-15 BC"), 1, "",
             is_mariadb ? "Invalid use of Null" : "Type mismatch"},
            {"a date in a column of texts", entered("2026-01-01"), 0, "Quote Date", "\"2026-01-01\""},
            {"a column of texts for dates", as_type("Quote", "quDateEnter", "VARCHAR(40)", "VARCHAR(40)"), 0,
             "Quote Date", "\"2026-01-01\""},
            {"a word for a date", entered("tomorrow"), 1, "", "Type mismatch"},
            {"a date again", entered("2026-01-02"), 0, "Quote Date", "\"2026-01-02\""},
            {"a text of a megabyte", "UPDATE Quote SET quNotes = REPEAT('ü', 500000)", 0, "Quote Notes", "\"üüü"},
            {"a column of texts for numbers", as_type("Details", "deQuantity", "VARCHAR(20)", "VARCHAR(20)"), 0,
             "Quote SubTotal", "\"24,744.91\""},
            {"a word for a number", ordered("many"), 1, "", "Type mismatch"},
            {"a number beyond its type", ordered("1e300"), 4, "Quote SubTotal", "\"0.00\""},
            {"a number again", ordered("2.5"), 0, "Quote SubTotal", "\"29,990.33\""}};
        const auto folder = moved(company(), *server);
        const auto pipe = scratch("pipe.json"), target = scratch("it.pdf");
        for (const auto& c : cases) {
            SCOPED_TRACE(server->name() + ", " + c.why);
            open_odbc(server->connection("velora"))->Execute(c.sql);
            write_text(target, "earlier");
            fs::remove(pipe);
            const Ran ran = run(in_company(
                folder, {"quote", "--number", "Q-10052", "--output", target.string(), "--pipe", pipe.string()}));
            EXPECT_EQ(ran.status, c.status) << ran.err;
            EXPECT_THAT(file_text(target), StartsWith(c.status == 1 ? "earlier" : "%PDF-"));
            EXPECT_THAT(c.status == 1 ? ran.err : cell(pipe, c.field), HasSubstr(c.says));
        }
    }
}
