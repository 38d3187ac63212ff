#include "engine/export/docx/docx_shapes.h"

#include <algorithm>
#include <cmath>

#include "engine/export/common/xml_text.h"

namespace velora::engine {
namespace {

long emu(float points)
{
    return std::lround(points * 12700);
}

void append_place(std::string& out, const char* axis, float at)
{
    out.append("<wp:position").append(axis).append(" relativeFrom=\"page\"><wp:posOffset>");
    append_number(out, emu(at));
    out.append("</wp:posOffset></wp:position").append(axis).append(">");
}

void append_size(std::string& out, const char* element, const PictureBox& box)
{
    out.append("<").append(element);
    append_number_attribute(out, "cx", std::max(emu(box.width), 0L));
    append_number_attribute(out, "cy", std::max(emu(box.height), 0L));
    out += "/>";
}

void append_fill(std::string& out, Color color)
{
    out += "<a:solidFill><a:srgbClr";
    append_attribute(out, "val", office_color(color));
    out += "/></a:solidFill>";
}

void append_pen(std::string& out, const Pen& pen)
{
    if (pen.width <= 0) {
        out += "<a:ln><a:noFill/></a:ln>";
        return;
    }
    out += "<a:ln";
    append_number_attribute(out, "w", emu(pen.width));
    if (pen.style == LineStyle::Double) append_attribute(out, "cmpd", "dbl");
    out += ">";
    append_fill(out, pen.color);
    if (pen.style == LineStyle::Dashed) out += "<a:prstDash val=\"dash\"/>";
    if (pen.style == LineStyle::Dotted) out += "<a:prstDash val=\"sysDot\"/>";
    out += "</a:ln>";
}

constexpr std::string_view kEnd = "</a:graphicData></a:graphic></wp:anchor></w:drawing></w:r>";

}  // namespace

void DocxShapes::open(std::string& out, const PictureBox& box, std::string_view words)
{
    ++order_;
    out += "<w:r><w:drawing><wp:anchor distT=\"0\" distB=\"0\" distL=\"0\" distR=\"0\" simplePos=\"0\"";
    append_number_attribute(out, "relativeHeight", order_);
    out += " behindDoc=\"1\" locked=\"0\" layoutInCell=\"1\" allowOverlap=\"1\"><wp:simplePos x=\"0\" y=\"0\"/>";
    append_place(out, "H", box.x);
    append_place(out, "V", box.y);
    append_size(out, "wp:extent", box);
    out += "<wp:wrapNone/><wp:docPr";
    append_number_attribute(out, "id", order_);
    append_attribute(out, "name", "Shape " + std::to_string(order_));
    if (!words.empty()) append_attribute(out, "descr", words);
    out += "/><a:graphic>";
}

void DocxShapes::shape(std::string& out, std::string_view form, const PictureBox& box, const Color* fill,
                       const Pen& pen, bool flipped)
{
    open(out, box, {});
    out +=
        "<a:graphicData uri=\"http://schemas.microsoft.com/office/word/2010/wordprocessingShape\"><wps:wsp>"
        "<wps:cNvSpPr/><wps:spPr><a:xfrm";
    if (flipped) append_attribute(out, "flipV", "1");
    out += "><a:off x=\"0\" y=\"0\"/>";
    append_size(out, "a:ext", box);
    out += "</a:xfrm><a:prstGeom";
    append_attribute(out, "prst", form);
    out += "><a:avLst/></a:prstGeom>";
    if (fill != nullptr) {
        append_fill(out, *fill);
    } else {
        out += "<a:noFill/>";
    }
    append_pen(out, pen);
    out.append("</wps:spPr><wps:bodyPr/></wps:wsp>").append(kEnd);
}

void DocxShapes::closed(std::string& out, std::string_view form, const PictureBox& box, const Color* fill,
                        const Pen& pen)
{
    if (fill == nullptr && pen.width <= 0) return;
    shape(out, form, box, fill, pen, false);
}

void DocxShapes::line(std::string& out, Point from, Point to, const Pen& pen)
{
    if (pen.width <= 0) return;
    const PictureBox box{std::min(from.x, to.x), std::min(from.y, to.y), std::abs(to.x - from.x),
                         std::abs(to.y - from.y)};
    shape(out, "line", box, nullptr, pen, (to.x - from.x) * (to.y - from.y) < 0);
}

void DocxShapes::picture(std::string& out, const PictureBox& box, const std::shared_ptr<const ImageData>& data,
                         std::string_view words)
{
    const size_t relation = relations_.add("image", "media/" + pictures_.add(data));
    open(out, box, words);
    out +=
        "<a:graphicData uri=\"http://schemas.openxmlformats.org/drawingml/2006/picture\"><pic:pic><pic:nvPicPr>"
        "<pic:cNvPr";
    append_number_attribute(out, "id", order_);
    append_attribute(out, "name", "Picture " + std::to_string(order_));
    out += "/><pic:cNvPicPr/></pic:nvPicPr><pic:blipFill><a:blip r:embed=\"rId" + std::to_string(relation) +
           "\"/><a:stretch><a:fillRect/></a:stretch></pic:blipFill><pic:spPr><a:xfrm><a:off x=\"0\" y=\"0\"/>";
    append_size(out, "a:ext", box);
    out.append("</a:xfrm><a:prstGeom prst=\"rect\"><a:avLst/></a:prstGeom></pic:spPr></pic:pic>").append(kEnd);
}

}  // namespace velora::engine
