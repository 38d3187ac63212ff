#include <limits>
#include <regex>

#include "engine/export/export_run.h"
#include "engine/export/made_png.h"
#include "engine/export/sample_pages.h"
#include "engine/export/xls_reading.h"
#include "support/print_xml_reader.h"
#include "support/tool_run.h"
#include "values/fault.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr int32_t kLeast = std::numeric_limits<int32_t>::min(), kMost = std::numeric_limits<int32_t>::max();

size_t count(std::string_view text, std::string_view part)
{
    size_t found = 0;
    for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) ++found;
    return found;
}

bool is_utf8(std::string_view text)
{
    for (size_t at = 0; at < text.size();) {
        const auto [character, size] = utf8_at(text, at);
        if (character == kReplacement && size == 1) return false;
        at += size;
    }
    return true;
}

bool has_control_characters(std::string_view text, std::string_view allowed)
{
    return std::ranges::any_of(
        text, [&](char c) { return static_cast<unsigned char>(c) < ' ' && allowed.find(c) == allowed.npos; });
}

/// Whether the groups of rich text close where the file ends.
bool groups_close(std::string_view rtf)
{
    int depth = 0;
    for (size_t at = 0; at < rtf.size(); ++at) {
        if (rtf[at] == '\\')
            ++at;
        else if (rtf[at] == '{')
            ++depth;
        else if (rtf[at] == '}' && --depth == 0)
            return at + 3 > rtf.size();
    }
    return false;
}

/// Writes the sample's page in all formats and tests what holds for every file of each, whatever it shows.
class HostilePages : public testing::Test {
protected:
    /// @param draw  puts the page's elements into the sample; called for each format anew
    void expect_sound_files(const std::string& why, const std::function<void()>& draw)
    {
        for (const char* format : {"pdf", "html", "xls", "rtf", "txt", "xml"}) {
            draw();
            EXPECT_NO_THROW(files_[format] = sample.print(std::string("hostile.") + format)) << why << ": " << format;
        }
        expect_sound_markup(why);
        ReadWorkbook book;
        EXPECT_NO_THROW(book = read_workbook(files_["xls"])) << why;
        for (const auto& sheet : book.sheets) EXPECT_LE(sheet.columns, 256) << why << ": the format has no more";
        const ToolRun check = run_tool("qpdf --check " + files_["pdf"].string());
        EXPECT_TRUE(check.status == 0 || check.status == 127) << why << ": " << check.output;
    }

    [[nodiscard]] std::string file(const std::string& format) const { return bytes_of(files_.at(format)); }

    SamplePages sample;

private:
    void expect_sound_markup(const std::string& why)
    {
        PageList read;
        EXPECT_NO_THROW(read_print_xml(file("xml"), read)) << why;
        EXPECT_EQ(read.pages.size(), 1U) << why;
        EXPECT_TRUE(is_utf8(file("xml"))) << why;
        EXPECT_FALSE(has_control_characters(file("xml"), "\n\t")) << why << ": XML cannot hold them";
        EXPECT_TRUE(is_utf8(file("html"))) << why;
        EXPECT_FALSE(has_control_characters(file("html"), "\n\t")) << why;
        EXPECT_EQ(count(file("html"), "<div"), count(file("html"), "</div>")) << why;
        EXPECT_EQ(count(file("html"), "<span"), count(file("html"), "</span>")) << why;
        EXPECT_THAT(file("html"), Not(testing::ContainsRegex("[:(, ](nan|inf)|-nan"))) << why;
        EXPECT_TRUE(groups_close(file("rtf"))) << why;
        EXPECT_TRUE(std::ranges::all_of(file("rtf"), [](char c) { return c == '\n' || (c >= ' ' && c < 127); })) << why;
        EXPECT_TRUE(is_utf8(file("txt"))) << why;
        EXPECT_FALSE(has_control_characters(file("txt"), "\n\f")) << why;
    }

    std::map<std::string, std::filesystem::path> files_;
};

TEST_F(HostilePages, TextsOfEveryKindGiveSoundFiles)
{
    using namespace std::string_literals;
    std::string all_controls;
    for (char c = 0; c < ' '; ++c) all_controls += "a"s + c;
    struct Case {
        const char* why;
        std::string text;
    };
    for (const Case& c : {
             Case{"nothing", ""},
             Case{"a blank", " "},
             Case{"every control character", all_controls + "\x7F"},
             Case{"broken UTF-8", "a\xC3 \xE2\x82 \xF0\x9F\x98 \xFF\xFE \x80z"},
             Case{"halves of a pair", "a\xED\xA0\x80\xED\xB0\x80z"},
             Case{"no characters", "a\xEF\xBF\xBE\xEF\xBF\xBF\xF4\x90\x80\x80z"},
             Case{"overlong forms", "a\xC0\xBC\xE0\x80\xBCz"},
             Case{"a byte order mark", "\xEF\xBB\xBFz"},
             Case{"markup of every format",
                  "</textContent>]]><!-- {\\rtf1 \\bin9 } (a) \\ <script> &amp; %PDF \x1B[31m"},
             Case{"both directions and turns", "abc \u202Eשלום\u202C عربي \u200F12\u200E"},
             Case{"faces in sequence", "\U0001F468\u200D\U0001F469\u200D\U0001F467 \U0001F1E8\U0001F1E6"},
             Case{"many marks on one letter", "a" +
                                                  [] {
                                                      std::string marks;
                                                      for (int i = 0; i < 200; ++i) marks += "\u0301";
                                                      return marks;
                                                  }()},
             Case{"one word without end", std::string(20000, 'w')},
             Case{"half a megabyte",
                  [] {
                      std::string text;
                      while (text.size() < 500000) text += "Wörter und ";
                      return text;
                  }()},
             Case{"line ends of every kind", "a\nb\r\nc\rd\u2028e\u2029f\vg\fh\n\n"},
         }) {
        const auto draw = [&] {
            sample.add_text({20, 20, 200, 60}, c.text, sample.style());
            Style turned = sample.style();
            turned.rotation = Rotation::Right;
            turned.horizontal = HorizontalAlign::Justified;
            sample.add_text({300, 20, 60, 200}, c.text, turned);
            Text& linked = sample.add_text({20, 200, 100, 12}, "x", sample.style());
            linked.details().anchor = {c.text.substr(0, 300), 1};
            linked.details().link = {Link::Kind::LocalAnchor, "", c.text.substr(0, 300), 0, c.text.substr(0, 300)};
        };
        sample.document.title = sample.document.name = sample.document.subject = c.text.substr(0, 300);
        expect_sound_files(c.why, draw);
    }
}

TEST_F(HostilePages, PlacesAndSizesOfEveryKindGiveSoundFiles)
{
    for (const Place& place :
         {Place{-5000, -5000, 100, 20}, Place{0, 0, 0, 0}, Place{10, 10, -50, -20}, Place{100000, 100000, 20, 20},
          Place{0, 0, 1000000, 1000000}, Place{kMost - 10, kMost - 10, 5, 5}, Place{kMost, kMost, kMost, kMost},
          Place{kLeast, kLeast, kLeast, kLeast}, Place{kLeast, kLeast, kMost, kMost}}) {
        Style style = sample.style();
        style.opaque = true;
        style.box.top = style.box.left = style.pen = {2, LineStyle::Double, kBlack};
        style.box.left_padding = style.box.right_padding = std::numeric_limits<int16_t>::max();
        style.radius = std::numeric_limits<int16_t>::max();
        const auto image = std::make_shared<ImageData>(ImageData{made_png_picture(PngColors::Grey, 1, 1, "\x7F"), "p"});
        Drawing drawing{1e9F, -5, {}};
        drawing.items.emplace_back(Label{{-1e9F, 1e9F}, "l", {}, kBlack, HorizontalAlign::Right, 1e6F});
        const Style* plain = sample.document.styles->intern(style);
        const auto draw = [&] {
            for (const auto rotation : {Rotation::None, Rotation::Left, Rotation::UpsideDown}) {
                style.rotation = rotation;
                Text text;
                text.text = "far away";
                text.text_height = 12;
                sample.add(place, style, std::move(text));
            }
            sample.add(place, style, Line{});
            sample.add(place, style, Rectangle{});
            sample.add(place, style, Ellipse{});
            sample.add(place, style, Image{image, {}, {}});
            sample.add(place, style, Graphic{std::make_shared<const Drawing>(drawing)});
            Frame frame;
            frame.children.push_back({place, plain, 0, false, Rectangle{}});
            sample.add(place, style, std::move(frame));
        };
        expect_sound_files("at " + std::to_string(place.x) + ", " + std::to_string(place.width) + " wide", draw);
    }
}

TEST_F(HostilePages, PagesOfAnySizeGiveSoundFiles)
{
    for (const auto& [width, height] : {std::pair{0, 0}, std::pair{-10, -20}, std::pair{1, 1}, std::pair{20000, 100},
                                        std::pair{100, 2000000}, std::pair{kMost, kMost}}) {
        sample.document.page_width = width;
        sample.document.page_height = height;
        sample.document.left_margin = sample.document.right_margin = width;
        expect_sound_files(std::to_string(width) + " by " + std::to_string(height), [&] {
            sample.add_text({0, 0, 50, 12}, "here", sample.style());
            sample.add_text({0, std::max(height, 12) - 12, 50, 12}, "below", sample.style());
        });
    }
}

TEST_F(HostilePages, FontsOfAnyNameAndSizeGiveSoundFiles)
{
    for (const float size : {0.0F, -3.0F, 0.01F, 1000.0F, 1e9F}) {
        for (const char* family : {"", "No Such Face", "</style>\"';{}\\", "Ł中\x01"}) {
            Style style = sample.style();
            style.font.size = size;
            style.font.family = family;
            expect_sound_files(std::string(family) + " at " + std::to_string(size), [&] {
                sample.add_text({20, 20, 200, 60}, "two words", style);
            });
        }
    }
}

TEST_F(HostilePages, WhatIsNoPictureIsLeftOutAndNamed)
{
    std::string cut = made_png_picture(PngColors::Rgb, 20, 20, std::string(1200, '\x55'));
    cut.resize(cut.size() / 2);
    for (const std::string& bytes :
         {std::string(), std::string("GIF89a"), std::string("\xFF\xD8\xFF"), cut, std::string("<svg><circle/></svg>"),
          made_png_picture(PngColors::Grey, 0, 0, std::string()), std::string(100000, '\x89')}) {
        const Style style = sample.style();
        expect_sound_files("a picture of " + std::to_string(bytes.size()) + " bytes", [&] {
            sample.add({20, 20, 50, 50}, style,
                       Image{std::make_shared<ImageData>(ImageData{bytes, "logo.gif"}), {}, {}});
            sample.add({20, 90, 50, 50}, style, Image{nullptr, {}, {}});
            sample.add({20, 160, 50, 50}, style, Graphic{nullptr});
            sample.add_text({20, 220, 100, 12}, "behind", style);
        });
        EXPECT_THAT(file("txt"), HasSubstr("behind"));
        EXPECT_THAT(file("html"), HasSubstr("behind"));
    }
    std::vector<std::string> warnings;
    sample.add({20, 20, 50, 50}, sample.style(), Image{std::make_shared<ImageData>(ImageData{cut, "cut.png"}), {}, {}});
    sample.print(*make_exporter("pdf", SamplePages::scratch() / "named.pdf",
                                {sample.fonts, [&](const std::string& text) { warnings.push_back(text); }}));
    EXPECT_THAT(warnings, testing::ElementsAre(HasSubstr("cut.png")));
}

TEST_F(HostilePages, WhatATextHidesIsInNoFormat)
{
    expect_sound_files("a truncated text", [&] {
        sample.add_text({20, 20, 300, 12}, "shown and secret", sample.style()).details().truncate_at = 9;
        sample.add_text({20, 40, 300, 12}, "Łódź mystery", sample.style()).details().truncate_at = 7;
    });
    for (const char* format : {"html", "rtf", "txt"}) {
        EXPECT_THAT(file(format), HasSubstr("shown and")) << format;
        EXPECT_THAT(file(format), Not(HasSubstr("secret"))) << format;
        EXPECT_THAT(file(format), Not(HasSubstr("mystery"))) << format;
    }
    EXPECT_THAT(file("txt"), HasSubstr("Łódź"));
    EXPECT_THAT(file("xml"), testing::AllOf(HasSubstr("truncateIndex=\"9\""), HasSubstr("truncateIndex=\"4\"")));
    const ToolRun words = run_tool("pdftotext " + (SamplePages::scratch() / "hostile.pdf").string() + " -");
    if (words.status == 127) GTEST_SKIP() << words.output;
    EXPECT_THAT(words.output, testing::AllOf(HasSubstr("shown and"), Not(HasSubstr("secret"))));
}

}  // namespace
}  // namespace velora::engine
