#include "reports/columns.h"

#include "platform/recordset.h"
#include "reports/kinds.h"
#include "reports/pipe_writer.h"
#include "support/test_company.h"

namespace velora {
namespace {

using testing::ElementsAre;

struct Thing {
    QueryRow row;
};

Outcome said(Thing&)
{
    return "said";
}

constexpr auto kThings = std::to_array<Column<Thing>>({
    {"A", ado::VarChar, 10, as_stored<"a">},
    {"B", ado::VarChar, 4, trimmed_column<"b">},
    {"C", ado::Integer, 0, unless_null<"c">},
    {"D", ado::Single, 0, as_stored<"c">},
});

std::string shown(const ColumnList<Thing>& list)
{
    std::string text;
    for (const auto& column : list.columns()) {
        text += std::string(column.name) + ":" + std::to_string(column.type) + ":" + std::to_string(column.size) + " ";
    }
    return text;
}

TEST(ColumnList, TakesATableOverWithChanges)
{
    using List = ColumnList<Thing>;
    const List things(kThings);
    EXPECT_EQ(shown(things), "A:200:10 B:200:4 C:3:0 D:4:0 ");
    EXPECT_EQ(shown(List(things).leave_out({"B", "D"})), "A:200:10 C:3:0 ");
    EXPECT_EQ(shown(List(things).leave_out_from("B", "C")), "A:200:10 D:4:0 ");
    EXPECT_EQ(shown(List(things).pick({"D", "A"})), "D:4:0 A:200:10 ");
    EXPECT_EQ(shown(List(things).resize("B", 7)), "A:200:10 B:200:7 C:3:0 D:4:0 ");
    EXPECT_EQ(shown(List(things).pick({"B"}).retype("B", ado::Integer)), "B:3:0 ");
    EXPECT_EQ(shown(List(things).pick({"A", "B"}).insert_behind("A", {{"X", ado::TinyInt, 0, said}})),
              "A:200:10 X:16:0 B:200:4 ");
    EXPECT_EQ(shown(List(things).pick({"A"}).append({{"X", ado::TinyInt, 0, said}})), "A:200:10 X:16:0 ");
    EXPECT_THROW(List(things).leave_out({"a"}), std::logic_error) << "a slip in a name is told";
    EXPECT_THROW(List(things).leave_out_from("C", "B").pick({"E"}), std::logic_error);
}

struct Things : PipeLayout {
    Section<Thing> first = add(ColumnList<Thing>(kThings).pick({"C", "B"}));
    Section<Thing> second = add(ColumnList<Thing>(kThings).pick({"A", "D"}).revalue("A", said));
};

TEST(PipeWriter, FillsTheFieldsOfItsSectionsAndCarriesWhatIsWrittenOnce)
{
    test::TestCompany company;
    Recordset rows({"c", "b", "a"}, {{1, " x ", Value()}, {Value(), "y", "z"}});
    Thing thing{QueryRow(rows)};
    const Things layout;
    RunLog log;
    DataPipeRecordset pipe(layout.fields(), log);
    constexpr std::array<int32_t, 1> kNulls{fault::kNull};
    Statements statements(company.state(), kNulls);
    PipeWriter writer(company.state(), pipe, statements);
    for (rows.MoveFirst(); !rows.at_eof(); rows.MoveNext()) {
        writer.row([&] {
            writer.write(layout.first, thing);
            writer.write_once(layout.second, thing);
        });
    }
    std::vector<std::string> cells;
    for (const auto table = pipe.table(); table->next();) {
        for (size_t at = 0; at < 4; ++at) {
            cells.push_back(table->cell(at).is_null() ? "-" : to_text(table->cell(at)));
        }
    }
    EXPECT_THAT(cells, ElementsAre("1", "x", "said", "1", "-", "y", "said", "1"));
    EXPECT_TRUE(company.state().log.tolerated().empty()) << "a guarded null is no fault";
}

TEST(QueryRow, LooksEachNameUpOnceAndSaysWhatIsMissing)
{
    Recordset rows({"One", "Two"}, {{1, 2}, {3, 4}});
    const QueryRow row(rows);
    EXPECT_EQ(row.at<"one">(), Value(1));
    EXPECT_EQ(row.at<"TWO">(), Value(2));
    rows.MoveNext();
    EXPECT_EQ(row.at<"one">(), Value(3));
    EXPECT_EQ(row.text<"Two">(), "4");
    for (int again = 0; again < 2; ++again) {
        try {
            (void)row.at<"three">();
            ADD_FAILURE();
        } catch (const Fault& caught) {
            EXPECT_EQ(caught.number(), fault::kNoSuchColumn);
        }
    }
}

TEST(Kinds, NameEachFieldOnceAndGiveASizeToTextAlone)
{
    for (const auto& kind : report_kinds()) {
        if (kind.fields == nullptr) continue;
        const auto fields = kind.fields();
        EXPECT_TRUE(well_formed(fields)) << kind.name;
        EXPECT_EQ(fields.front().name, "Company Name") << kind.name;
    }
}

}  // namespace
}  // namespace velora
