#include "engine/export/print_xml/drawing_text.h"

#include "engine/export/common/xml_text.h"

namespace velora::engine {
namespace {

/// Words parted by blanks; a text is its size, a colon and its bytes.
class Writer {
public:
    std::string text;

    template <class Number>
    Writer& number(Number value)
    {
        append_number(text, value);
        text += ' ';
        return *this;
    }
    Writer& word(std::string_view value)
    {
        number(value.size());
        text.back() = ':';
        text += value;
        text += ' ';
        return *this;
    }
    Writer& color(Color c) { return number(c.red).number(c.green).number(c.blue).number(c.alpha); }
};

void write(Writer& out, const Shape& shape)
{
    out.word("shape").number(int{shape.closed}).number(int{shape.filled}).color(shape.fill);
    out.number(shape.stroke.width).number(static_cast<int>(shape.stroke.style)).color(shape.stroke.color);
    out.number(shape.path.size());
    for (const auto& step : shape.path) {
        if (const auto* point = std::get_if<Point>(&step)) {
            out.number(0).number(point->x).number(point->y);
        } else {
            const auto& arc = std::get<Shape::Arc>(step);
            out.number(1).number(arc.center.x).number(arc.center.y);
            out.number(arc.radius).number(arc.from).number(arc.to);
        }
    }
}

void write(Writer& out, const Label& label)
{
    const Font& font = label.font;
    out.word("label").number(label.at.x).number(label.at.y).word(label.text).word(font.family).number(font.size);
    out.number(int{font.bold}).number(int{font.italic}).number(int{font.underline}).number(int{font.strike_through});
    out.color(label.color).number(static_cast<int>(label.align)).number(label.angle);
}

}  // namespace

std::string drawing_to_text(const Drawing& drawing)
{
    Writer out;
    out.number(drawing.width).number(drawing.height);
    for (const auto& item : drawing.items) {
        std::visit([&](const auto& what) { write(out, what); }, item);
    }
    if (!drawing.description.empty()) out.word("description").word(drawing.description);
    return std::move(out.text);
}

}  // namespace velora::engine
