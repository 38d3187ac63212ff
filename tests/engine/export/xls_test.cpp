#include <random>

#include "engine/export/export_run.h"
#include "engine/export/sample_pages.h"
#include "engine/export/sample_quote.h"
#include "engine/export/xls/xls_pattern.h"
#include "engine/export/xls_reading.h"
#include "support/readers.h"

namespace velora::engine {
namespace {

ReadWorkbook exported(PageList pages, const std::string& name)
{
    return read_workbook(run_export(std::move(pages), name));
}

TEST(Xls, ValuesKeepTheirTypeAndPattern)
{
    const ReadWorkbook book = exported(sample_quote(1), "types.xls");
    std::map<double, std::string> numbers;
    for (const auto& [place, cell] : book.sheets.at(0).cells) {
        if (cell.number) numbers[*cell.number] = book.code_of(cell);
    }
    const std::map<double, std::string> expected = {
        {12, "#3"},                   // "#,##0.####" of a whole number leaves no decimal mark behind
        {2.5, "#,##0.0"},             //
        {1234.5, "#4"},               // the built-in "#,##0.00"
        {-14814, "#4"},               //
        {266652, "\"$\"#,##0.00"},    //
        {0.075, "0.0%"},              //
        {286650.9, "\"$\"#,##0.00"},  //
        {46088, "dd\\/mm\\/yyyy"},    // 7 March 2026
    };
    EXPECT_EQ(numbers, expected);
    ASSERT_NE(book.find(u"004001"), nullptr) << "an item number stays a text with its zeros";
    EXPECT_NE(book.find(u"12 Harbour Road, Łódź · 中文 · Straße"), nullptr);
}

TEST(Xls, PagesFollowEachOtherWithBreaksOnOneGrid)
{
    const ReadWorkbook one = exported(sample_quote(1), "one.xls");
    const ReadWorkbook three = exported(sample_quote(3), "three.xls");
    ASSERT_EQ(three.sheets.size(), 1U);
    EXPECT_EQ(three.sheets[0].breaks.size(), 2U);
    EXPECT_EQ(three.sheets[0].columns, one.sheets[0].columns) << "further pages of the same form add no columns";
    EXPECT_LE(one.sheets[0].columns, 14);
    EXPECT_EQ(three.sheets[0].pictures, 6) << "a logo and a chart on each";
    const int rows = three.sheets[0].breaks[0];
    for (const auto& [place, cell] : one.sheets[0].cells) {
        const auto again = three.sheets[0].cells.find({place.first + rows, place.second});
        ASSERT_NE(again, three.sheets[0].cells.end());
        EXPECT_EQ(again->second.number, cell.number);
    }
}

TEST(Xls, LineTableHasOneColumnAField)
{
    PageList pages;
    Style left, right;
    right.horizontal = HorizontalAlign::Right;
    const Style* text = pages.document.styles->intern(left);
    const Style* number = pages.document.styles->intern(right);
    Page page;
    for (int row = 0; row < 30; ++row) {
        const int32_t y = 100 + 15 * row;
        page.elements.push_back(text_element({40, y, 60 + row % 3, 12}, text, "item"));
        page.elements.push_back(text_element({110 + row % 2, y + 1, 200, 12}, text, "description"));
        page.elements.push_back(text_element({330 - row % 4, y, 70 + row % 4, 12}, number, "1", 1));
    }
    pages.pages.push_back(std::move(page));
    const ReadWorkbook book = exported(std::move(pages), "table.xls");
    EXPECT_EQ(book.sheets[0].columns, 3) << "ragged open ends and a point of difference make no columns";
    EXPECT_TRUE(book.sheets[0].merges.empty());
    EXPECT_EQ(book.sheets[0].cells.size(), 90U);
}

TEST(Xls, MergedRangesNeverOverlapAndNoTextIsLost)
{
    std::mt19937 random(7);
    const auto any = [&](int32_t low, int32_t high) {
        return low + static_cast<int32_t>(random() % static_cast<uint32_t>(high - low));
    };
    PageList pages;
    const Style* style = pages.document.styles->intern({});
    Page page;
    for (int i = 0; i < 120; ++i) {
        const Place place{any(0, 500), any(0, 800), any(5, 200), any(5, 60)};
        page.elements.push_back(text_element(place, style, "text " + std::to_string(i)));
    }
    page.elements.push_back(text_element({0, 0, 595, 842}, style, "behind all"));
    pages.pages.push_back(std::move(page));
    const ReadWorkbook book = exported(std::move(pages), "overlap.xls");
    std::map<std::pair<int, int>, int> covered;
    for (const auto& merge : book.sheets[0].merges) {
        for (int row = merge.top; row <= merge.bottom; ++row) {
            for (int column = merge.left; column <= merge.right; ++column) ++covered[{row, column}];
        }
    }
    for (const auto& [place, times] : covered) ASSERT_EQ(times, 1) << "a workbook with such ranges counts as damaged";
    EXPECT_GE(book.sheets[0].cells.size(), 120U);
}

TEST(Xls, ATextInLinesHasTheHeightThatASpreadsheetNeedsForIt)
{
    struct Case {
        const char *why, *text;
        int width;
        double least, most;  ///< height of its rows, where a line takes 11.64
    };
    for (const auto& c : {
             Case{"lines that leave room stay as they are", "one\ntwo\nthree", 60, 40, 40},
             Case{"one that just fits breaks once more", "aaaaaaaaaaaa bb cccccccccccc bb", 90, 47, 47},
             Case{"as many as it needs", "a b c d e f g h i j k l m n o p q r s t u v w x y z", 30, 129, 129},
         }) {
        SamplePages sample;
        sample.add_text({20, 20, c.width, 40}, c.text, sample.style());
        const auto heights = readers::xls_book(sample.print("lines.xls")).line("heights");
        double all = 0;
        for (const std::string& height : heights) all += std::stod(height);
        EXPECT_GE(all, c.least) << c.why;
        EXPECT_LE(all, c.most) << c.why;
    }
}

TEST(Xls, LongAndForeignTextsComeBackAcrossRecordEnds)
{
    PageList pages;
    const Style* style = pages.document.styles->intern({});
    std::vector<std::u16string> expected;
    Page page;
    for (int i = 0; i < 40; ++i) {
        const bool wide = i % 3 == 1;
        const std::string unit = wide ? "ł" : "x";
        std::string text = std::to_string(i) + ":";
        std::u16string units(text.begin(), text.end());
        for (int k = 0; k < 500 + 97 * i; ++k) {
            text += unit;
            units += wide ? u'ł' : u'x';
        }
        expected.push_back(units);
        page.elements.push_back(text_element({40, 20 * i, 100, 12}, style, text));
    }
    page.elements.push_back(text_element({300, 0, 100, 12}, style, "bell\aand\ttab \xF0\x9F\x98\x80"));
    page.elements.push_back(text_element({300, 40, 100, 12}, style, std::string(1 << 20, 'm')));
    pages.pages.push_back(std::move(page));
    const ReadWorkbook book = exported(std::move(pages), "long.xls");
    for (const auto& text : expected) EXPECT_NE(book.find(text), nullptr) << text.size() << " characters";
    EXPECT_NE(book.find(u"belland tab \xD83D\xDE00"), nullptr);
    EXPECT_NE(book.find(std::u16string(32767, u'm')), nullptr) << "cut to what a cell holds";
}

TEST(Xls, APageLongerThanASheetGoesOnInTheNext)
{
    PageList pages;
    const Style* style = pages.document.styles->intern({});
    constexpr int kRows = 70000;
    pages.document.page_height = kRows * 12;
    Page page;
    for (int i = 0; i < kRows; ++i) {
        page.elements.push_back(text_element({40, 12 * i, 100, 12}, style, std::to_string(i), i));
    }
    pages.pages.push_back(std::move(page));
    const ReadWorkbook book = exported(std::move(pages), "rows.xls");
    ASSERT_EQ(book.sheets.size(), 2U);
    EXPECT_EQ(book.sheets[0].cells.size() + book.sheets[1].cells.size(), size_t{kRows});
    EXPECT_EQ(book.sheets[1].cells.rbegin()->second.number, kRows - 1);
}

TEST(Xls, AReportWithoutPagesIsStillAWorkbook)
{
    EXPECT_EQ(exported({}, "empty.xls").sheets.size(), 1U);
}

TEST(XlsPattern, NumberPatternsBecomeFormatCodes)
{
    struct Case {
        const char *pattern, *shown, *expected;
        double value;
    };
    for (const auto& c : {
             Case{"#,##0.00", "", "#,##0.00", 5},
             Case{"#,##0.00;(#,##0.00)", "", "#,##0.00;(#,##0.00)", 5},
             Case{"#,##0.###", "", "#,##0", 5},
             Case{"#,##0.0##", "", "#,##0.0", 0},
             Case{"#,##0.0##", "", "#,##0.00", 5.25},
             Case{"0000", "", "0000", 5},
             Case{"¤#,##0.00", "€5.00", "\"€\"#,##0.00", 5},
             Case{"#,##0 'kg'", "", "#,##0 \"kg\"", 5},
             Case{"0.##%", "", "0.0%", 0.075},
             Case{"0.###E0", "", nullptr, 5},
             Case{"#,##,##0.00", "", "#,##0.00", 5},
             Case{"", "", nullptr, 5},
         }) {
        const auto code = xls_number_format(c.pattern, c.value, c.shown);
        EXPECT_EQ(code, c.expected == nullptr ? std::nullopt : std::optional<std::string>(c.expected)) << c.pattern;
    }
}

TEST(XlsPattern, DatePatternsBecomeFormatCodes)
{
    EXPECT_EQ(xls_date_format("dd MMM yyyy, HH:mm"), "dd mmm yyyy\\, hh:mm");
    EXPECT_EQ(xls_date_format("EEEE d'th' M/yy"), "dddd d\"th\" m\\/yy");
    EXPECT_EQ(xls_date_format("h:mm a"), "h:mm AM/PM");
    EXPECT_EQ(xls_date_format("w"), std::nullopt) << "a week's number is no format of a workbook";
    EXPECT_EQ(xls_date_format(""), std::nullopt);
}

}  // namespace
}  // namespace velora::engine
