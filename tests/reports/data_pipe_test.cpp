#include "reports/data_pipe.h"

#include "values/fault.h"

namespace velora {
namespace {

std::vector<PipeField> some_fields()
{
    return {{"Name", ado::VarChar, 5}, {"Line", ado::Integer, 0},    {"Rate", ado::Single, 0},    {"Day", ado::Date, 0},
            {"Flag", ado::Boolean, 0}, {"Reprint", ado::TinyInt, 0}, {"Note", ado::VarChar, 1020}};
}

std::vector<std::vector<Value>> rows_of(const DataPipeRecordset& pipe)
{
    std::vector<std::vector<Value>> rows;
    const auto table = pipe.table();
    while (table->next()) {
        auto& row = rows.emplace_back();
        for (size_t at = 0; at < table->fields().size(); ++at) row.push_back(table->cell(at));
    }
    return rows;
}

TEST(DataPipe, GivesBackWhatWasWrittenAndNullForWhatWasNot)
{
    RunLog log;
    DataPipeRecordset pipe(some_fields(), log);
    pipe.AddNew();
    EXPECT_EQ(pipe.put(0, "one"), 0);
    EXPECT_EQ(pipe.put(1, int16_t{-7}), 0);
    EXPECT_EQ(pipe.put(2, 0.1), 0);
    EXPECT_EQ(pipe.put(3, *DateTime::from_iso("1899-12-29T23:59:59")), 0);
    EXPECT_EQ(pipe.put(4, -1), 0);
    EXPECT_EQ(pipe.put(5, 1), 0);
    pipe.Update();
    pipe.AddNew();
    EXPECT_EQ(pipe.put(0, 12.5), 0) << "the pipe converts";
    pipe.Update();
    const std::vector<std::vector<Value>> expected{
        {"one", -7, 0.1F, *DateTime::from_iso("1899-12-29T23:59:59"), true, 1, Value()},
        {"12.5", Value(), Value(), Value(), Value(), Value(), Value()}};
    EXPECT_EQ(rows_of(pipe), expected);
    EXPECT_EQ(rows_of(pipe), expected) << "a second reader starts at the front";
    EXPECT_EQ(pipe.last("name"), Value("12.5"));
}

TEST(DataPipe, AnswersWithAFaultNumberAndLeavesTheField)
{
    RunLog log;
    DataPipeRecordset pipe(some_fields(), log);
    pipe.AddNew();
    struct Case {
        const char* why;
        size_t field;
        Value value;
        int32_t expected;
    };
    for (const auto& c :
         {Case{"a null", 0, Value(), fault::kNull}, Case{"no number", 1, "x", fault::kTypeMismatch},
          Case{"too large", 1, 3e9, fault::kOverflow}, Case{"too large for a byte", 5, 200, fault::kOverflow},
          Case{"no date", 3, "soon", fault::kTypeMismatch}, Case{"beyond a single", 2, 1e300, fault::kOverflow}}) {
        EXPECT_EQ(pipe.put(c.field, c.value), c.expected) << c.why;
    }
    pipe.Update();
    EXPECT_EQ(rows_of(pipe), (std::vector<std::vector<Value>>{std::vector<Value>(7)}));
    EXPECT_THROW(static_cast<void>(DataPipeRecordset(some_fields(), log).last("Name")), Fault);
}

TEST(DataPipe, CutsTextToTheFieldBetweenCharactersAndSaysSo)
{
    RunLog log;
    DataPipeRecordset pipe(some_fields(), log);
    pipe.AddNew();
    EXPECT_EQ(pipe.put(0, "ääääää"), 0);
    pipe.Update();
    EXPECT_EQ(rows_of(pipe)[0][0], Value("äääää"));
    ASSERT_EQ(log.cuts().size(), 1U);
    EXPECT_EQ(log.cuts()[0].field, "Name");
    EXPECT_EQ(log.cuts()[0].from, 6U);
    EXPECT_EQ(log.cuts()[0].to, 5U);
}

TEST(DataPipe, CarriesDocumentFieldsAtNoCostPerRow)
{
    RunLog log;
    DataPipeRecordset pipe(some_fields(), log);
    constexpr int kRows = 50'000;
    for (int row = 0; row < kRows; ++row) {
        pipe.AddNew();
        if (row == 0) {
            ASSERT_EQ(pipe.put(6, std::string(1000, 'x')), 0);
            pipe.carry(6);
        }
        ASSERT_EQ(pipe.put(1, row), 0);
        pipe.Update();
    }
    EXPECT_LT(pipe.bytes_held() / kRows, 60U);
    const auto table = pipe.table();
    int seen = 0;
    while (table->next()) {
        ASSERT_EQ(table->cell(1), Value(seen++));
        ASSERT_EQ(table->cell(6).get_if<std::string>()->size(), 1000U);
    }
    EXPECT_EQ(seen, kRows);
}

TEST(DataPipe, IsReadAfterItIsGone)
{
    RunLog log;
    std::shared_ptr<TableSource> table;
    {
        DataPipeRecordset pipe(some_fields(), log);
        pipe.AddNew();
        ASSERT_EQ(pipe.put(0, "kept"), 0);
        pipe.Update();
        table = pipe.table();
    }
    ASSERT_TRUE(table->next());
    EXPECT_EQ(table->cell(0), Value("kept"));
    EXPECT_FALSE(table->next());
    table->rewind();
    EXPECT_TRUE(table->next());
}

}  // namespace
}  // namespace velora
