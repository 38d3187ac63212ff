#include "support/drawing_reader.h"

#include <charconv>
#include <string>

namespace velora::engine {
namespace {

class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    template <class Number>
    Number number(char delimiter = ' ')
    {
        Number value{};
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
        const auto size = static_cast<size_t>(end - rest_.data());
        if (error != std::errc() || size >= rest_.size() || rest_[size] != delimiter) {
            failed_ = true;
            return Number{};
        }
        rest_.remove_prefix(size + 1);
        return value;
    }
    std::string word()
    {
        const auto size = number<size_t>(':');
        if (failed_ || size >= rest_.size()) {
            failed_ = true;
            return {};
        }
        std::string value(rest_.substr(0, size));
        rest_.remove_prefix(size + 1);
        return value;
    }
    Color color()
    {
        Color c;
        for (uint8_t* part : {&c.red, &c.green, &c.blue, &c.alpha}) *part = number<uint8_t>();
        return c;
    }
    template <class Enum>
    Enum one_of(Enum last)
    {
        const auto value = number<uint8_t>();
        if (value > static_cast<uint8_t>(last)) failed_ = true;
        return failed_ ? Enum{} : static_cast<Enum>(value);
    }
    [[nodiscard]] bool failed() const { return failed_; }
    [[nodiscard]] bool at_end() const { return rest_.empty(); }

private:
    std::string_view rest_;
    bool failed_ = false;
};

Shape read_shape(Reader& in)
{
    Shape shape;
    shape.closed = in.number<int>() != 0;
    shape.filled = in.number<int>() != 0;
    shape.fill = in.color();
    shape.stroke.width = in.number<float>();
    shape.stroke.style = in.one_of(LineStyle::Double);
    shape.stroke.color = in.color();
    for (auto left = in.number<size_t>(); left > 0 && !in.failed(); --left) {
        const int kind = in.number<int>();
        const auto x = in.number<float>(), y = in.number<float>();
        if (kind == 0) {
            shape.path.emplace_back(Point{x, y});
        } else {
            const auto radius = in.number<float>(), from = in.number<float>(), to = in.number<float>();
            shape.path.emplace_back(Shape::Arc{{x, y}, radius, from, to});
        }
    }
    return shape;
}

Label read_label(Reader& in)
{
    Label label;
    label.at.x = in.number<float>();
    label.at.y = in.number<float>();
    label.text = in.word();
    label.font.family = in.word();
    label.font.size = in.number<float>();
    for (bool Font::*flag : {&Font::bold, &Font::italic, &Font::underline, &Font::strike_through}) {
        label.font.*flag = in.number<int>() != 0;
    }
    label.color = in.color();
    label.align = in.one_of(HorizontalAlign::Justified);
    label.angle = in.number<float>();
    return label;
}

}  // namespace

std::optional<Drawing> drawing_from_text(std::string_view text)
{
    Reader in(text);
    Drawing drawing;
    drawing.width = in.number<float>();
    drawing.height = in.number<float>();
    while (!in.failed() && !in.at_end()) {
        const std::string kind = in.word();
        if (kind == "shape") {
            drawing.items.emplace_back(read_shape(in));
        } else if (kind == "label") {
            drawing.items.emplace_back(read_label(in));
        } else if (kind == "description") {
            drawing.description = in.word();
        } else {
            return std::nullopt;
        }
    }
    return in.failed() ? std::nullopt : std::optional(std::move(drawing));
}

}  // namespace velora::engine
