#include <sstream>

#include "engine/export/export_run.h"
#include "engine/export/made_png.h"
#include "engine/export/sample_pages.h"
#include "support/tool_run.h"

namespace velora::engine {
namespace {

/// A page of elements that come from bands.
class TaggedPages : public SamplePages {
public:
    TaggedPages()
    {
        document.tagged = true;
        document.locale = "en_CA";
    }

    /// The elements that come next are of that band, printed anew.
    void band(const char* name, uint8_t heading = 0)
    {
        document.sources->push_back({{}, name, {}, heading});
        begins_ = true;
    }
    Text& text(const Place& place, const char* words, float size = 10)
    {
        Style style = this->style();
        style.font.size = size;
        Text& text = add_text(place, words, style);
        place_in_band();
        return text;
    }
    template <class Content>
    void other(const Place& place, Content content)
    {
        add(place, style(), std::move(content));
        place_in_band();
    }
    void row(int y, std::initializer_list<const char*> cells)
    {
        int x = 20;
        for (const char* cell : cells) {
            if (*cell != '\0') text({x, y, 60, 12}, cell);
            x += 70;
        }
    }

private:
    void place_in_band()
    {
        page.elements.back().source = static_cast<uint32_t>(document.sources->size() - 1);
        page.elements.back().begins_band = std::exchange(begins_, false);
    }

    bool begins_ = false;
};

/// What is wrong with the file for those who have it read out, as another program sees it.
std::string faults_of(const std::filesystem::path& file)
{
    return run_tool("/usr/bin/python3 '" VELORA_SOURCE_DIR "/tests/support/tags_check.py' " + word(file)).output +
           run_tool("/usr/bin/python3 '" VELORA_SOURCE_DIR "/tests/support/archive_check.py' " + word(file)).output;
}

/// The parts of the file in their order: a line each, indented, with its words behind it; attributes are left out.
std::string read_out(const std::filesystem::path& file)
{
    std::istringstream lines(run_tool("pdfinfo -struct-text " + word(file)).output);
    std::string out;
    for (std::string line; std::getline(lines, line);) {
        const size_t begin = line.find_first_not_of(' ');
        if (begin == std::string::npos || line[begin] == '/' || line.compare(begin, 6, "Object") == 0) continue;
        if (line[begin] == '"') {
            out.back() = ' ';
            out += line.substr(begin) + "\n";
        } else {
            out += line.substr(0, line.find_first_of(" :(", begin)) + "\n";
        }
    }
    return out;
}

void add_first_page(TaggedPages& sample)
{
    sample.band("background");
    sample.other({0, 0, 595, 842}, Rectangle{});
    sample.band("title");
    sample.text({20, 20, 200, 12}, "Ward & Sons");
    sample.text({300, 20, 200, 20}, "Quotation", 18);
    sample.band("columnHeader");
    sample.row(60, {"Item", "Description", "Amount"});
    sample.band("detail");
    sample.text({160, 80, 60, 12}, "12.50");  // drawn first, read last
    sample.text({20, 80, 60, 12}, "A-1");
    sample.text({90, 80, 60, 12}, "Bolt");
    sample.text({20, 92, 60, 12}, "in stock");
    sample.band("detail");
    sample.row(110, {"A-2", "", "3.00"});
    sample.text({20, 122, 130, 12}, "over two columns");
    sample.band("pageFooter");
    sample.text({20, 800, 100, 12}, "Page 1");
}

TEST(PdfTags, HeadingsRowsAndCellsAreReadInTheirOrder)
{
    TaggedPages sample;
    const auto target = SamplePages::scratch() / "tags.pdf";
    const auto sink = make_exporter("pdf", target, {sample.fonts, {}});
    sink->begin(sample.document);
    add_first_page(sample);
    sink->page(std::exchange(sample.page, {}));
    sample.page.elements.clear();
    sample.band("pageHeader");
    sample.text({20, 20, 100, 12}, "Quotation, continued");
    sample.row(60, {"Item", "Description", "Amount"});
    for (size_t at = 1; at < 4; ++at) sample.page.elements[at].source = 3;  // the head of the table, again
    sample.page.elements[1].begins_band = true;
    sample.band("detail");
    sample.row(80, {"A-3", "Nut", "1.00"});
    sample.band("groupFooter");
    sample.row(100, {"", "Sum", "16.50"});
    sample.band("summary");
    sample.text({20, 140, 60, 12}, "Thank you");
    sample.text({20, 160, 60, 12}, "and come again");
    sink->page(std::move(sample.page));
    sink->end();
    EXPECT_EQ(faults_of(target), "");
    EXPECT_EQ(read_out(target), R"(Document
  P "Ward & Sons"
  H1 "Quotation"
  Table
    TR
      TH "Item"
      TH "Description"
      TH "Amount"
    TR
      TD
        P "A-1"
        P "in stock"
      TD "Bolt"
      TD "12.50"
    TR
      TD "A-2"
      TD
      TD "3.00"
    TR
      TD "over two columns"
      TD
    TR
      TD "A-3"
      TD "Nut"
      TD "1.00"
    TR
      TD
      TD "Sum"
      TD "16.50"
  P "Thank you"
  P "and come again"
)");
}

TEST(PdfTags, WhatIsDrawnAroundTextsIsDecorationAndLinksAreTold)
{
    TaggedPages sample;
    sample.band("title", 2);
    Text& linked = sample.text({20, 20, 100, 12}, "Our terms");
    linked.details().link = {Link::Kind::Reference, "https://example.com", {}, 0, {}};
    sample.band("summary");
    Style style = sample.style();
    style.opaque = true;
    style.font.underline = true;
    style.box.top = style.box.left = style.box.right = style.box.bottom = {1, LineStyle::Solid, kBlack};
    sample.add_text({20, 60, 60, 40}, "boxed, underlined and on several lines, some of them cut", style);
    style.rotation = Rotation::Left;
    sample.add_text({120, 60, 20, 60}, "turned", style);
    sample.add_text({20, 120, 300, 12}, "<a href=\"https://example.org\">marked</a> and e\xCC\x81 \xD7\xA9",
                    sample.style(), Markup::Html);
    sample.other({20, 140, 50, 50},
                 Image{std::make_shared<ImageData>(
                           ImageData{made_png_picture(PngColors::Grey, 2, 2, "\x01\x02\x03\x04"), "a/logo of us.png"}),
                       {},
                       {}});
    auto drawing = std::make_shared<Drawing>();
    drawing->width = drawing->height = 50;
    drawing->items.emplace_back(Label{{10, 10}, "Won", sample.document.default_font, kBlack, HorizontalAlign::Left, 0});
    drawing->items.emplace_back(
        Shape{{Point{0, 0}, Point{20, 20}}, false, false, kBlack, {1, LineStyle::Solid, kBlack}});
    drawing->description = "Won: January 5";
    sample.other({20, 200, 50, 50}, Graphic{drawing});
    sample.other({20, 260, 50, 1}, Line{});
    sample.band("pageFooter");
    Text& footer = sample.text({20, 800, 100, 12}, "www.example.net");
    footer.details().link = {Link::Kind::Reference, "https://example.net", {}, 0, {}};
    const auto file = sample.print("told.pdf");
    EXPECT_EQ(faults_of(file), "");
    const std::string told = read_out(file);
    for (const char* part :
         {"  H1\n    Link \"Our terms\"\n", "  P \"boxed,\" \" underlined\" \" and on\"", "  P \"turned\"\n",
          "  P\n    Link \"marked\" \" and ", "  P\n    Link \"www.example.net\"\n"}) {
        EXPECT_NE(told.find(part), std::string::npos) << part << " in\n" << told;
    }
    const auto plain = SamplePages::scratch() / "plain.pdf";
    run_tool("qpdf --qdf --object-streams=disable " + word(file) + " " + word(plain));
    for (const char* words : {"/Alt (logo of us)", "/Alt (Won: January 5)"}) {
        EXPECT_NE(bytes_of(plain).find(words), std::string::npos) << words;
    }
}

TEST(PdfTags, AFileWithoutThemClaimsNone)
{
    TaggedPages sample;
    sample.document.tagged = false;
    sample.text({20, 20, 100, 12}, "plain");
    const auto file = sample.print("untagged.pdf");
    EXPECT_NE(faults_of(file).find("it is not tagged"), std::string::npos);
    EXPECT_EQ(bytes_of(file).find("pdfuaid"), std::string::npos);
}

}  // namespace
}  // namespace velora::engine
