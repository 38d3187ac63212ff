#include "engine/export/sample_quote.h"

namespace velora::engine {
namespace {

// A picture of 4 by 2 pixels: red and blue halves.
constexpr unsigned char kLogo[] = {0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49,
                                   0x48, 0x44, 0x52, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 0x02, 0x08, 0x02,
                                   0x00, 0x00, 0x00, 0xf0, 0xca, 0xea, 0x34, 0x00, 0x00, 0x00, 0x15, 0x49, 0x44,
                                   0x41, 0x54, 0x78, 0xda, 0x63, 0x38, 0xa1, 0xa0, 0x00, 0x44, 0x0a, 0x0e, 0x07,
                                   0x80, 0x88, 0x01, 0x99, 0x03, 0x00, 0x6f, 0x3a, 0x08, 0xa1, 0xaf, 0xce, 0x3d,
                                   0x01, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};

struct Styles {
    explicit Styles(StyleSheet& sheet) : sheet_(sheet) {}

    const Style* plain(HorizontalAlign align = HorizontalAlign::Left, std::string pattern = {})
    {
        Style style;
        style.font.size = 9;
        style.horizontal = align;
        style.pattern = std::move(pattern);
        return sheet_.intern(style);
    }
    const Style* with(auto&& change)
    {
        Style style;
        style.font.size = 9;
        change(style);
        return sheet_.intern(style);
    }

private:
    StyleSheet& sheet_;
};

Element lines_element(const Place& place, const Style* style, const std::vector<std::string>& lines)
{
    Element element{place, style, 0, false, Text{}};
    auto& text = std::get<Text>(element.content);
    const float height = style->font.size * 1.1640625F;
    for (const std::string& line : lines) {
        const auto begin = static_cast<uint32_t>(text.text.size());
        text.text += line;
        const auto end = static_cast<uint32_t>(text.text.size());
        text.text += ' ';
        text.details().lines.push_back({.begin = begin,
                                        .end = end,
                                        .width = static_cast<float>(place.width) - 5,
                                        .ascent = height * 0.8F,
                                        .height = height,
                                        .indent = 0,
                                        .ends_paragraph = &line == &lines.back()});
    }
    text.text.pop_back();
    text.text_height = height * static_cast<float>(lines.size());
    return element;
}

void add_letterhead(Page& page, Styles& styles)
{
    const Style* logo = styles.with([](Style& style) { style.scale = ScaleImage::FillFrame; });
    page.elements.push_back({{40, 36, 80, 40},
                             logo,
                             0,
                             false,
                             Image{std::make_shared<ImageData>(ImageData{
                                       std::string(reinterpret_cast<const char*>(kLogo), sizeof kLogo), "logo.png"}),
                                   {},
                                   {}}});
    const Style* company = styles.with([](Style& style) {
        style.font.size = 16;
        style.font.bold = true;
        style.fore = {0x1F, 0x3A, 0x5F};
        style.vertical = VerticalAlign::Middle;
    });
    page.elements.push_back(text_element({130, 36, 250, 24}, company, "Müller & Söhne <Ltd>"));
    page.elements.push_back(text_element({130, 62, 250, 12}, styles.plain(), "12 Harbour Road, Łódź · 中文 · Straße"));
    const Style* address = styles.with([](Style& style) {
        style.font.size = 9;
        style.horizontal = HorizontalAlign::Right;
    });
    Element link = text_element({400, 36, 155, 12}, address, "www.example.com");
    std::get<Text>(link.content).details().link = {
        Link::Kind::Reference, "https://www.example.com/?a=1&b=2", {}, 0, {}};
    page.elements.push_back(std::move(link));
    page.elements.push_back(text_element({400, 50, 100, 12}, address, "Date"));
    page.elements.push_back(text_element({500, 50, 55, 12}, styles.plain(HorizontalAlign::Right, "dd/MM/yyyy"),
                                         "07/03/2026", *DateTime::from_ymd(2026, 3, 7)));
    const Style* rule = styles.with([](Style& style) { style.pen = {1, LineStyle::Solid, {0x1F, 0x3A, 0x5F}}; });
    page.elements.push_back({{40, 84, 515, 1}, rule, 0, false, Line{}});
}

void add_heads(Page& page, Styles& styles)
{
    const auto head = [&](HorizontalAlign align) {
        return styles.with([&](Style& style) {
            style.font.bold = true;
            style.horizontal = align;
            style.vertical = VerticalAlign::Middle;
            style.opaque = true;
            style.back = {0xE4, 0xEA, 0xF2};
            style.box.left_padding = style.box.right_padding = 2;
            style.box.bottom = {0.5F, LineStyle::Solid, kBlack};
        });
    };
    page.elements.push_back(text_element({40, 100, 70, 18}, head(HorizontalAlign::Left), "Item"));
    page.elements.push_back(text_element({110, 100, 235, 18}, head(HorizontalAlign::Left), "Description"));
    page.elements.push_back(text_element({345, 100, 60, 18}, head(HorizontalAlign::Right), "Quantity"));
    page.elements.push_back(text_element({405, 100, 70, 18}, head(HorizontalAlign::Right), "Price"));
    page.elements.push_back(text_element({475, 100, 80, 18}, head(HorizontalAlign::Right), "Amount"));
}

void add_lines(Page& page, Styles& styles)
{
    const Style* left = styles.plain();
    const Style* quantity = styles.plain(HorizontalAlign::Right, "#,##0.####");
    const Style* price = styles.plain(HorizontalAlign::Right, "#,##0.00");
    int32_t y = 122;
    for (int line = 1; line <= 18; ++line) {
        const bool wrapped = line % 4 == 0;
        page.elements.push_back(text_element({40, y, 68, 12}, left, "00" + std::to_string(4000 + line)));
        const Place description{110, y, 230, wrapped ? 32 : 12};
        page.elements.push_back(wrapped ? lines_element(description, left,
                                                        {"Adjustable bracket, zinc plated, with",
                                                         "fastening set and a description that", "wraps"})
                                        : text_element(description, left, "Steel pipe No. " + std::to_string(line)));
        page.elements.push_back(text_element({345, y, 58, 12}, quantity, line % 3 == 0 ? "2.5" : "12",
                                             line % 3 == 0 ? Value(2.5) : Value(12)));
        page.elements.push_back(text_element({405, y, 68, 12}, price, "1,234.50", 1234.5));
        page.elements.push_back(text_element({475, y, 80, 12}, price, "-14,814.00", -14814.0));
        y += wrapped ? 36 : 16;
    }
}

void add_totals(Page& page, Styles& styles)
{
    const Style* box = styles.with([](Style& style) {
        style.pen = {1, LineStyle::Solid, kBlack};
        style.opaque = true;
        style.back = {0xF6, 0xF6, 0xE8};
    });
    page.elements.push_back({{375, 560, 180, 52}, box, 0, false, Rectangle{}});
    const Style* label = styles.plain();
    const Style* money = styles.plain(HorizontalAlign::Right, "$#,##0.00");
    const Style* percent = styles.plain(HorizontalAlign::Right, "0.0%");
    page.elements.push_back(text_element({380, 564, 80, 12}, label, "Subtotal"));
    page.elements.push_back(text_element({475, 564, 76, 12}, money, "$266,652.00", 266652.0));
    page.elements.push_back(text_element({380, 580, 80, 12}, label, "Tax"));
    page.elements.push_back(text_element({475, 580, 76, 12}, percent, "7.5%", 0.075));
    const Style* total = styles.with([](Style& style) {
        style.font.bold = true;
        style.horizontal = HorizontalAlign::Right;
        style.pattern = "$#,##0.00";
    });
    page.elements.push_back(text_element({475, 596, 76, 12}, total, "$286,650.90", 286650.9));
}

void add_remarks(Page& page, Styles& styles, int number, int pages)
{
    const Style* justified = styles.with([](Style& style) { style.horizontal = HorizontalAlign::Justified; });
    page.elements.push_back(lines_element(
        {40, 560, 300, 43}, justified,
        {"Delivery is free within the country. Prices hold for thirty",
         "days from the date above; they contain no duties and", "no insurance of the goods on their way to you."}));
    Element marked = text_element({40, 610, 300, 12}, styles.plain(), "Terms: net 30 days, bold part");
    auto& text = std::get<Text>(marked.content);
    auto bold = std::make_shared<Font>(styles.plain()->font);
    bold->bold = true;
    text.details().runs = {
        {.begin = 20, .end = 29, .font = bold, .fore = {0xC0, 0, 0}, .back = {}, .script = {}, .link = {}}};
    page.elements.push_back(std::move(marked));
    const Style* aside = styles.with([](Style& style) {
        style.rotation = Rotation::Left;
        style.horizontal = HorizontalAlign::Center;
        style.vertical = VerticalAlign::Middle;
        style.fore = {0x80, 0x80, 0x80};
    });
    page.elements.push_back(text_element({14, 300, 16, 200}, aside, "turned aside"));
    page.elements.push_back(
        {{40, 640, 60, 30}, styles.with([](Style& style) { style.pen.width = 2; }), 0, false, Ellipse{}});
    page.elements.push_back({{110, 640, 60, 30}, styles.plain(), 0, false, Line{}});
    const Style* framed = styles.with([](Style& style) {
        style.box.top = style.box.left = style.box.bottom = style.box.right = {0.5F, LineStyle::Dashed, {0, 0x60, 0}};
    });
    Frame frame;
    frame.children.push_back(text_element({4, 4, 100, 12}, styles.plain(), "inside a frame"));
    page.elements.push_back({{190, 640, 120, 30}, framed, 0, false, std::move(frame)});
    auto drawing = std::make_shared<Drawing>();
    drawing->width = 180;
    drawing->height = 80;
    drawing->items = {Shape{.path = {Point{50, 40}, Shape::Arc{{50, 40}, 30, 0, 4}},
                            .closed = true,
                            .filled = true,
                            .fill = {0x40, 0x70, 0xA0},
                            .stroke = {1, LineStyle::Solid, kBlack}},
                      Label{{100, 40}, "Łódź 67 %", styles.plain()->font, kBlack, HorizontalAlign::Left, 0.3F}};
    page.elements.push_back({{340, 640, 180, 80}, styles.plain(), 0, false, Graphic{std::move(drawing)}});
    page.elements.push_back(
        {{40, 800, 515, 1}, styles.with([](Style& style) { style.pen.width = 0.5F; }), 0, false, Line{}});
    page.elements.push_back(text_element({40, 804, 200, 12}, styles.plain(), "Quote Q-1001"));
    page.elements.push_back(text_element({455, 804, 100, 12}, styles.plain(HorizontalAlign::Right),
                                         "Page " + std::to_string(number) + " of " + std::to_string(pages)));
}

}  // namespace

Element text_element(const Place& place, const Style* style, std::string text, Value value)
{
    Element element{place, style, 0, false, Text{}};
    auto& content = std::get<Text>(element.content);
    content.text = std::move(text);
    content.text_height = style->font.size * 1.1640625F;
    if (!value.is_null()) content.details().value = std::move(value);
    return element;
}

PageList sample_quote(int pages)
{
    PageList list;
    list.document.name = "Quote";
    list.document.title = "Quote Q-1001";
    list.document.author = "Müller & Söhne";
    Styles styles(*list.document.styles);
    for (int number = 1; number <= pages; ++number) {
        Page page;
        add_letterhead(page, styles);
        add_heads(page, styles);
        add_lines(page, styles);
        add_totals(page, styles);
        add_remarks(page, styles, number, pages);
        list.pages.push_back(std::move(page));
    }
    return list;
}

}  // namespace velora::engine
