#include "engine/text/markup.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <vector>

#include "engine/page/color_text.h"
#include "values/characters.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

/// What the tags around a place in the text say.
struct Look {
    Font font;
    Color fore;
    std::optional<Color> back;
    TextRun::Script script = TextRun::Script::Normal;
    std::string link;
    bool operator==(const Look&) const = default;
};

struct Attribute {
    std::string name, value;
};

struct Tag {
    std::string name;  ///< lower case
    std::vector<Attribute> attributes;
    bool closing = false, empty = false;
    size_t size = 0;  ///< bytes from "<" to ">"
};

std::string unescaped(std::string_view text);

/// Reads attributes up to the end of the tag's text. None when they are not well formed.
std::optional<std::vector<Attribute>> read_attributes(std::string_view text)
{
    std::vector<Attribute> attributes;
    for (size_t at = 0; at < text.size();) {
        while (at < text.size() && is_blank(text[at])) ++at;
        if (at == text.size()) break;
        const size_t equals = text.find('=', at);
        if (equals == std::string_view::npos || equals + 1 >= text.size()) return std::nullopt;
        const char quote = text[equals + 1];
        const size_t close = quote == '"' || quote == '\'' ? text.find(quote, equals + 2) : std::string_view::npos;
        if (close == std::string_view::npos) return std::nullopt;
        attributes.push_back({lower_ascii(trimmed(text.substr(at, equals - at))),
                              unescaped(text.substr(equals + 2, close - equals - 2))});
        at = close + 1;
    }
    return attributes;
}

/// The tag at the start of the text, or none when there is no well-formed one.
std::optional<Tag> read_tag(std::string_view text)
{
    size_t close = 1;
    for (char quote = 0; close < text.size() && (quote != 0 || text[close] != '>'); ++close) {
        const char c = text[close];
        if (quote != 0 ? c == quote : c == '"' || c == '\'') quote = quote != 0 ? 0 : c;
    }
    if (close >= text.size()) return std::nullopt;
    Tag tag;
    tag.size = close + 1;
    std::string_view inner = text.substr(1, close - 1);
    if (inner.starts_with('/')) {
        tag.closing = true;
        inner.remove_prefix(1);
    } else if (inner.ends_with('/')) {
        tag.empty = true;
        inner.remove_suffix(1);
    }
    const size_t name_end = std::min(inner.find_first_of(" \t\r\n"), inner.size());
    tag.name = lower_ascii(inner.substr(0, name_end));
    const auto attributes = read_attributes(inner.substr(name_end));
    if (tag.name.empty() || !attributes) return std::nullopt;
    tag.attributes = *attributes;
    return tag;
}

std::optional<char32_t> numeric_entity(std::string_view name)
{
    const int base = name.starts_with('x') || name.starts_with('X') ? 16 : 10;
    const std::string_view digits = base == 16 ? name.substr(1) : name;
    uint32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    const bool valid = whole && number > 0 && is_character(number);
    return valid ? std::optional<char32_t>(number) : std::nullopt;
}

std::optional<char32_t> entity(std::string_view name)
{
    struct Named {
        std::string_view name;
        char32_t character;
    };
    static constexpr std::array kNamed = {Named{"amp", '&'},       Named{"lt", '<'},       Named{"gt", '>'},
                                          Named{"quot", '"'},      Named{"apos", '\''},    Named{"nbsp", 0xA0},
                                          Named{"euro", 0x20AC},   Named{"copy", 0xA9},    Named{"reg", 0xAE},
                                          Named{"ndash", 0x2013},  Named{"mdash", 0x2014}, Named{"deg", 0xB0},
                                          Named{"hellip", 0x2026}, Named{"bull", 0x2022},  Named{"trade", 0x2122}};
    if (name.starts_with('#')) return numeric_entity(name.substr(1));
    for (const Named& known : kNamed) {
        if (known.name == name) return known.character;
    }
    return std::nullopt;
}

/// Appends what stands at `at`, an entity as its character, and tells how many bytes it took.
size_t append_unescaped(std::string_view text, size_t at, std::string& plain)
{
    const size_t semicolon = text[at] == '&' ? text.substr(at, 12).find(';') : std::string_view::npos;
    const auto character =
        semicolon == std::string_view::npos ? std::optional<char32_t>() : entity(text.substr(at + 1, semicolon - 1));
    if (!character) {
        plain += text[at];
        return 1;
    }
    append_utf8(plain, *character);
    return semicolon + 1;
}

std::string unescaped(std::string_view text)
{
    std::string plain;
    for (size_t at = 0; at < text.size();) at += append_unescaped(text, at, plain);
    return plain;
}

void set_size(Look& look, std::string_view text)
{
    float size = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), size);
    if (error == std::errc() && size > 0 && size < 1000) look.font.size = size;
}

/// The size of HTML's `font`: a step from 1 to 7, or as many steps from the fourth as a signed number says.
void set_step(Look& look, std::string_view text)
{
    constexpr std::array<float, 7> kSteps{8, 10, 12, 14, 18, 24, 36};
    const bool is_signed = text.starts_with('+') || text.starts_with('-');
    int step = 0;
    const std::string_view digits = text.substr(text.starts_with('+') ? 1 : 0);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), step);
    if (error != std::errc() || end != digits.data() + digits.size()) return;
    step = std::clamp(step, -7, 7) + (is_signed ? 4 : 0);
    look.font.size = kSteps.at(static_cast<size_t>(std::clamp(step, 1, 7) - 1));
}

void apply_attribute(Look& look, const std::string& name, const std::string& value)
{
    const bool yes = value == "true";
    if (name == "fontname" || name == "face") look.font.family = value;
    if (name == "size" || name == "fontsize") set_size(look, value);
    if (name == "isbold" || name == "bold") look.font.bold = yes;
    if (name == "isitalic" || name == "italic") look.font.italic = yes;
    if (name == "isunderline" || name == "underline") look.font.underline = yes;
    if (name == "isstrikethrough" || name == "strikethrough") look.font.strike_through = yes;
    if (name == "forecolor" || name == "color") look.fore = color_from_text(value).value_or(look.fore);
    if (name == "backcolor") look.back = color_from_text(value);
    if (name == "href") look.link = value;
}

/// Applies a "name: value; name: value" list.
void apply_css(Look& look, std::string_view css)
{
    for (size_t at = 0; at < css.size();) {
        const size_t end = std::min(css.find(';', at), css.size());
        const std::string_view rule = css.substr(at, end - at);
        const size_t colon = rule.find(':');
        at = end + 1;
        if (colon == std::string_view::npos) continue;
        const std::string name = lower_ascii(trimmed(rule.substr(0, colon)));
        const std::string value(trimmed(rule.substr(colon + 1)));
        if (name == "color") look.fore = color_from_text(value).value_or(look.fore);
        if (name == "background-color") look.back = color_from_text(value);
        if (name == "font-family") look.font.family = value;
        if (name == "font-size") set_size(look, value);
        if (name == "font-weight") look.font.bold = value == "bold" || value == "700";
        if (name == "font-style") look.font.italic = value == "italic";
        if (name == "text-decoration") look.font.underline = value == "underline";
    }
}

struct InlineTag {
    std::string_view name;
    void (*apply)(Look&);
};

// clang-format off
constexpr std::array kInline = {
    InlineTag{"b",      [](Look& look) { look.font.bold = true; }},
    InlineTag{"strong", [](Look& look) { look.font.bold = true; }},
    InlineTag{"i",      [](Look& look) { look.font.italic = true; }},
    InlineTag{"em",     [](Look& look) { look.font.italic = true; }},
    InlineTag{"u",      [](Look& look) { look.font.underline = true; }},
    InlineTag{"s",      [](Look& look) { look.font.strike_through = true; }},
    InlineTag{"strike", [](Look& look) { look.font.strike_through = true; }},
    InlineTag{"sup",    [](Look& look) { look.script = TextRun::Script::Super; }},
    InlineTag{"sub",    [](Look& look) { look.script = TextRun::Script::Sub; }},
    InlineTag{"a",      [](Look& look) { look.font.underline = true; }},
    InlineTag{"style",  [](Look&) {}},
    InlineTag{"font",   [](Look&) {}},
    InlineTag{"span",   [](Look&) {}},
};
// clang-format on
constexpr std::array<std::string_view, 11> kBlocks = {"p", "div", "ul", "ol", "li", "h1", "h2", "h3", "h4", "h5", "h6"};

class Parser {
public:
    Parser(std::string_view marked, Markup markup, const Style& style, std::vector<TextRun>& runs)
        : marked_(marked), html_(markup == Markup::Html), base_{style.font, style.fore, {}, {}, {}}, runs_(runs)
    {
        open_.push_back({"", base_});
    }

    /// False when the markup is not well formed.
    bool parse()
    {
        for (size_t at = 0; at < marked_.size();) {
            if (marked_[at] != '<') {
                at += take_character(at);
                continue;
            }
            const auto tag = read_tag(marked_.substr(at));
            if (!tag || !take_tag(*tag)) return false;
            at += tag->size;
        }
        close_run();
        return html_ || open_.size() == 1;
    }

    std::string plain;

private:
    struct Open {
        std::string name;
        Look look;
    };

    size_t take_character(size_t at)
    {
        if (html_ && is_blank(marked_[at])) {
            if (!plain.empty() && plain.back() != ' ' && plain.back() != '\n' && !feed_waits_) plain += ' ';
            return 1;
        }
        begin_line();
        return append_unescaped(marked_, at, plain);
    }

    bool take_tag(const Tag& tag)
    {
        if (tag.name == "br") {
            begin_line();
            if (!tag.closing) plain += '\n';
            return true;
        }
        if (std::ranges::find(kBlocks, tag.name) != kBlocks.end()) {
            take_block(tag);
            return true;
        }
        const auto* known = std::ranges::find(kInline, tag.name, &InlineTag::name);
        if (known == kInline.end()) return html_;
        close_run();
        return tag.closing ? close(tag.name) : open(tag, *known);
    }

    void take_block(const Tag& tag)
    {
        feed_waits_ = !plain.empty() && plain.back() != '\n';
        if (tag.name != "li" || tag.closing) return;
        begin_line();
        plain += "\u2022 ";
    }

    /// A block ends its line when something follows it.
    void begin_line()
    {
        if (feed_waits_) plain += '\n';
        feed_waits_ = false;
    }

    bool open(const Tag& tag, const InlineTag& known)
    {
        if (tag.empty) return true;
        begin_line();
        run_begin_ = static_cast<uint32_t>(plain.size());
        Look look = open_.back().look;
        known.apply(look);
        for (const Attribute& attribute : tag.attributes) {
            if (attribute.name == "style") {
                apply_css(look, attribute.value);
            } else if (html_ && tag.name == "font" && attribute.name == "size") {
                set_step(look, attribute.value);
            } else {
                apply_attribute(look, attribute.name, attribute.value);
            }
        }
        open_.push_back({tag.name, std::move(look)});
        return true;
    }

    bool close(const std::string& name)
    {
        if (open_.back().name != name || open_.size() == 1) return html_;
        open_.pop_back();
        return true;
    }

    /// Ends the run that the innermost open tag made; the base look needs none.
    void close_run()
    {
        const Look& look = open_.back().look;
        const auto end = static_cast<uint32_t>(plain.size());
        if (end > run_begin_ && !(look == base_)) {
            runs_.push_back({run_begin_, end, std::make_shared<const Font>(look.font), look.fore, look.back,
                             look.script, look.link});
        }
        run_begin_ = end;
    }

    std::string_view marked_;
    bool html_;
    Look base_;
    std::vector<TextRun>& runs_;
    std::vector<Open> open_;
    uint32_t run_begin_ = 0;
    bool feed_waits_ = false;
};

}  // namespace

std::string plain_text_of(std::string_view marked, Markup markup, const Style& style, std::vector<TextRun>& runs)
{
    runs.clear();
    if (markup == Markup::None) return std::string(marked);
    Parser parser(marked, markup, style, runs);
    if (parser.parse()) return std::move(parser.plain);
    runs.clear();
    return std::string(marked);
}

}  // namespace velora::engine
