#include <map>
#include <regex>
#include <sstream>

#include "engine/export/export_run.h"
#include "engine/export/sample_pages.h"
#include "support/tool_run.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

/// The words of a file as another program copies them, without the marks of direction that it adds.
std::string copied(const std::filesystem::path& file)
{
    const ToolRun run = run_tool("pdftotext '" + file.string() + "' -");
    EXPECT_EQ(run.status, 0) << run.output;
    std::string words = run.output.substr(0, run.output.find_last_not_of("\n\f") + 1);
    for (const char* mark : {"\u202A", "\u202B", "\u202C"}) words = replaced(words, mark, "");
    return words;
}

/// The words of the line that holds `word`, from left to right.
std::vector<std::string> words_from_left(const std::filesystem::path& file, const std::string& word)
{
    const ToolRun run = run_tool("pdftotext -bbox '" + file.string() + "' -");
    const std::regex each("xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\".*>(.*)</word>");
    std::map<double, std::map<double, std::string>> lines;
    double wanted = 0;
    for (auto at = std::sregex_iterator(run.output.begin(), run.output.end(), each); at != std::sregex_iterator();
         ++at) {
        const double y = std::stod((*at)[2]);
        lines[y][std::stod((*at)[1])] = (*at)[3];
        if ((*at)[3].str().find(word) != std::string::npos) wanted = y;
    }
    std::vector<std::string> words;
    for (const auto& [x, text] : lines[wanted]) words.push_back(text);
    return words;
}

TEST(PdfWords, ATextKeepsItsLettersBehindOneThatWasTurnedOrCut)
{
    struct Case {
        const char* why;
        void (*between)(SamplePages&, Style);
    };
    for (const auto& c : {
             Case{"a turned text",
                  [](SamplePages&sample, Style style) {
                      style.rotation = Rotation::Left;
                      sample.add_text({20, 60, 20, 100}, "aside", style);
                  }},
             Case{"a text that is cut",
                  [](SamplePages&sample, Style style) {
                      sample.add_text({20, 60, 10, 12}, "between", style);
                  }},
             Case{"a drawing",
                  [](SamplePages&sample, Style style) {
                      Drawing drawing{100, 20, {Label{{0, 10}, "label", style.font, kBlack, HorizontalAlign::Left, 0}}};
                      sample.add({20, 60, 100, 20}, style, Graphic{std::make_shared<const Drawing>(drawing)});
                  }},
         }) {
        for (const float size : {10.0F, 14.0F}) {
            SamplePages sample;
            Style other = sample.style();
            other.font.bold = true;
            other.font.size = size;
            sample.add_text({20, 20, 200, 12}, "the first line", sample.style());
            c.between(sample, other);
            sample.add_text({20, 200, 200, 12}, "second line", sample.style());
            const std::string words = copied(sample.print("turned.pdf"));
            EXPECT_THAT(words, testing::HasSubstr("the first line\n")) << c.why;
            EXPECT_THAT(words, testing::EndsWith("\nsecond line")) << c.why;
        }
    }
}

TEST(PdfWords, TextIsCopiedAsItIsWrittenInEveryScript)
{
    struct Case {
        const char* why;
        std::string text;
    };
    std::string many;
    for (char32_t mark = 0x300; mark < 0x345; ++mark) append_utf8(many += mark % 8 == 0 ? "" : "\u0301", mark);
    const Case cases[] = {
        Case{"one glyph a letter", "Straße, Łódź, Ελλάδα, Київ"},
        Case{"ligatures of the text itself", "ﬁne ŉ ǆ"},
        Case{"accents that the face has with their letter", "Vie\u0323\u0302t e\u0301te\u0301"},
        Case{"accents upon accents", "q\u0308\u0303x\u0302\u0301y\u0323\u0307\u0304 end"},
        Case{"so many that no code can hold them", "n" + many + " end"},
        Case{"Thai, with vowels and tones above and below", "ที่น้ำ ผู้ป่วย กำลังซื้อ"},
        Case{"Devanagari, where a vowel stands before its letter", "हिन्दी क्षत्रिय किताब कर्ता"},
        Case{"Arabic, with its ligature of two letters", "السلام عليكم"},
        Case{"Arabic with marks", "مُحَمَّد"},
        Case{"Hebrew", "שלום עולם"},
        Case{"Hebrew with points", "שָׁלוֹם"},
        Case{"beyond the first plane, joined and coloured", "😀 👍🏽 👨‍👩‍👧 end"},
        Case{"a letter that no face has", "a\U000F1234b"},
    };
    for (const char* family : {"DejaVu Sans", "DejaVu Sans Mono"}) {
        SamplePages sample;
        const auto file = SamplePages::scratch() / "scripts.pdf";
        const auto sink = make_exporter("pdf", file, {sample.fonts, {}});
        sink->begin(sample.document);
        Style style = sample.style();
        style.font.family = family;
        for (const Case& c : cases) {
            sample.add_text({20, 20, 500, 20}, c.text, style);
            sink->page(std::exchange(sample.page, {}));
        }
        sink->end();
        std::stringstream pages(copied(file));
        for (const Case& c : cases) {
            std::string words;
            std::getline(pages, words, '\f');
            EXPECT_EQ(words.substr(0, words.find_last_not_of("\n") + 1), c.text) << c.why << " in " << family;
        }
    }
}

TEST(PdfWords, RunsOfBothDirectionsStandAsTheirParagraphReads)
{
    struct Case {
        const char *why, *text, *line, *html;  // words that read the same both ways
        std::vector<std::string> from_left;    ///< words of the line
    };
    for (const auto& c : {
             Case{"Arabic first", "باب ABC تحت", "باب", "<span dir=\"rtl\">باب ABC تحت</span>", {"تحت", "ABC", "باب"}},
             Case{"Latin first", "ABC باب DEF", "ABC", ">ABC باب DEF</div>", {"ABC", "باب", "DEF"}},
             Case{"figures have no direction", "12 باب DEF", "12", "dir=\"rtl\">12", {"DEF", "باب", "12"}},
             Case{"a line goes on as its paragraph began",
                  "باب باب باب باب باب باب ABC تحت",
                  "ABC",
                  "dir=\"rtl\">ABC تحت",
                  {"تحت", "ABC"}},
             Case{"a line of Latin letters alone, too",
                  "باب باب باب باب باب باب ABC DEF!",
                  "ABC",
                  "dir=\"rtl\">ABC DEF!",
                  {"!ABC", "DEF"}},
             Case{"the next paragraph begins anew", "باب باب\nABC تحت", "ABC", "\nABC تحت</div>", {"ABC", "تحت"}},
         }) {
        SamplePages sample;
        for (const char* name : {"both.pdf", "both.html"}) {
            sample.add_text({20, 20, 120, 40}, c.text, sample.style());
            sample.print(name);
        }
        EXPECT_EQ(words_from_left(SamplePages::scratch() / "both.pdf", c.line), c.from_left) << c.why;
        EXPECT_THAT(bytes_of(SamplePages::scratch() / "both.html"), testing::HasSubstr(c.html)) << c.why;
    }
}

}  // namespace
}  // namespace velora::engine
