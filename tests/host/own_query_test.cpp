#include "host/program.h"

using ::testing::HasSubstr;
using velora::testing::file_text;
using velora::testing::HostTest;
using velora::testing::Ran;
using velora::testing::write_text;

namespace fs = std::filesystem;

namespace {

/// A definition that prints the column `name` of its own statement.
std::string definition(const std::string& statement, const std::string& connection = {})
{
    const std::string property =
        connection.empty() ? "" : "<property name=\"velora.connection\" value=\"" + connection + "\"/>";
    return "<jasperReport name=\"Own\" pageWidth=\"612\" pageHeight=\"792\" columnWidth=\"540\" leftMargin=\"36\" "
           "rightMargin=\"36\" topMargin=\"36\" bottomMargin=\"36\">" +
           property + "<query language=\"sql\"><![CDATA[" + statement +
           "]]></query><field name=\"name\" class=\"java.lang.String\"/><detail><band height=\"20\">"
           "<element kind=\"textField\" x=\"0\" y=\"0\" width=\"300\" height=\"20\"><expression><![CDATA[$F{name}]]>"
           "</expression></element></band></detail></jasperReport>";
}

}  // namespace

TEST_F(HostTest, ADefinitionsQueryReadsTheCompanyAndChangesNothing)
{
    struct Case {
        const char* why;
        std::string statement;
        int status;
        const char* says;
    };
    const fs::path folder = company_copy();
    const std::string before = file_text(folder / "velora.db");
    const std::string out = scratch("out.txt").string();
    for (const auto& c : {
             Case{"a query", "SELECT qsName AS name FROM QuoteStatus WHERE QuoteStatusID = 1", 0, ""},
             Case{"rows go", "DELETE FROM QuoteStatus", 1, "may only read, and this one holds DELETE"},
             Case{"a table goes", "DROP TABLE Quote", 1, "may only read"},
             Case{"another file", "ATTACH 'x.db' AS x", 1, "ATTACH"},
             Case{"a second statement", "SELECT 1 AS name; DELETE FROM Quote", 1, "more than one statement"},
             Case{"too many rows",
                  "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i AS name FROM n", 1,
                  "more than 5000 rows"},
         }) {
        std::string ini = file_text(folder / "velora.ini");
        write_text(folder / "velora.ini", ini + "MostRows = 5000\n");
        write_text(scratch("own.jrxml"), definition(c.statement));
        const Ran ran =
            run(in_company(folder, {"custom", scratch("own.jrxml").string(), "--export", "txt", "--output", out}));
        write_text(folder / "velora.ini", ini);
        EXPECT_EQ(ran.status, c.status) << c.why << ran.err;
        EXPECT_THAT(ran.err, HasSubstr(c.says)) << c.why;
        EXPECT_EQ(fs::exists(out), c.status == 0) << c.why;
        EXPECT_EQ(file_text(folder / "velora.db"), before) << c.why;
        fs::remove(out);
    }
}

TEST_F(HostTest, AQueryThatNeverEndsEndsAtItsTimeAndAnotherFileIsReadOnlyToo)
{
    const fs::path folder = company_copy();
    const std::string before = file_text(folder / "velora.db");
    write_text(folder / "velora.ini", file_text(folder / "velora.ini") + "Timeout = 1\n");
    write_text(
        scratch("own.jrxml"),
        definition("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT max(i) AS name FROM n"));
    const Ran endless = run(in_company(folder, {"custom", scratch("own.jrxml").string()}));
    EXPECT_EQ(endless.status, 1);
    EXPECT_THAT(endless.err, HasSubstr("it had worked for 1 seconds"));

    const std::string other = "sqlite:" + (folder / "velora.db").string();
    write_text(scratch("own.jrxml"), definition("UPDATE Quote SET Comment1 = 'x'", other));
    const Ran update = run({"render", scratch("own.jrxml").string(), "--output", scratch("o.pdf").string()});
    EXPECT_EQ(update.status, 1);
    EXPECT_THAT(update.err, HasSubstr("UPDATE"));
    EXPECT_EQ(file_text(folder / "velora.db"), before);

    write_text(folder / "velora.ini", file_text(folder / "velora.ini") + "MostRows = many\n");
    EXPECT_THAT(run(in_company(folder, {"lists"})).err, HasSubstr("MostRows"));
}
