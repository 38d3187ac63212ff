#include "engine/export/sample_pages.h"
#include "support/readers.h"

namespace velora::engine {
namespace {

struct Line {
    Place place;
    const char* text;
    HorizontalAlign align = HorizontalAlign::Left;
};

constexpr auto kRight = HorizontalAlign::Right, kCenter = HorizontalAlign::Center;

std::string printed(const std::vector<Line>& lines)
{
    SamplePages sample;
    for (const Line& line : lines) {
        Style style = sample.style();
        style.font.size = 8;
        style.horizontal = line.align;
        Text text;
        text.text = line.text;
        text.text_height = static_cast<float>(line.place.height);
        sample.add(line.place, style, std::move(text));
    }
    return readers::bytes_of(sample.print("grid.txt"));
}

// A character takes 4.8 points across and 11 down.
TEST(Txt, ThePageIsAGridOnWhichNothingIsLost)
{
    struct Case {
        const char* why;
        std::vector<Line> lines;
        const char* expected;
    };
    for (const auto& c : {
             Case{"columns stand below each other, figures at their right",
                  {{{24, 22, 96, 11}, "Valve"},
                   {{120, 22, 48, 11}, "1,234.50", kRight},
                   {{24, 33, 96, 11}, "Ü-Pipe"},
                   {{120, 33, 48, 11}, "7.00", kRight},
                   {{24, 55, 144, 11}, "two", kCenter}},
                  "\n\n"
                  "     Valve                 1,234.50\n"
                  "     Ü-Pipe                    7.00\n"
                  "\n"
                  "                  two\n"},
             Case{"texts that touch have a blank between them",
                  {{{0, 0, 24, 11}, "12", kRight}, {{24, 0, 24, 11}, "EA"}, {{48, 0, 24, 11}, "x"}},
                  "   12 EA  x\n"},
             Case{"a word longer than its column moves the next one aside, in all rows",
                  {{{0, 0, 24, 11}, "SYS-PNL-1"},
                   {{24, 0, 96, 11}, "Panel"},
                   {{120, 0, 48, 11}, "1.00", kRight},
                   {{0, 11, 24, 11}, "A"},
                   {{24, 11, 96, 11}, "Bolt"},
                   {{120, 11, 48, 11}, "22.00", kRight}},
                  "SYS-PNL-1 Panel                1.00\n"
                  "A         Bolt                22.00\n"},
             Case{"at the right too",
                  {{{0, 0, 48, 11}, "1234567890", kRight},
                   {{48, 0, 24, 11}, "1234567", kRight},
                   {{48, 11, 24, 11}, "1", kRight}},
                  "1234567890 1234567\n"
                  "                 1\n"},
             Case{"a long text that nothing stands beside runs on",
                  {{{24, 0, 24, 11}, "no such quote in the list"}, {{24, 11, 24, 11}, "below"}},
                  "     no such quote in the list\n"
                  "     below\n"},
             Case{"one that would move the rest far aside has a row of its own",
                  {{{0, 0, 12, 11}, "a text that was turned aside"},
                   {{24, 0, 48, 11}, "Name"},
                   {{24, 11, 48, 11}, "Next"}},
                  "a text that was turned aside\n"
                  "     Name\n"
                  "     Next\n"},
             Case{"what stands lower stays lower, with all that stands beside it",
                  {{{0, 0, 48, 6}, "first"},
                   {{0, 6, 48, 6}, "second"},
                   {{72, 6, 48, 6}, "beside"},
                   {{0, 22, 48, 11}, "third"}},
                  "first\n"
                  "second         beside\n"
                  "third\n"},
             Case{"a little lower is the same row",
                  {{{0, 0, 48, 11}, "left"}, {{72, 2, 48, 11}, "right"}},
                  "left           right\n"},
             Case{"two at one place are two rows",
                  {{{0, 0, 48, 11}, "one"},
                   {{0, 0, 48, 11}, "other"},
                   {{72, 0, 48, 11}, "beside"},
                   {{0, 0, 48, 11}, "third"}},
                  "one            beside\n"
                  "other\n"
                  "third\n"},
             Case{"what lies beside the page is not on it",
                  {{{0, 0, 48, 11}, "on"},
                   {{600, 0, 48, 11}, "right"},
                   {{0, 842, 48, 11}, "below"},
                   {{-30, -30, 48, 11}, "before"}},
                  "on\n"},
         }) {
        EXPECT_EQ(printed(c.lines), c.expected) << c.why;
    }
}

TEST(Txt, LinesStandByTheirHeightAndADrawingTellsItsLabels)
{
    SamplePages sample;
    Style style = sample.style();
    style.vertical = VerticalAlign::Middle;
    sample.add_text({0, 0, 60, 44}, "two lines of words", style);
    style.vertical = VerticalAlign::Bottom;
    style.box.left_padding = 24;
    style.box.bottom_padding = 11;
    sample.add_text({96, 0, 100, 44}, "low", style);
    Drawing drawing{100, 44, {}};
    drawing.items.emplace_back(Label{{48, 44}, "Won", style.font, kBlack, HorizontalAlign::Center, 0});
    drawing.items.emplace_back(Label{{96, 11}, "25\t%", style.font, kBlack, HorizontalAlign::Right, 1});
    sample.add({240, 0, 100, 44}, sample.style(), Graphic{std::make_shared<const Drawing>(drawing)});
    EXPECT_EQ(readers::bytes_of(sample.print("lines.txt")),
              "                                                                  25 %\n"
              "two lines of\n"
              "words                    low\n"
              "                                                          Won\n");
}

TEST(Txt, AFormFeedPartsPages)
{
    SamplePages sample;
    const auto file = SamplePages::scratch() / "pages.txt";
    const auto sink = make_exporter("txt", file, {sample.fonts, {}});
    sink->begin(sample.document);
    for (const char* text : {"one", "", "three"}) {
        sample.add_text({0, 0, 48, 11}, text, sample.style());
        sink->page(std::exchange(sample.page, {}));
    }
    sink->end();
    EXPECT_EQ(readers::bytes_of(file), "one\n\f\fthree\n");
}

}  // namespace
}  // namespace velora::engine
