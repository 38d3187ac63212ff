#include <regex>

#include "engine/export/export_run.h"
#include "engine/export/made_png.h"
#include "engine/export/sample_pages.h"
#include "support/tool_run.h"
#include "values/base64.h"

namespace velora::engine {
namespace {

using testing::HasSubstr;
using testing::Not;

// Eight by eight points of one colour.
constexpr std::string_view kGreyPhotograph =
    "/9j/4AAQSkZJRgABAQAAAQABAAD/2wBDABsSFBcUERsXFhceHBsgKEIrKCUlKFE6PTBCYFVlZF9VXVtqeJmBanGQc1tdhbWGkJ6jq62rZ4C8yb"
    "qmx5moq6T/wAALCAAIAAgBAREA/8QAFAABAAAAAAAAAAAAAAAAAAAAAP/EABQQAQAAAAAAAAAAAAAAAAAAAAD/2gAIAQEAAD8AP//Z";
constexpr std::string_view kInkPhotograph =
    "/9j/7gAOQWRvYmUAZAAAAAAC/9sAQwAbEhQXFBEbFxYXHhwbIChCKyglJShROj0wQmBVZWRfVV1baniZgWpxkHNbXYW1hpCeo6utq2eAvMm6ps"
    "eZqKuk/9sAQwEcHh4oIyhOKytOpG5dbqSkpKSkpKSkpKSkpKSkpKSkpKSkpKSkpKSkpKSkpKSkpKSkpKSkpKSkpKSkpKSkpKSk/8AAFAgACAAI"
    "BAEiAAIRAQMRAQQiAP/EABYAAQEBAAAAAAAAAAAAAAAAAAAEBv/EABQQAQAAAAAAAAAAAAAAAAAAAAD/xAAVAQEBAAAAAAAAAAAAAAAAAAAEBv"
    "/EABQRAQAAAAAAAAAAAAAAAAAAAAD/2gAOBAEAAhEDEQQAAD8AvAMTTTAP/9k=";

/// The file with its objects in plain text, as another program reads it.
class PdfParts : public testing::Test {
protected:
    void SetUp() override
    {
        if (run_tool("qpdf --version").status == 127) GTEST_SKIP() << "there is no qpdf";
    }

    std::string plain(const std::string& name)
    {
        const auto file = sample.print(name).string();
        const ToolRun check = run_tool("qpdf --check " + file);
        EXPECT_EQ(check.status, 0) << check.output;
        return run_tool("qpdf --qdf --object-streams=disable " + file + " -").output;
    }

    static size_t count(const std::string& text, const std::string& pattern)
    {
        const std::regex wanted(pattern);
        return static_cast<size_t>(
            std::distance(std::sregex_iterator(text.begin(), text.end(), wanted), std::sregex_iterator()));
    }

    Text& linked(const Link& link)
    {
        Text& text = sample.add_text({20, 20, 100, 12}, "go", sample.style());
        text.details().link = link;
        return text;
    }

    SamplePages sample;
};

TEST_F(PdfParts, EveryKindOfLinkBecomesItsAction)
{
    struct Case {
        const char* why;
        Link link;
        const char* pattern;
    };
    using Kind = Link::Kind;
    for (const auto& c :
         {Case{"an address",
               {Kind::Reference, "https://a/?b=(1)\\", "", 0, ""},
               R"(/URI \(https://a/\?b=\\\(1\\\)\\\\\))"},
          Case{"an anchor in this file", {Kind::LocalAnchor, "", "Part (1)", 0, ""}, R"(/Dest \(Part \\\(1\\\)\))"},
          Case{"a page in this file", {Kind::LocalPage, "", "", 1, ""}, R"(/Dest \[\s+\d+ 0 R\s+/Fit)"},
          Case{"an anchor in another file", {Kind::RemoteAnchor, "b.pdf", "there", 0, ""}, R"(/D \(there\))"},
          Case{"a page in another file", {Kind::RemotePage, "b.pdf", "", 7, ""}, R"(6\s+/Fit)"},
          Case{"a tip to show", {Kind::Reference, "https://a", "", 0, "tip \xE2\x82\xAC"}, "/Contents <feff"},
          Case{"a page before the first", {Kind::LocalPage, "", "", -5, ""}, R"(/Dest \[\s+\d+ 0 R\s+/Fit)"}}) {
        linked(c.link);
        const std::string text = plain("link.pdf");
        EXPECT_EQ(count(text, "/Subtype /Link"), 1U) << c.why;
        EXPECT_EQ(count(text, c.pattern), 1U) << c.why << " in\n" << text;
    }
    for (const Link& nowhere : {Link{}, Link{Kind::Reference, "", "", 0, "a tip alone"}}) {
        linked(nowhere);
        EXPECT_EQ(count(plain("link.pdf"), "/Subtype /Link"), 0U);
    }
}

TEST_F(PdfParts, LinksToPagesStillToComeAreKept)
{
    const auto sink = make_exporter("pdf", SamplePages::scratch() / "forward.pdf", {sample.fonts, {}});
    sink->begin(sample.document);
    for (const int32_t page : {3, 99}) linked({Link::Kind::LocalPage, "", "", page, ""});
    for (int number = 0; number < 3; ++number) {
        sink->page(std::move(sample.page));
        sample.page = {};
    }
    sink->end();
    const ToolRun places = run_tool("pdfinfo -dests " + (SamplePages::scratch() / "forward.pdf").string());
    if (places.status == 127) GTEST_SKIP() << places.output;
    EXPECT_EQ(count(places.output, " 3 \\[.*\"page 3\""), 1U) << places.output;
    EXPECT_EQ(count(places.output, "page 99"), 0U) << "that page never came";
}

TEST_F(PdfParts, BookmarksHangBelowThoseOfALowerLevel)
{
    struct Mark {
        const char* name;
        int32_t level;
    };
    for (const auto& mark : {Mark{"one", 1}, Mark{"deep", 3}, Mark{"two", 2}, Mark{"zwei \xC3\xA9", 1}, Mark{"", 2},
                             Mark{"one", 2}, Mark{"none", 0}, Mark{"less", -4}}) {
        sample.add_text({20, 20, 100, 12}, "a text", sample.style()).details().anchor = {mark.name, mark.level};
    }
    const std::string text = plain("marks.pdf");
    EXPECT_EQ(count(text, "/Title \\(one\\)"), 2U) << "a name twice is two bookmarks";
    EXPECT_EQ(count(text, "/Title \\(a text\\)"), 1U) << "a bookmark without a name is called by its text";
    EXPECT_EQ(count(text, "/Title \\((none|less)\\)"), 0U);
    EXPECT_EQ(count(text, "/Count 2"), 2U) << "both first bookmarks hold two";
    EXPECT_EQ(count(text, "/Count 6"), 1U);
    EXPECT_EQ(count(text, R"(\(one\)\s+\[)"), 1U) << "but only one place";
    EXPECT_EQ(count(text, R"(\((none|less)\)\s+\[)"), 2U) << "places that links lead to need no bookmark";
}

TEST_F(PdfParts, PicturesKeepTheirColoursAndTheirClearParts)
{
    const std::string color = made_png_picture(PngColors::Rgb, 2, 1, std::string(6, '\x55'));
    const std::string clear = made_png_picture(PngColors::Rgba, 2, 1, std::string(8, '\x55'));
    for (const std::string& bytes : {color, clear, color}) {
        sample.add({20, 20, 50, 50}, sample.style(), Image{std::make_shared<ImageData>(ImageData{bytes, "p"}), {}, {}});
    }
    const std::string text = plain("pictures.pdf");
    EXPECT_EQ(count(text, "/Subtype /Image"), 4U) << "three pictures and one mask";
    EXPECT_EQ(count(text, "/SMask "), 1U);
}

TEST_F(PdfParts, PhotographsAreHeldAsTheyAre)
{
    struct Case {
        const char* why;
        std::string bytes;
        const char* space;
        size_t turned_over;
    };
    for (const auto& c : {Case{"grey", from_base64(kGreyPhotograph).value(), "/ColorSpace /DeviceGray", 0},
                          Case{"four inks, which photographs hold turned over", from_base64(kInkPhotograph).value(),
                               "/ColorSpace /DeviceCMYK", 1}}) {
        sample.add({20, 20, 50, 50}, sample.style(),
                   Image{std::make_shared<ImageData>(ImageData{c.bytes, "p"}), {}, {}});
        const std::string text = plain("photograph.pdf");
        EXPECT_EQ(count(text, c.space), 1U) << c.why;
        EXPECT_EQ(count(text, "/Filter /DCTDecode"), 1U) << c.why;
        EXPECT_EQ(count(text, "/Decode "), c.turned_over) << c.why;
        EXPECT_NE(bytes_of(SamplePages::scratch() / "photograph.pdf").find(c.bytes), std::string::npos) << c.why;
    }
}

TEST_F(PdfParts, LettersThatAFaceLacksComeFromAnotherAndCanBeCopied)
{
    Style mono = sample.style();
    mono.font.family = "DejaVu Sans Mono";
    Style serif = sample.style();
    serif.font.family = "DejaVu Serif";
    serif.font.bold = true;
    sample.add_text({20, 20, 400, 20}, "mono \u2809\u280A end", mono);
    sample.add_text({20, 50, 400, 20}, "Ελληνικά, Русский, ﬁ ŉ", serif);
    sample.add_text({20, 80, 400, 20}, "no face has \U000F1234 this", mono);
    const auto file = sample.print("faces.pdf").string();
    const ToolRun words = run_tool("pdftotext -raw " + file + " -"), fonts = run_tool("pdffonts " + file);
    if (words.status == 127) GTEST_SKIP() << words.output;
    for (const char* part : {"mono \u2809\u280A end", "Ελληνικά, Русский", "no face has", "this"}) {
        EXPECT_THAT(words.output, HasSubstr(part));
    }
    for (const char* face : {"DejaVuSansMono", "DejaVuSerif-Bold"}) EXPECT_THAT(fonts.output, HasSubstr(face));
    EXPECT_THAT(fonts.output, HasSubstr("+DejaVuSans ")) << "which has the dots";
    EXPECT_EQ(count(fonts.output, "yes yes yes"), count(fonts.output, "CID TrueType")) << "all embedded, all cut down";
    EXPECT_LT(std::filesystem::file_size(file), 80000U) << "whole faces are ten times that";
}

TEST_F(PdfParts, ManyPagesAreATreeThatReadersWalk)
{
    const auto file = SamplePages::scratch() / "tree.pdf";
    const auto sink = make_exporter("pdf", file, {sample.fonts, {}});
    sink->begin(sample.document);
    for (int number = 1; number <= 200; ++number) {
        sample.add_text({20, 20, 100, 12}, "sheet" + std::to_string(number), sample.style());
        sink->page(std::move(sample.page));
        sample.page = {};
    }
    sink->end();
    EXPECT_THAT(run_tool("qpdf --show-npages " + file.string()).output, HasSubstr("200"));
    for (const int number : {1, 64, 65, 128, 129, 200}) {
        const std::string page = std::to_string(number);
        const ToolRun words = run_tool("pdftotext -f " + page + " -l " + page + " " + file.string() + " -");
        if (words.status == 127) GTEST_SKIP() << words.output;
        EXPECT_THAT(words.output, HasSubstr("sheet" + page + "\n"));
    }
}

TEST_F(PdfParts, TheDateIsThatOfTheDocumentOrNone)
{
    EXPECT_EQ(count(plain("dated.pdf"), R"(/CreationDate \(D:20260131123000)"), 1U);
    sample.document.created.reset();
    EXPECT_EQ(count(plain("dated.pdf"), "Date"), 0U) << "the clock of the machine is never asked";
}

}  // namespace
}  // namespace velora::engine
