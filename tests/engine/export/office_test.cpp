#include <array>
#include <sstream>

#include "engine/export/export_run.h"
#include "engine/export/sample_pages.h"
#include "engine/export/sample_quote.h"
#include "support/readers.h"

namespace velora::engine {
namespace {

namespace fs = std::filesystem;

/// The parts of all lines of that name, joined by bars.
std::vector<std::string> lines_of(const std::vector<std::vector<std::string>>& lines, const std::string& name)
{
    std::vector<std::string> found;
    for (const auto& parts : lines) {
        if (parts[0] != name) continue;
        std::string& line = found.emplace_back();
        for (size_t at = 1; at < parts.size(); ++at) line += (at > 1 ? "|" : "") + parts[at];
    }
    return found;
}

std::vector<std::string> cells_of(const readers::XlsBook& book)
{
    std::vector<std::string> cells;
    for (const auto& cell : book.filled()) {
        cells.push_back(std::to_string(cell.row) + " " + std::to_string(cell.column) + " " + cell.kind + " " +
                        cell.shown + " " + cell.value);
    }
    return cells;
}

/// Several pages by hand.
struct Pages : SamplePages {
    void finish_page()
    {
        finished.push_back(std::move(page));
        page = {};
    }
    PageList list()
    {
        PageList all;
        all.document = document;
        all.pages = std::move(finished);
        return all;
    }
    std::vector<Page> finished;
};

/// Pages with a head of columns and rows below it.
PageList listed(int rows, int pages = 1)
{
    Pages sample;
    sample.document.sources->push_back({"", "columnHeader", ""});
    sample.document.sources->push_back({"", "detail", ""});
    const auto add = [&](const Place& place, const std::string& text, uint32_t source, Value value = {}) {
        Style style = sample.style();
        style.pattern = value.type() == Value::Type::Date ? "dd.MM.yyyy" : "#,##0.00";
        Text& made = sample.add_text(place, text, style);
        if (!value.is_null()) made.details().value = std::move(value);
        sample.page.elements.back().source = source;
    };
    for (; pages > 0; --pages, sample.finish_page()) {
        add({20, 10, 300, 20}, "A list", 0);
        add({20, 40, 100, 14}, "Name", 1);
        add({130, 40, 60, 14}, "Amount", 1);
        add({200, 40, 60, 14}, "Day", 1);
        for (int row = 0; row < rows; ++row) {
            const int top = 60 + row * 20;
            add({20, top, 100, 14}, row == 1 ? "Nut, \"M8\"" : "Bolt", 2);
            add({130, top, 60, 14}, "1,234.50", 2, 1234.5 + row);
            if (row != 1) add({200, top, 60, 14}, "15.02.2026", 2, *DateTime::from_ymd(2026, 2, 15));
        }
    }
    return sample.list();
}

TEST(Xlsx, HoldsTheCellsOfTheOlderWorkbook)
{
    for (const int pages : {1, 3}) {
        const auto older = readers::xls_book(run_export(sample_quote(pages), "twin.xls"));
        const auto book = readers::xlsx_books({run_export(sample_quote(pages), "twin.xlsx")}).at(0);
        EXPECT_EQ(cells_of(book), cells_of(older));
        for (const char* what : {"merge", "breaks", "heights"}) {
            EXPECT_EQ(lines_of(book.lines, what), lines_of(older.lines, what)) << what;
        }
        EXPECT_EQ(lines_of(book.lines, "picture").size(), size_t(pages) * 2) << "a logo and a chart on each";
    }
}

TEST(Xlsx, TheHeadsOfTheColumnsStayInView)
{
    const auto book = readers::xlsx_books({run_export(listed(3), "heads.xlsx")}).at(0);
    const auto cells = book.filled();
    const auto head = std::ranges::find_if(cells, [](const readers::XlsCell& cell) { return cell.shown == "Amount"; });
    ASSERT_NE(head, cells.end());
    EXPECT_EQ(lines_of(book.lines, "frozen"), std::vector{"A" + std::to_string(head->row + 2)});
    PageList none = listed(3);
    for (Source& source : *none.document.sources) source.band = "title";
    EXPECT_EQ(readers::xlsx_books({run_export(std::move(none), "none.xlsx")}).at(0).line("frozen"),
              std::vector<std::string>{});
}

TEST(Xlsx, SheetsAreNamedAfterTheDocument)
{
    PageList pages = listed(1);
    pages.document.title = "Q/1 [draft]: a title of more than thirty-one letters";
    const auto book = readers::xlsx_books({run_export(std::move(pages), "named.xlsx")}).at(0);
    EXPECT_EQ(book.line("sheet").at(0), "Q1 draft a title of more than t");
    EXPECT_EQ(lines_of(book.lines, "workbook").at(0).substr(lines_of(book.lines, "workbook").at(0).find('|')),
              "|Q/1 [draft]: a title of more than thirty-one letters|A. Writer");
}

TEST(Docx, TextsStandInFramesAtTheirPlaces)
{
    Pages sample;
    Style style = sample.style();
    sample.add_text({72, 100, 200, 20}, "top left", style);
    style.vertical = VerticalAlign::Bottom;
    style.horizontal = HorizontalAlign::Right;
    style.font.bold = true;
    style.fore = {0x1F, 0x3A, 0x5F, 255};
    sample.add_text({72, 200, 200, 40}, "low & <right>", style);
    sample.finish_page();
    sample.add_text({10, 20, 30, 14}, "one two three", sample.style());
    sample.finish_page();
    const auto lines = readers::docx_lines({run_export(sample.list(), "frames.docx")}).at(0);
    EXPECT_EQ(lines_of(lines, "section").size(), 2U);
    const auto frames = lines_of(lines, "frame");
    ASSERT_EQ(frames.size(), 3U);
    EXPECT_TRUE(frames[0].starts_with("0|1440 2000 4000 ")) << frames[0];
    EXPECT_TRUE(frames[0].ends_with("|top left|DejaVu Sans 10 000000")) << frames[0];
    EXPECT_TRUE(frames[1].starts_with("0|1440 4567 4000 233|")) << frames[1] << ": the line is 11.64 points high";
    EXPECT_TRUE(frames[1].ends_with("|low & <right>|DejaVu Sans 10 1F3A5F bold")) << frames[1];
    EXPECT_TRUE(frames[2].starts_with("1|200 400 ")) << frames[2];
    EXPECT_NE(frames[2].find("|one\\ntwo\\nthree|"), std::string::npos) << frames[2];
}

/// The frame's place, x y width and height, in twentieths of a point.
std::array<int, 4> place_of_frame(const std::string& line)
{
    std::array<int, 4> at{};
    std::istringstream(line.substr(line.find('|') + 1)) >> at[0] >> at[1] >> at[2] >> at[3];
    return at;
}

// A frame covers its neighbours where a program fills it, so it must not reach beyond its element; and frames are
// filled white where paragraphs have no style.
TEST(Docx, FramesOfNeighboursDoNotLieOverEachOther)
{
    Pages sample;
    Style style = sample.style();
    std::vector<Place> places;
    for (const Rotation rotation : {Rotation::None, Rotation::Left, Rotation::Right, Rotation::UpsideDown}) {
        for (const VerticalAlign down : {VerticalAlign::Top, VerticalAlign::Middle, VerticalAlign::Bottom}) {
            for (const HorizontalAlign along :
                 {HorizontalAlign::Left, HorizontalAlign::Center, HorizontalAlign::Right, HorizontalAlign::Justified}) {
                style.rotation = rotation, style.vertical = down, style.horizontal = along;
                const auto number = static_cast<int>(places.size());
                places.push_back({20 + number % 12 * 41, 20 + number / 12 * 37, 41, 37});
                sample.add_text(places.back(), "Eight", style);
            }
        }
    }
    sample.finish_page();
    const auto lines = readers::docx_lines({run_export(sample.list(), "beside.docx")}).at(0);
    EXPECT_EQ(lines_of(lines, "style"), std::vector<std::string>{"Normal|DejaVu Sans"});
    const auto frames = lines_of(lines, "frame");
    ASSERT_EQ(frames.size(), places.size());
    for (size_t at = 0; at < frames.size(); ++at) {
        const auto [x, y, width, height] = place_of_frame(frames[at]);
        EXPECT_TRUE(x >= places[at].x * 20 && x + width <= (places[at].x + 41) * 20) << at << ": " << frames[at];
        EXPECT_TRUE(y >= places[at].y * 20 && y + height <= (places[at].y + 37) * 20) << at << ": " << frames[at];
    }
}

TEST(Csv, RowsStandBelowTheHeadsOfTheirColumnsAndValuesArePlain)
{
    EXPECT_EQ(bytes_of(run_export(listed(3), "rows.csv")),
              "Name,Amount,Day\r\n"
              "Bolt,1234.5,2026-02-15\r\n"
              "\"Nut, \"\"M8\"\"\",1235.5,\r\n"
              "Bolt,1236.5,2026-02-15\r\n");
    EXPECT_EQ(bytes_of(run_export(listed(1, 2), "pages.csv")),
              "Name,Amount,Day\r\nBolt,1234.5,2026-02-15\r\nBolt,1234.5,2026-02-15\r\n")
        << "the heads come once";
}

TEST(Office, TheSamePagesAndDateGiveTheSameBytes)
{
    for (const std::string name : {"same.xlsx", "same.docx"}) {
        const std::string first = bytes_of(run_export(sample_quote(2), name));
        EXPECT_EQ(first, bytes_of(run_export(sample_quote(2), name))) << name;
    }
}

}  // namespace
}  // namespace velora::engine
