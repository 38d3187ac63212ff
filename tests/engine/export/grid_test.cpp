#include "engine/export/xls/grid_lines.h"

namespace velora::engine {
namespace {

GridEdge kept(int32_t at)
{
    return {at, at, at};
}

TEST(GridLines, EdgesThatAreNearlyEqualShareTheLineUsedMost)
{
    GridLines grid(4, 1000);
    for (const int32_t at : {100, 102, 102, 103, 200, 205}) grid.add(kept(at));
    grid.solve(100);
    EXPECT_EQ(grid.lines(), (std::vector<int32_t>{102, 200, 205}));
    EXPECT_EQ(grid.line_of(kept(100)), 0U);
    EXPECT_EQ(grid.line_of(kept(205)), 2U);
}

TEST(GridLines, AnOpenEndTakesALineThatIsThereAndAddsOneOnlyWhereNoneIs)
{
    GridLines grid(2, 1000);
    grid.add(kept(10));
    grid.add(kept(300));
    const GridEdge reaches{120, 120, 310}, also_short{130, 130, 250}, short_end{100, 100, 200};
    grid.add(reaches);
    grid.add(also_short);
    grid.add(short_end);
    grid.solve(100);
    EXPECT_EQ(grid.lines().size(), 3U) << "both short ends share one line";
    EXPECT_EQ(grid.line_of(short_end), 1U);
    EXPECT_EQ(grid.line_of(also_short), 1U);
    EXPECT_EQ(grid.lines()[1], 130);
}

TEST(GridLines, KeepsWithinTheLimitsOfTheFormat)
{
    GridLines grid(0, 400);
    for (int32_t at = 0; at <= 3000; at += 3) grid.add(kept(at));
    grid.add(kept(4300));
    grid.solve(200);
    EXPECT_LE(grid.lines().size(), 204U) << "tolerance grows until few enough are left";
    for (size_t i = 1; i < grid.lines().size(); ++i) EXPECT_LE(grid.lines()[i] - grid.lines()[i - 1], 400);
}

}  // namespace
}  // namespace velora::engine
