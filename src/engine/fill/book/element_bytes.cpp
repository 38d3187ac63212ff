#include "engine/fill/book/element_bytes.h"

#include <cstring>
#include <type_traits>

#include "values/fault.h"

namespace velora::engine {

namespace {

/// Appends what it is told of.
class Writer {
public:
    static constexpr bool kWrites = true;
    Writer(std::string& bytes, PictureNumbers& pictures) : bytes_(bytes), pictures_(pictures) {}

    void raw(const void* data, size_t size) { bytes_.append(static_cast<const char*>(data), size); }
    void picture(const PictureNumbers::Picture& picture)
    {
        const uint32_t number = pictures_.of(picture);
        raw(&number, sizeof number);
    }

private:
    std::string& bytes_;
    PictureNumbers& pictures_;
};

/// Takes off the front of the bytes what it is told of.
class Reader {
public:
    static constexpr bool kWrites = false;
    Reader(std::string_view& bytes, const PictureNumbers& pictures) : bytes_(bytes), pictures_(pictures) {}

    void raw(void* data, size_t size) { std::memcpy(data, take(size).data(), size); }
    std::string_view take(size_t size)
    {
        if (size > bytes_.size()) throw fault::subscript("page");
        const auto taken = bytes_.substr(0, size);
        bytes_.remove_prefix(size);
        return taken;
    }
    void picture(PictureNumbers::Picture& picture)
    {
        uint32_t number = 0;
        raw(&number, sizeof number);
        picture = pictures_.at(number);
    }

private:
    std::string_view& bytes_;
    const PictureNumbers& pictures_;
};

// Each part tells its members once, for both ways.

template <class Io, class T>
using Part = std::conditional_t<Io::kWrites, const T, T>;

template <class Io, class... Parts>
void all(Io& io, Parts&... parts)
{
    (tell(io, parts), ...);
}

/// What is a number, or numbers side by side.
template <class T>
requires std::is_trivially_copyable_v<T>
void tell(Writer& io, const T& plain)
{
    io.raw(&plain, sizeof plain);
}

template <class T>
requires std::is_trivially_copyable_v<T>
void tell(Reader& io, T& plain)
{
    io.raw(&plain, sizeof plain);
}

/// Seven bits a byte, the lower ones first.
void tell_size(Writer& io, size_t size)
{
    for (; size >= 0x80; size >>= 7) tell(io, static_cast<uint8_t>(size | 0x80));
    tell(io, static_cast<uint8_t>(size));
}

size_t tell_size(Reader& io)
{
    size_t size = 0;
    for (unsigned shift = 0;; shift += 7) {
        uint8_t byte = 0;
        tell(io, byte);
        size |= static_cast<size_t>(byte & 0x7f) << shift;
        if (byte < 0x80) return size;
    }
}

void tell(Writer& io, const std::string& text)
{
    tell_size(io, text.size());
    io.raw(text.data(), text.size());
}

void tell(Reader& io, std::string& text)
{
    text = io.take(tell_size(io));
}

template <class T>
void tell(Writer& io, const std::vector<T>& list)
{
    tell_size(io, list.size());
    for (const T& each : list) tell(io, each);
}

template <class T>
void tell(Reader& io, std::vector<T>& list)
{
    const size_t size = tell_size(io);
    for (size_t index = 0; index < size; ++index) tell(io, list.emplace_back());
}

/// What is owned elsewhere and may be missing.
template <class T, class Pointer>
void tell_owned(Writer& io, const Pointer& pointer)
{
    const bool is_there = pointer != nullptr;
    tell(io, is_there);
    if (is_there) tell(io, *pointer);
}

template <class T, class Pointer>
void tell_owned(Reader& io, Pointer& pointer)
{
    bool is_there = false;
    tell(io, is_there);
    if (!is_there) return;
    auto made = std::make_unique<T>();
    tell(io, *made);
    pointer = std::move(made);
}

template <class Io>
void tell(Io& io, Part<Io, Value>& value)
{
    auto type = value.type();
    tell(io, type);
    const auto when = [&]<class T>(Value::Type one, T made) {
        if (type != one) return;
        if constexpr (Io::kWrites) {
            tell(io, *value.template get_if<T>());
        } else {
            tell(io, made);
            value = std::move(made);
        }
    };
    when(Value::Type::Boolean, false);
    when(Value::Type::Integer, int64_t{0});
    when(Value::Type::Single, 0.0F);
    when(Value::Type::Double, 0.0);
    when(Value::Type::Fixed, Fixed4());
    when(Value::Type::Date, DateTime());
    when(Value::Type::Text, std::string());
}

template <class Io>
void tell(Io& io, Part<Io, Link>& link)
{
    all(io, link.kind, link.target, link.anchor, link.page, link.tooltip);
}

template <class Io>
void tell(Io& io, Part<Io, Anchor>& anchor)
{
    all(io, anchor.name, anchor.bookmark_level);
}

template <class Io>
void tell(Io& io, Part<Io, Font>& font)
{
    all(io, font.family, font.size, font.bold, font.italic, font.underline, font.strike_through);
}

template <class Io>
void tell(Io& io, Part<Io, TextRun>& run)
{
    all(io, run.begin, run.end, run.fore, run.back, run.script, run.link);
    tell_owned<Font>(io, run.font);
}

/// What most have as it is made.
template <class Io, class T>
void tell_rare(Io& io, T& part)
{
    bool is_there = part != std::remove_const_t<T>();
    tell(io, is_there);
    if (is_there) tell(io, part);
}

template <class Io>
void tell(Io& io, Part<Io, TextDetail>& detail)
{
    all(io, detail.lines, detail.runs, detail.line_spacing_factor, detail.leading_offset, detail.value, detail.marked,
        detail.marked_as_html);
    tell_rare(io, detail.truncate_at);
    tell_rare(io, detail.link);
    tell_rare(io, detail.anchor);
}

template <class Io>
void tell(Io& io, Part<Io, Text>& text)
{
    all(io, text.text, text.text_height);
    tell_owned<TextDetail>(io, text.detail);
}

template <class Io>
void tell(Io& io, Part<Io, Image>& image)
{
    io.picture(image.data);
    tell_owned<Link>(io, image.link);
    tell_owned<Anchor>(io, image.anchor);
}

template <class Io>
void tell(Io& io, Part<Io, Shape>& shape)
{
    all(io, shape.path, shape.closed, shape.filled, shape.fill, shape.stroke);
}

template <class Io>
void tell(Io& io, Part<Io, Label>& label)
{
    all(io, label.at, label.text, label.font, label.color, label.align, label.angle);
}

/// One of several sorts, none of which is a few numbers alone.
template <class Io, class Variant>
void tell_one(Io& io, Variant& content)
{
    auto sort = static_cast<uint8_t>(content.index());
    tell(io, sort);
    const auto when = [&]<size_t kSort>() {
        if (sort != kSort) return;
        if constexpr (!Io::kWrites) content.template emplace<kSort>();
        tell(io, std::get<kSort>(content));
    };
    [&]<size_t... kSorts>(std::index_sequence<kSorts...>)
    {
        (when.template operator()<kSorts>(), ...);
    }
    (std::make_index_sequence<std::variant_size_v<std::remove_const_t<Variant>>>());
}

using DrawingItem = std::variant<Shape, Label>;

template <class Io>
void tell(Io& io, Part<Io, DrawingItem>& item)
{
    tell_one(io, item);
}

template <class Io>
void tell(Io& io, Part<Io, Drawing>& drawing)
{
    all(io, drawing.width, drawing.height, drawing.items, drawing.description);
}

template <class Io>
void tell(Io& io, Part<Io, Graphic>& graphic)
{
    tell_owned<Drawing>(io, graphic.drawing);
}

template <class Io>
void tell(Io& io, Part<Io, Frame>& frame)
{
    all(io, frame.children);
}

template <class Io>
void tell(Io& io, Part<Io, Element>& element)
{
    all(io, element.place, element.style, element.source, element.begins_band);
    tell_one(io, element.content);
}

}  // namespace

uint32_t PictureNumbers::of(const Picture& picture)
{
    if (!picture) return 0;
    const auto [known, is_new] = numbers_.try_emplace(picture.get(), static_cast<uint32_t>(pictures_.size()));
    if (is_new) pictures_.push_back(picture);
    return known->second;
}

void put_element(std::string& bytes, const Element& element, PictureNumbers& pictures)
{
    Writer writer(bytes, pictures);
    tell(writer, element);
}

Element take_element(std::string_view& bytes, const PictureNumbers& pictures)
{
    Reader reader(bytes, pictures);
    Element element;
    tell(reader, element);
    return element;
}

}  // namespace velora::engine
