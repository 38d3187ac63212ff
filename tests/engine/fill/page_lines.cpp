#include "page_lines.h"

#include <array>
#include <charconv>
#include <iterator>
#include <string_view>

namespace velora::engine {
namespace {

constexpr std::array kKinds{"text", "line", "rectangle", "ellipse", "image", "frame", "image"};
constexpr std::array kPenStyles{"SOLID", "DASHED", "DOTTED", "DOUBLE"};
constexpr std::array kAligns{"LEFT", "CENTER", "RIGHT", "JUSTIFIED"};
constexpr std::array kVerticalAligns{"TOP", "MIDDLE", "BOTTOM", "JUSTIFIED"};
constexpr std::array kRotations{"NONE", "LEFT", "RIGHT", "UPSIDE_DOWN"};

std::string escaped(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\n':
                out += "&#10;";
                break;
            case '\t':
                out += "&#9;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::string number(float value)
{
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed).ptr;
    return {digits.data(), end};
}

std::string color(const Color& color)
{
    const auto hex = [](uint8_t part) {
        return std::string{"0123456789abcdef"[part >> 4U], "0123456789abcdef"[part & 15U]};
    };
    return "#" + hex(color.red) + hex(color.green) + hex(color.blue) + (color.alpha == 255 ? "" : hex(color.alpha));
}

std::string pen(const Pen& pen)
{
    if (pen.width == 0) return "none";
    return number(pen.width) + " " + kPenStyles.at(static_cast<size_t>(pen.style)) + " " + color(pen.color);
}

/// Offsets count in UTF-16 units.
uint32_t units_before(std::string_view text, uint32_t bytes)
{
    uint32_t units = 0;
    for (const char c : text.substr(0, bytes)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80 || byte >= 0xC0) units += byte >= 0xF0 ? 2 : 1;
    }
    return units;
}

/// One element's tag, filled attribute by attribute.
class Tag {
public:
    explicit Tag(const Element& element) : style_(*element.style)
    {
        line_ = std::string("<") + kKinds.at(element.content.index());
        const Place& place = element.place;
        for (const auto& [name, value] : {std::pair{"x", place.x}, std::pair{"y", place.y},
                                          std::pair{"width", place.width}, std::pair{"height", place.height}}) {
            attribute(name, std::to_string(value));
        }
        std::visit([this](const auto& content) { looks(content); }, element.content);
    }

    [[nodiscard]] const std::string& line() const { return line_; }

private:
    void attribute(const char* name, std::string_view value)
    {
        line_ += std::string(" ") + name + "=\"" + escaped(value) + "\"";
    }
    void unless(std::string_view usual, const char* name, std::string_view value)
    {
        if (value != usual) attribute(name, value);
    }

    void looks(const Line&)
    {
        unless("#000000", "fore", color(style_.fore));
        if (style_.line_bottom_up) attribute("direction", "BOTTOM_UP");
        unless("1 SOLID #000000", "pen", pen(style_.pen));
    }
    void looks(const Rectangle&)
    {
        shape();
        unless("0", "radius", std::to_string(style_.radius));
        unless("1 SOLID #000000", "pen", pen(style_.pen));
    }
    void looks(const Ellipse&)
    {
        shape();
        unless("1 SOLID #000000", "pen", pen(style_.pen));
    }
    void looks(const Image& image)
    {
        unless("#000000", "fore", color(style_.fore));
        boxed();
        if (image.anchor) anchor(*image.anchor);
        if (image.link) link(*image.link);
    }
    void looks(const Frame&) { boxed(); }
    void looks(const Graphic&)
    {
        unless("#000000", "fore", color(style_.fore));
        boxed();
    }
    void looks(const Text& text);

    void shape()
    {
        unless("#000000", "fore", color(style_.fore));
        unless("#ffffff", "back", style_.opaque ? color(style_.back) : "none");
    }
    void boxed()
    {
        if (style_.opaque) attribute("back", color(style_.back));
        const Box& box = style_.box;
        unless("none, none, none, none", "border",
               pen(box.top) + ", " + pen(box.left) + ", " + pen(box.bottom) + ", " + pen(box.right));
        unless("0 0 0 0", "padding",
               std::to_string(box.top_padding) + " " + std::to_string(box.left_padding) + " " +
                   std::to_string(box.bottom_padding) + " " + std::to_string(box.right_padding));
    }
    void anchor(const Anchor& anchor)
    {
        if (anchor.name.empty()) return;
        attribute("anchor", anchor.name);
        unless("0", "level", std::to_string(anchor.bookmark_level));
    }
    void link(const Link& link)
    {
        if (link.kind == Link::Kind::Reference) attribute("link", "reference " + link.target);
        if (link.kind == Link::Kind::LocalAnchor) attribute("link", "anchor " + link.anchor);
        if (link.kind == Link::Kind::LocalPage) attribute("link", "page " + std::to_string(link.page));
    }
    void font(const Font& font);
    [[nodiscard]] std::string runs(const Text& text) const;
    [[nodiscard]] std::string difference(const TextRun& run) const;

    const Style& style_;
    std::string line_;
};

void Tag::font(const Font& font)
{
    if (font.family != "SansSerif" && font.family != "DejaVu Sans") {
        std::string family;
        for (const char c : font.family) family += static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
        attribute("font", family);
    }
    unless("10", "size", number(font.size));
    std::string face;
    if (font.bold) face += "bold ";
    if (font.italic) face += "italic ";
    if (font.underline) face += "underline ";
    if (font.strike_through) face += "strike ";
    if (!face.empty()) attribute("face", face.substr(0, face.size() - 1));
}

void Tag::looks(const Text& text)
{
    unless("#000000", "fore", color(style_.fore));
    boxed();
    const std::string_view shown = text.shown();
    const TextDetail none;
    const TextDetail& detail = text.detail ? *text.detail : none;
    anchor(detail.anchor);
    link(detail.link);
    font(style_.font);
    unless("LEFT", "align", kAligns.at(static_cast<size_t>(style_.horizontal)));
    unless("TOP", "valign", kVerticalAligns.at(static_cast<size_t>(style_.vertical)));
    unless("NONE", "rotation", kRotations.at(static_cast<size_t>(style_.rotation)));
    if (!shown.empty()) attribute("textHeight", number(text.text_height));
    std::string starts;  // of the lines that no line feed of the text begins
    for (const auto& line : detail.lines) {
        if (line.begin == 0 || line.begin >= shown.size() || shown[line.begin - 1] == '\n') continue;
        starts += (starts.empty() ? "" : " ") + std::to_string(units_before(text.text, line.begin));
    }
    unless("", "lines", starts);
    unless("", "runs", runs(text));
    line_ += ">" + escaped(shown);
}

/// The parts of a marked-up text that look different from the element itself.
std::string Tag::runs(const Text& text) const
{
    std::string out;
    if (!text.detail) return out;
    for (const auto& run : text.detail->runs) {
        const std::string looks = difference(run);
        if (looks.empty()) continue;
        out += (out.empty() ? "" : ", ") + std::to_string(units_before(text.text, run.begin)) + "-" +
               std::to_string(units_before(text.text, run.end)) + looks;
    }
    return out;
}

std::string Tag::difference(const TextRun& run) const
{
    const Font& font = *run.font;
    const Font& usual = style_.font;
    std::string out;
    if (font.bold != usual.bold) out += font.bold ? " bold" : " light";
    if (font.italic != usual.italic) out += font.italic ? " italic" : " upright";
    if (font.underline != usual.underline) out += " underline";
    if (font.strike_through != usual.strike_through) out += " strike";
    if (font.size != usual.size) out += " size " + number(font.size);
    if (run.fore != style_.fore) out += " " + color(run.fore);
    if (run.script == TextRun::Script::Super) out += " super";
    if (run.script == TextRun::Script::Sub) out += " sub";
    return out;
}

void add_elements(const std::vector<Element>& elements, std::vector<std::string>& lines)
{
    for (const auto& element : elements) {
        const std::string line = Tag(element).line();
        const auto* frame = std::get_if<Frame>(&element.content);
        if (frame != nullptr && !frame->children.empty()) {
            lines.push_back(line + ">");
            add_elements(frame->children, lines);
            lines.emplace_back("</frame>");
        } else {
            lines.push_back(line + (std::holds_alternative<Text>(element.content) ? "</text>" : "/>"));
        }
    }
}

}  // namespace

std::vector<std::string> page_lines(const Page& page)
{
    std::vector<std::string> lines{"<page>"};
    add_elements(page.elements, lines);
    lines.emplace_back("</page>");
    return lines;
}

std::vector<std::string> page_lines(const std::vector<Page>& pages)
{
    std::vector<std::string> lines{"<pages>"};
    for (const auto& page : pages) {
        for (auto& line : page_lines(page)) lines.push_back(std::move(line));
    }
    lines.emplace_back("</pages>");
    return lines;
}

}  // namespace velora::engine
