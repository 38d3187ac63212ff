#include "host/tables.h"

#include "program.h"

namespace velora::testing {
namespace {

using ::testing::HasSubstr;

template <class Table>
std::string all_cells(Table&& table)
{
    std::string text;
    while (table.next()) {
        for (size_t field = 0; field < table.fields().size(); ++field) {
            const Value& cell = table.cell(field);
            text += cell.is_null() ? "~|" : to_text(cell) + "|";
        }
        text += '\n';
    }
    return text;
}

class Tables : public HostTest {};

TEST_F(Tables, SampleRowsShowEachFieldByNameOrType)
{
    const auto choices = compared_texts(
        R"(<x>"Item".equals($F{Kind}) || "Charge".equals( $F{Kind}) ? "" : "Charge".equals($F{Kind})</x>
           <y>"Item".equals($F{Kind}) "open".equals($F{never closed)");
    SampleTable table({{"Name", Value::Type::Text},
                       {"Kind", Value::Type::Text},
                       {"Count", Value::Type::Integer},
                       {"Amount", Value::Type::Single},
                       {"Day", Value::Type::Date},
                       {"Open", Value::Type::Boolean}},
                      choices, 3, *DateTime::from_iso("2026-06-15"));
    for (int reading = 0; reading < 2; ++reading) {
        EXPECT_EQ(all_cells(table),
                  "Name|Item|1|1234.56|2026-06-15|True|\nName|Charge|2|1234.56|2026-06-15|True|\n"
                  "Name|Item|3|1234.56|2026-06-15|True|\n");
        EXPECT_FALSE(table.next());
        table.rewind();
    }
    EXPECT_FALSE(SampleTable({}, {}, 0, DateTime()).next());
    EXPECT_TRUE(compared_texts(R"(".equals($F{A}))").empty());
}

TEST_F(Tables, CsvIsReadAsSpreadsheetsWriteIt)
{
    struct Case {
        const char* why;
        const char* text;
        const char* cells;
    };
    for (const Case& c : {
             Case{"last line without an end", "one\ntwo", "one|\ntwo|\n"},
             Case{"lines of another system", "a,b\r\nc,d\r\n", "a|b|\nc|d|\n"},
             Case{"comma, quote and line end in a value", "\"a,\"\"b\"\"\nc\",d\n", "a,\"b\"\nc|d|\n"},
             Case{"empty values", ",\n", "||\n"},
             Case{"a short line lacks values", "a,b,c\nd\n", "a|b|c|\nd|~|~|\n"},
             Case{"an empty line is an empty value", "a\n\nb\n", "a|\n|\nb|\n"},
             Case{"the mark of UTF-8 in front", "\xEF\xBB\xBF\"a\",b\n", "a|b|\n"},
             Case{"a quote inside a plain value", "5\" pipe,b\n", "5\" pipe|b|\n"},
             Case{"quotes with nothing in them", "\"\",\"\"\n", "||\n"},
             Case{"line ends only", "\n\r\n\n", "|\n|\n|\n"},
             Case{"no line", "", ""},
         }) {
        write_text(scratch("data.csv"), c.text);
        EXPECT_EQ(all_cells(read_csv(scratch("data.csv"))), c.cells) << c.why;
    }
    EXPECT_EQ(read_csv(scratch("data.csv")).fields().size(), 0U);
    write_text(scratch("data.csv"), "a,b\n");
    EXPECT_EQ(read_csv(scratch("data.csv")).fields().at(1).name, "COLUMN_1");
}

TEST_F(Tables, PipeJsonComesBackWithItsTypes)
{
    write_text(scratch("pipe.json"),
               R"({"kind":"quote","fields":[{"name":"Text","type":200,"size":10},{"name":"Day","type":7,"size":0},
                  {"name":"Line","type":3,"size":0},{"name":"Rate","type":4,"size":0},
                  {"name":"Flag","type":11,"size":0}],
                  "rows":[["a","2026-06-15",7,1.25,true],[null,"2026-06-15T08:30:00",null,null,false]]})");
    auto table = read_pipe_json(scratch("pipe.json"));
    EXPECT_EQ(table.fields().at(1).type, Value::Type::Date);
    EXPECT_EQ(table.fields().at(3).type, Value::Type::Single);
    EXPECT_EQ(all_cells(table), "a|2026-06-15|7|1.25|True|\n~|2026-06-15T08:30:00|~|~|False|\n");
}

TEST_F(Tables, NumbersOfEverySizeKeepTheirSign)
{
    write_text(scratch("big.json"),
               R"({"fields":[{"name":"A"}],"rows":[[9223372036854775807],[18446744073709551615],[-9223372036854775808],
                  [-0.0],[1e300]]})");
    auto table = read_pipe_json(scratch("big.json"));
    for (const double expected : {9223372036854775807.0, 18446744073709551615.0, -9223372036854775808.0, 0.0, 1e300}) {
        ASSERT_TRUE(table.next());
        EXPECT_DOUBLE_EQ(to_number(table.cell(0)), expected);
    }
}

TEST_F(Tables, DataThatCannotBeReadIsNamedWithItsPlace)
{
    const std::string brackets = std::string(1'000'000, '[') + std::string(1'000'000, ']');
    struct Case {
        const char* why;
        std::string text;
        const char* says;
    };
    for (const Case& c : {
             Case{"no JSON", "{", "--pipe"},
             Case{"no rows", R"({"fields":[]})", "no list \"rows\""},
             Case{"cut on a later line", "{\"fields\":[],\n\"rows\":[\n[", "line 3 is no JSON"},
             Case{"a list of numbers", "[1]", "row 1 is no object"},
             Case{"nothing but brackets", brackets, "more than 100 deep"},
             Case{"a row too short", R"({"fields":[{"name":"A"},{"name":"B"}],"rows":[["1","2"],["1"]]})", "row 2"},
             Case{"a date that is none", R"({"fields":[{"name":"A","type":7}],"rows":[["soon"]]})", "soon"},
             Case{"cut in a cell", R"({"fields":[{"name":"A"}],"rows":[["1"],["2)", "line 1 is no JSON"},
             Case{"two things in one file", R"({"fields":[],"rows":[]} {)", "line 1 is no JSON"},
             Case{"a name that is a number", R"({"fields":[{"name":1}],"rows":[]})", "a field has no name"},
             Case{"fields that are none", R"({"fields":"A","rows":[]})", "no list \"fields\""},
             Case{"rows that are one object", R"({"fields":[{"name":"A"}],"rows":{"A":1}})", "no list \"rows\""},
             Case{"a number beyond every number", R"({"fields":[{"name":"A"}],"rows":[[1e999]]})",
                  "beyond every number"},
             Case{"text that is no UTF-8", "{\"fields\":[{\"name\":\"\xC3\"}],\"rows\":[]}", "line 1 is no JSON"},
             Case{"lists without end", std::string(100000, '['), "more than 100 deep"},
         }) {
        write_text(scratch("bad.json"), c.text);
        try {
            (void)read_pipe_json(scratch("bad.json"));
            ADD_FAILURE() << c.why;
        } catch (const HostError& error) {
            EXPECT_THAT(error.what(), HasSubstr(c.says)) << c.why;
            EXPECT_THAT(error.what(), HasSubstr("bad.json")) << c.why;
        }
    }
    write_text(scratch("bad.csv"), "a,b\n\"open\nc\n");
    try {
        (void)read_csv(scratch("bad.csv"));
        ADD_FAILURE() << "a quote is not closed";
    } catch (const HostError& error) {
        EXPECT_THAT(error.what(), HasSubstr("line 2"));
    }
    EXPECT_THROW((void)read_csv(scratch("missing.csv")), HostError);
}

TEST_F(Tables, TheFirstLineOfValuesMayNameTheFields)
{
    write_text(scratch("head.csv"), "Item,,Unit\nnut,3,EA\n");
    HeldTable table = read_csv(scratch("head.csv"), true);
    std::vector<std::string> names;
    for (const auto& field : table.fields()) names.push_back(field.name);
    EXPECT_EQ(names, (std::vector<std::string>{"Item", "COLUMN_1", "Unit"}));
    EXPECT_EQ(all_cells(table), "nut|3|EA|\n");
}

TEST_F(Tables, AListOfObjectsIsATableAndRowsInACellStayJson)
{
    write_text(scratch("list.json"), R"([{"id": 1, "lines": [{"item": "nut"}]}, {"id": 2, "note": "x"}])");
    HeldTable table = read_pipe_json(scratch("list.json"));
    ASSERT_EQ(table.fields().size(), 3U);
    EXPECT_EQ(all_cells(table), "1|[{\"item\":\"nut\"}]|~|\n2|~|x|\n");
}

}  // namespace
}  // namespace velora::testing
