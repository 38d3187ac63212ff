#include "support/print_xml_reader.h"

#include "engine/export/export_run.h"
#include "engine/export/sample_pages.h"
#include "support/same_page.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

PageList read(const std::string& xml)
{
    PageList pages;
    read_print_xml(xml, pages);
    return pages;
}

/// Draws, writes, reads back and compares.
void expect_same_back(SamplePages& sample, const std::function<void()>& draw, const std::string& why)
{
    draw();
    const PageList back = read(bytes_of(sample.print("back.xml")));
    draw();
    ASSERT_EQ(back.pages.size(), 1U) << why;
    EXPECT_TRUE(same_page(back.pages[0], sample.page)) << why;
    sample.page = {};
}

TEST(XmlReader, EveryStyleComesBack)
{
    struct Case {
        std::string why;
        std::function<void(Style&)> change;
    };
    std::vector<Case> cases;
    const auto add = [&](std::string why, std::function<void(Style&)> change) {
        cases.push_back({std::move(why), std::move(change)});
    };
    for (const auto line : {LineStyle::Solid, LineStyle::Dashed, LineStyle::Dotted, LineStyle::Double}) {
        for (Pen Box::*side : {&Box::top, &Box::left, &Box::bottom, &Box::right}) {
            add("a side of the box", [=](Style& s) { s.box.*side = {0.25F, line, {1, 2, 3, 200}}; });
        }
    }
    for (int16_t Box::*side : {&Box::top_padding, &Box::left_padding, &Box::bottom_padding, &Box::right_padding}) {
        add("a padding", [=](Style& s) { s.box.*side = 7; });
    }
    for (const auto spacing : {LineSpacing::OneAndHalf, LineSpacing::Double, LineSpacing::AtLeast, LineSpacing::Fixed,
                               LineSpacing::Proportional}) {
        add("a line spacing", [=](Style& s) { s.paragraph.spacing = spacing, s.paragraph.spacing_size = 13.5F; });
    }
    for (int16_t Paragraph::*length : {&Paragraph::first_line_indent, &Paragraph::left_indent, &Paragraph::right_indent,
                                       &Paragraph::spacing_before, &Paragraph::spacing_after, &Paragraph::tab_width}) {
        add("a length of the paragraph", [=](Style& s) { s.paragraph.*length = 11; });
    }
    for (const auto align : {HorizontalAlign::Center, HorizontalAlign::Right, HorizontalAlign::Justified}) {
        add("an alignment", [=](Style& s) { s.horizontal = align; });
    }
    for (const auto align : {VerticalAlign::Middle, VerticalAlign::Bottom, VerticalAlign::Justified}) {
        add("an upright alignment", [=](Style& s) { s.vertical = align; });
    }
    for (const auto rotation : {Rotation::Left, Rotation::Right, Rotation::UpsideDown}) {
        add("a turn", [=](Style& s) { s.rotation = rotation; });
    }
    for (bool Font::*flag : {&Font::bold, &Font::italic, &Font::underline, &Font::strike_through}) {
        add("a flag of the font", [=](Style& s) { s.font.*flag = true; });
    }
    add("size and name of the font", [](Style& s) { s.font.size = 8.123F, s.font.family = "A \"B\" & <C>"; });
    add("a pattern with signs of the form", [](Style& s) { s.pattern = "<\"#,##0.00\">;(¤#)\n"; });
    add("colours that let through", [](Style& s) { s.fore = {0, 0, 0, 0}, s.back = {9, 8, 7, 6}, s.opaque = true; });
    SamplePages sample;
    for (const auto& c : cases) {
        expect_same_back(
            sample,
            [&] {
                Style style = sample.style();
                c.change(style);
                sample.add_text({10, 20, 100, 60}, "several words that take two lines or three", style);
                Frame frame;
                sample.add(
                    {-5, 1, 30, 40},
                    [&] {
                        Style ground = sample.style();  // a frame has no font, no paragraph and no turn
                        ground.box = style.box, ground.back = style.back, ground.fore = style.fore;
                        ground.opaque = style.opaque;
                        return ground;
                    }(),
                    std::move(frame));
            },
            c.why);
    }
}

TEST(XmlReader, TextsThatAreTroubleForXmlComeBack)
{
    SamplePages sample;
    for (const char* text : {"", " ", "   leading", "trailing   ", "\n", "\ta\tb\t", "\r\n\r", "]]>", "<!--", "&amp;",
                             "a\u0085b\u2028c", "\U0001F600\uFB01", "  \n  "}) {
        expect_same_back(
            sample,
            [&] {
                sample.add_text({0, 0, 300, 40}, text, sample.style());
            },
            std::string("\"") + text + "\"");
    }
    Text& broken = sample.add_text({0, 0, 300, 40}, "\xBF\xBF\xC3 then the rest", sample.style());
    broken.details().truncate_at = 8;
    const PageList back = read(bytes_of(sample.print("broken.xml")));
    const auto& text = std::get<Text>(back.pages.at(0).elements.at(0).content);
    EXPECT_EQ(text.text, "??? then the rest") << "one sign for each byte that is none";
    EXPECT_EQ(text.shown(), "??? then") << "so that what is cut off stays the same";
}

TEST(XmlReader, FilesThatAreBrokenAnywhereAreRefusedOrRead)
{
    SamplePages sample;
    Frame frame;
    frame.children.push_back({{1, 1, 9, 9}, sample.document.styles->intern(sample.style()), 0, false, Rectangle{}});
    sample.add_text({0, 0, 100, 40}, "a <b>bold</b> word and more of them", sample.style(), Markup::Styled);
    sample.add({0, 0, 50, 50}, sample.style(), std::move(frame));
    const std::string whole = bytes_of(sample.print("whole.xml"));
    for (size_t size = 0; size < whole.rfind("</jasperPrint>"); size += 7) {
        EXPECT_THROW(read(whole.substr(0, size)), Fault) << "cut at " << size;
    }
    for (size_t at = 0; at < whole.size(); at += 3) {
        for (const char sign : {'<', '"', '0', '\x01', '\xFF'}) {
            std::string bent = whole;
            bent[at] = sign;
            try {
                (void)read(bent);
            } catch (const Fault& fault) {
                EXPECT_EQ(fault.number(), fault::kReportFile);
            }
        }
    }
}

TEST(XmlReader, FramesInFramesWithoutEndAreRefusedOrRead)
{
    std::string xml = "<jasperPrint><page>";
    constexpr size_t kDeep = 200000;
    for (size_t i = 0; i < kDeep; ++i) xml += "<frame>";
    for (size_t i = 0; i < kDeep; ++i) xml += "</frame>";
    xml += "</page></jasperPrint>";
    EXPECT_THROW(read(xml), Fault);
}

TEST(XmlReader, NumbersOfAnySizeDoNoHarm)
{
    for (const char* number : {"-1", "0", "1e400", "99999999999999999999", "4294967295", "2147483647", "-2147483648",
                               "nan", "0x10", "", "1.5"}) {
        const std::string n = number;
        const PageList pages =
            read("<jasperPrint pageWidth='" + n + "' pageHeight='" + n +
                 "'><origin band='detail'/><page><text textHeight='" + n +
                 "' hyperlinkType='LocalPage' hyperlinkPage='" + n + "' bookmarkLevel='" + n + "'><reportElement x='" +
                 n + "' width='" + n + "' srcId='" + n + "' origin='" + n + "'><property name='velora.lines' value='" +
                 n + "," + n + "," + n + ",1,1,1,1;'/></reportElement><box topPadding='" + n + "'><topPen lineWidth='" +
                 n + "'/></box><font size='" + n + "'/><textContent truncateIndex='" + n +
                 "'>abc</textContent></text></page></jasperPrint>");
        ASSERT_EQ(pages.pages.size(), 1U) << n;
        const auto& text = std::get<Text>(pages.pages[0].elements.at(0).content);
        EXPECT_LE(text.shown().size(), 3U) << n;
        EXPECT_LE(pages.document.sources->size(), 100001U) << n;
    }
}

}  // namespace
}  // namespace velora::engine
