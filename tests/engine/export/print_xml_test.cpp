#include <gtest/gtest.h>

#include "engine/export/export_run.h"
#include "engine/export/sample_pages.h"
#include "support/print_xml_reader.h"
#include "support/same_page.h"
#include "support/tool_run.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

/// A page with everything that the print form can hold.
void fill_with_everything(SamplePages& sample)
{
    Style style = sample.style();
    style.pattern = "#,##0.00";
    style.font.size = 8.5F;
    style.font.bold = true;
    style.fore = {10, 20, 30, 255};
    style.box.top = {0.5F, LineStyle::Dashed, {200, 0, 0, 255}};
    style.box.left_padding = 3;
    style.paragraph.spacing = LineSpacing::Proportional;
    style.paragraph.spacing_size = 1.2F;
    style.rotation = Rotation::Left;
    Text& text = sample.add_text({10, 20, 60, 90}, "several words in lines & <signs>\t]]>\r\nend", style);
    text.details().truncate_at = 20;
    text.details().link = {Link::Kind::RemotePage, "other.pdf", "", 3, "go"};
    text.details().anchor = {"here", 2};
    sample.add_text({0, 0, 300, 20}, "a <b>bold</b> <a href=\"http://x/?a=1&amp;b=2\">link</a> &lt;", sample.style(),
                    Markup::Styled);
    sample.add_text({0, 0, 300, 20}, "grüße \U0001F600 שלום", sample.style()).details().truncate_at = 12;

    Style shape = sample.style();
    shape.opaque = true;
    shape.back = {1, 2, 3, 128};
    shape.pen = {2.5F, LineStyle::Double, {0, 0, 9, 255}};
    sample.add({5, 5, 50, 1}, shape, Line{});
    sample.add({5, 5, 50, 20}, shape, Ellipse{});
    shape.radius = 7;
    sample.add({5, 5, 50, 20}, shape, Rectangle{});

    Style picture = sample.style();
    picture.scale = ScaleImage::FillFrame;
    picture.horizontal = HorizontalAlign::Right;
    const auto data = std::make_shared<const ImageData>(ImageData{std::string("\0\x01\xFFpng", 6), {}});
    sample.add({1, 2, 3, 4}, picture,
               Image{data, std::make_shared<Link>(Link{Link::Kind::LocalPage, "", "", 2, ""}), {}});

    Drawing drawing{30, 20, {}};
    drawing.items.emplace_back(Label{{1, 2.5F}, "a: \"b\" c", {}, kBlack, HorizontalAlign::Center, 0.5F});
    drawing.items.emplace_back(Shape{{Point{1, 2}, Shape::Arc{{3, 4}, 5, 0, 1.5F}}, true, true, {9, 8, 7, 255}, {}});
    Frame frame;
    frame.children.push_back({{1, 1, 30, 20},
                              sample.document.styles->intern(sample.style()),
                              0,
                              false,
                              Graphic{std::make_shared<const Drawing>(drawing)}});
    sample.add({40, 50, 60, 70}, sample.style(), std::move(frame));
}

TEST(PrintXml, ReadingBackGivesTheSamePages)
{
    SamplePages sample;
    sample.document.landscape = true;
    fill_with_everything(sample);
    const std::string first = bytes_of(sample.print("first.xml"));
    PageList once, twice;
    read_print_xml(first, once);
    sample.document = once.document;
    sample.page = std::move(once.pages.at(0));
    const std::string second = bytes_of(sample.print("second.xml"));
    EXPECT_EQ(first, second);

    fill_with_everything(sample);
    read_print_xml(second, twice);
    ASSERT_EQ(twice.pages.size(), 1U);
    EXPECT_TRUE(same_page(twice.pages[0], sample.page));
    EXPECT_EQ(twice.document.author, "A. Writer");
    EXPECT_TRUE(twice.document.landscape);
    EXPECT_EQ(twice.document.created, sample.document.created);
}

TEST(PrintXml, HoldsThePrintFormThatItsUsersKnow)
{
    SamplePages sample;
    sample.document.sources->push_back({"uuid-1", "detail", ""});
    sample.add_text({20, 30, 150, 20}, "plain & simple", sample.style());
    sample.page.elements[0].source = 1;
    const std::string xml = bytes_of(sample.print("form.xml"));
    for (const char* part :
         {"<jasperPrint name=\"Sample\" "
          "pageWidth=\"595\" pageHeight=\"842\"",
          "<origin band=\"detail\"/>",
          "<reportElement uuid=\"uuid-1\" x=\"20\" y=\"30\" width=\"150\" height=\"20\" origin=\"1\" srcId=\"1\" "
          "printId=\"1\"/>",
          "<textContent>plain &amp; simple</textContent>"}) {
        EXPECT_NE(xml.find(part), std::string::npos) << part << "\nin\n" << xml;
    }
    EXPECT_EQ(run_tool("xmllint --noout " + (SamplePages::scratch() / "form.xml").string()).status, 0);
}

TEST(PrintXml, HostileFilesAreRefusedOrReadInPart)
{
    PageList pages;
    for (const char* xml : {"", "<jasperPrint>", "<other/>", "text"}) {
        EXPECT_THROW(read_print_xml(xml, pages), Fault) << xml;
    }
    read_print_xml(
        "<jasperPrint pageWidth='x'><page><text textHeight='?'><reportElement x='999999999999' srcId='4000000000'>"
        "<property name='velora.lines' value='5,900,1,1,1,1,1;7,3'/></reportElement><textContent truncateIndex='99'>a"
        "</textContent></text><image><reportElement><property name='velora.drawing' value='1 1 99999:'/>"
        "</reportElement></image><unknown/></page></jasperPrint>",
        pages);
    ASSERT_EQ(pages.pages.size(), 1U);
    ASSERT_EQ(pages.pages[0].elements.size(), 2U);
    const auto& text = std::get<Text>(pages.pages[0].elements[0].content);
    EXPECT_EQ(text.shown(), "a");
    EXPECT_TRUE(text.detail->lines.empty());
}

}  // namespace
}  // namespace velora::engine
