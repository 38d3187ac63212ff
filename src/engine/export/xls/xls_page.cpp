#include "engine/export/xls/xls_page.h"

#include <unicode/dcfmtsym.h>

#include <cmath>

#include "engine/export/common/drawing_words.h"
#include "engine/export/common/link_address.h"
#include "engine/export/common/page_walk.h"
#include "engine/export/xls/xls_pattern.h"
#include "engine/expression/formatter.h"

namespace velora::engine {
namespace {

constexpr int32_t kRowTolerance = 3;
constexpr int32_t kTallestRow = 400;    ///< points; the format ends at 409
constexpr int32_t kOutlineReach = 6;    ///< how far rules and rectangles may move to lie on a line of the texts
constexpr int32_t kReachBelow = 60;     ///< how far a text's open end may move
constexpr int32_t kFirstSureDate = 61;  ///< spreadsheets disagree on days before March 1900
constexpr double kLargestExact = 1e15;  ///< numbers keep 15 digits

GridEdge kept(int32_t at)
{
    return {at, at, at};
}
GridEdge near(int32_t at)
{
    return {at, at - kOutlineReach, at + kOutlineReach};
}

bool has_border(const Box& box)
{
    return box.top.width > 0 || box.left.width > 0 || box.bottom.width > 0 || box.right.width > 0;
}

/// Where a text may be moved to, by its neighbours.
struct Neighbours {
    int32_t left, right, above, below;
};

/// Finds for a text the nearest things on all four sides.
class Surroundings {
public:
    void add(const Place& place)
    {
        places_.push_back(place);
        left_ = std::min(left_, place.x);
        right_ = std::max(right_, place.x + place.width);
        tallest_ = std::max(tallest_, place.height);
    }
    void sort()
    {
        std::sort(places_.begin(), places_.end(), [](const Place& a, const Place& b) { return a.y < b.y; });
    }
    [[nodiscard]] Neighbours of(const Place& place) const;

private:
    std::vector<Place> places_;
    int32_t left_ = INT32_MAX, right_ = INT32_MIN, tallest_ = 0;
};

Neighbours Surroundings::of(const Place& place) const
{
    const int32_t right = place.x + place.width, bottom = place.y + place.height;
    Neighbours found{std::min(left_, place.x), std::max(right_, right), place.y - kReachBelow, bottom + kReachBelow};
    const auto first = std::lower_bound(places_.begin(), places_.end(), place.y - kReachBelow - tallest_,
                                        [](const Place& each, int32_t y) { return each.y < y; });
    for (auto each = first; each != places_.end() && each->y <= bottom + kReachBelow; ++each) {
        const int32_t each_right = each->x + each->width, each_bottom = each->y + each->height;
        if (each->y < bottom && each_bottom > place.y) {
            if (each->x >= right) found.right = std::min(found.right, each->x);
            if (each_right <= place.x) found.left = std::max(found.left, each_right);
        }
        if (each->x < right && each_right > place.x) {
            if (each->y >= bottom) found.below = std::min(found.below, each->y);
            if (each_bottom <= place.y) found.above = std::max(found.above, each_bottom);
        }
    }
    return found;
}

bool shows_anything(const Element& element)
{
    const auto* text = std::get_if<Text>(&element.content);
    return text != nullptr && !text->shown().empty();
}

bool wraps(const Text& text)
{
    return (text.detail && text.detail->lines.size() > 1) || text.shown().find('\n') != std::string_view::npos;
}

bool is_marked(const Text& text)
{
    return text.detail && !text.detail->runs.empty();
}

uint8_t horizontal_of(HorizontalAlign align)
{
    constexpr uint8_t kLeft = 1, kCenter = 2, kRight = 3, kJustify = 5;
    switch (align) {
        case HorizontalAlign::Center:
            return kCenter;
        case HorizontalAlign::Right:
            return kRight;
        case HorizontalAlign::Justified:
            return kJustify;
        case HorizontalAlign::Left:
            break;
    }
    return kLeft;
}

uint8_t rotation_of(Rotation rotation)
{
    if (rotation == Rotation::Left) return 90;
    return rotation == Rotation::Right ? 180 : 0;
}

std::optional<double> number_in(const Value& value)
{
    switch (value.type()) {
        case Value::Type::Integer:
        case Value::Type::Single:
        case Value::Type::Double:
        case Value::Type::Fixed: {
            const double number = to_number(value);
            return std::abs(number) < kLargestExact ? std::optional(number) : std::nullopt;
        }
        case Value::Type::Date: {
            const auto& date = *value.get_if<DateTime>();
            if (date.serial_day() < kFirstSureDate) return std::nullopt;
            return date.serial_day() + date.second_of_day() / 86400.0;
        }
        default:
            return std::nullopt;
    }
}

}  // namespace

uint32_t XlsSpans::add(const GridEdge& left, const GridEdge& right)
{
    const auto [place, is_new] = numbers_.try_emplace({left, right}, static_cast<uint32_t>(spans_.size()));
    if (is_new) spans_.push_back(&place->first);
    return place->second;
}

/// Makes the items of one page.
class XlsPageBuilder {
public:
    XlsPageBuilder(XlsPages& pages, const Page& page) : to_(pages), page_(page) {}

    XlsPage build()
    {
        walk_elements(page_.elements, [&](const Element& element, const Place& place) { note(element, place); });
        surroundings_.sort();
        walk_elements(page_.elements, [&](const Element& element, const Place& place) { take(element, place); });
        rows_.solve(SIZE_MAX);
        XlsPage page;
        page.row_lines = rows_.lines();
        page.items.reserve(pending_.size());
        for (const Pending& each : pending_) page.items.push_back(settled(each));
        for (auto& [link, item] : links_) {
            const XlsItem& linked = page.items[item];
            page.links.push_back({linked.span, linked.top, linked.bottom, std::move(link)});
        }
        page.wrapped = std::move(wrapped_);
        page.pictures = std::move(pictures_);
        return page;
    }

private:
    struct Pending {
        XlsItem item;
        GridEdge top, bottom;
    };

    /// What stands in the way of a text that would like more room.
    void note(const Element& element, const Place& place)
    {
        if (shows_anything(element) || std::holds_alternative<Line>(element.content)) surroundings_.add(place);
    }

    void take(const Element& element, const Place& place)
    {
        if (std::holds_alternative<Text>(element.content)) return take_text(element, place);
        if (std::holds_alternative<Line>(element.content)) return take_line(*element.style, place);
        if (const auto* image = std::get_if<Image>(&element.content)) {
            if (image->data && shown_picture(image->data->bytes)) {
                pictures_.push_back({fitted_picture(*element.style, place, *image->data), image->data, {}});
            }
        }
        if (const auto* graphic = std::get_if<Graphic>(&element.content)) {
            auto picture = graphic->drawing ? to_.drawings_.picture(*graphic->drawing, *element.style) : nullptr;
            if (picture) pictures_.push_back({box_of(place), std::move(picture), drawing_words(*graphic->drawing)});
        }
        const bool closed = std::holds_alternative<Rectangle>(element.content);
        take_outline(*element.style, place, closed);
    }

    void take_text(const Element& element, const Place& place);
    void take_line(const Style& style, const Place& place);
    void take_outline(const Style& style, const Place& place, bool by_pen);
    XlsItem content_of(const Text& text, const Style& style);
    static XlsItem number_item(double number, uint32_t looks)
    {
        XlsItem item;
        item.kind = XlsItem::Kind::Number;
        item.looks = looks;
        item.number = number;
        return item;
    }
    std::vector<XlsTextPart> parts_of(const Text& text, const Style& style);
    uint32_t looks_of(const Style& style, uint16_t format, bool is_number, bool in_lines);
    uint16_t format_of(const Value& value, double number, const Style& style, std::string_view shown);
    XlsGround ground_of(const Style& style, bool by_pen);

    void add(XlsItem item, const GridEdge& left, const GridEdge& right, const GridEdge& top, const GridEdge& bottom)
    {
        item.span = to_.spans_.add(left, right);
        rows_.add(top);
        if (!(top == bottom)) rows_.add(bottom);
        pending_.push_back({item, top, bottom});
    }

    [[nodiscard]] XlsItem settled(const Pending& pending) const
    {
        XlsItem item = pending.item;
        item.top = rows_.line_of(pending.top);
        item.bottom = rows_.line_of(pending.bottom);
        return item;
    }

    XlsPages& to_;
    const Page& page_;
    Surroundings surroundings_;
    GridLines rows_{kRowTolerance, kTallestRow};
    std::vector<Pending> pending_;
    std::vector<std::pair<std::string, size_t>> links_;  ///< address and item
    std::vector<XlsWrapped> wrapped_;
    std::vector<XlsPicture> pictures_;
};

void XlsPageBuilder::take_text(const Element& element, const Place& place)
{
    const Style& style = *element.style;
    const auto& text = std::get<Text>(element.content);
    const bool grounded = style.opaque || has_border(style.box);
    if (text.shown().empty()) {
        if (grounded) take_outline(style, place, false);
        return;
    }
    // A side on which the text does not stand may move, unless a ground or border shows where the box ends.
    const Neighbours free = surroundings_.of(place);
    GridEdge left = kept(place.x), right = kept(place.x + place.width);
    GridEdge top = kept(place.y), bottom = kept(place.y + place.height);
    if (!grounded && style.rotation != Rotation::None) {
        left = near(left.at), right = near(right.at), top = near(top.at), bottom = near(bottom.at);
    } else if (!grounded) {
        if (style.horizontal == HorizontalAlign::Justified) right = near(right.at);
        if (style.horizontal == HorizontalAlign::Left) right.high = free.right;
        if (style.horizontal == HorizontalAlign::Right) left.low = free.left;
        if (style.vertical == VerticalAlign::Top) bottom.high = free.below;
        if (style.vertical == VerticalAlign::Bottom) top.low = free.above;
    }
    if (grounded) {
        XlsItem ground;
        ground.looks = to_.grounds_.add(ground_of(style, false));
        add(ground, left, right, top, bottom);
    }
    if (text.detail && text.detail->link.kind == Link::Kind::Reference) {
        const std::string_view address = safe_address(text.detail->link.target);
        if (!address.empty()) links_.emplace_back(address, pending_.size());
    }
    add(content_of(text, style), left, right, top, bottom);
}

XlsItem XlsPageBuilder::content_of(const Text& text, const Style& style)
{
    if (text.detail) {
        const Value& value = text.detail->value;
        if (const auto number = number_in(value)) {
            return number_item(*number, looks_of(style, format_of(value, *number, style, text.shown()), true, false));
        }
    }
    const bool in_lines = wraps(text);
    const bool may_be_amount = style.horizontal == HorizontalAlign::Right && !in_lines && !is_marked(text);
    const auto amount = may_be_amount ? written_amount(text.shown()) : std::nullopt;
    if (amount && !amount->open) {
        if (amount->decimal_mark == '.') ++to_.points_;
        if (amount->decimal_mark == ',') ++to_.commas_;
        return number_item(amount->value(), looks_of(style, to_.styles_.format(amount->format()), true, false));
    }
    XlsItem item;
    item.kind = XlsItem::Kind::Text;
    item.looks = looks_of(style, XlsStyles::kGeneral, false, in_lines);
    item.label.width = in_lines ? 0 : to_.measurer_.width(text.shown(), style.font);
    if (amount) {
        const uint32_t as_number = looks_of(style, XlsStyles::kGeneral, true, false);
        to_.open_amounts_.push_back(
            {to_.pages_.size(), pending_.size(), std::string(text.shown()), *amount, as_number});
        return item;
    }
    item.label.text = to_.strings_.add(text.shown(), parts_of(text, style));
    if (in_lines && style.rotation == Rotation::None) {
        wrapped_.push_back({static_cast<uint32_t>(pending_.size()), &style});
    }
    return item;
}

/// The marked-up parts with their fonts; what stands between them goes back to the cell's font.
std::vector<XlsTextPart> XlsPageBuilder::parts_of(const Text& text, const Style& style)
{
    std::vector<XlsTextPart> parts;
    if (!text.detail) return parts;
    const auto length = static_cast<uint32_t>(text.shown().size());
    for (const TextRun& run : text.detail->runs) {
        if (run.begin >= std::min(run.end, length)) continue;
        if (!parts.empty() && parts.back().begin == run.begin) parts.pop_back();
        parts.push_back({run.begin, to_.styles_.font(*run.font, run.fore)});
        if (run.end < length) parts.push_back({run.end, to_.styles_.font(style.font, style.fore)});
    }
    return parts;
}

uint16_t XlsPageBuilder::format_of(const Value& value, double number, const Style& style, std::string_view shown)
{
    if (value.type() == Value::Type::Date) {
        if (const auto format = to_.date_format(style.pattern)) return format;
        return number == std::floor(number) ? XlsStyles::kShortDate : XlsStyles::kShortDateTime;
    }
    const auto code = xls_number_format(style.pattern, number, shown);
    return code ? to_.styles_.format(*code) : XlsStyles::kGeneral;
}

uint32_t XlsPageBuilder::looks_of(const Style& style, uint16_t format, bool is_number, bool in_lines)
{
    XlsLooks looks;
    looks.font = to_.styles_.font(style.font, style.fore);
    looks.format = format;
    looks.horizontal = horizontal_of(style.horizontal);
    looks.vertical = static_cast<uint8_t>(style.vertical);
    looks.rotation = rotation_of(style.rotation);
    looks.wrap = in_lines;
    looks.shrink = is_number;
    return to_.looks_.add(looks);
}

XlsGround XlsPageBuilder::ground_of(const Style& style, bool by_pen)
{
    const Box& box = style.box;
    const auto border = [&](const Pen& side) { return to_.styles_.border(by_pen ? style.pen : side); };
    return {style.opaque ? to_.styles_.color(style.back) : uint8_t{0}, border(box.left), border(box.right),
            border(box.top), border(box.bottom)};
}

void XlsPageBuilder::take_outline(const Style& style, const Place& place, bool by_pen)
{
    const XlsGround ground = ground_of(style, by_pen);
    if (ground == XlsGround{}) return;
    XlsItem item;
    item.looks = to_.grounds_.add(ground);
    add(item, near(place.x), near(place.x + place.width), near(place.y), near(place.y + place.height));
}

void XlsPageBuilder::take_line(const Style& style, const Place& place)
{
    if (style.pen.width <= 0) return;
    XlsItem item;
    const XlsBorder border = to_.styles_.border(style.pen);
    const GridEdge left = near(place.x), right = near(place.x + place.width);
    const GridEdge top = near(place.y), bottom = near(place.y + place.height);
    switch (line_way(place)) {
        case LineWay::Level:
            item.kind = XlsItem::Kind::LevelRule;
            item.looks = to_.grounds_.add({0, {}, {}, border, {}});
            return add(item, left, right, top, top);
        case LineWay::Upright:
            item.kind = XlsItem::Kind::UprightRule;
            item.looks = to_.grounds_.add({0, border, {}, {}, {}});
            return add(item, left, left, top, bottom);
        case LineWay::Across:
            return;  // cells have no such border
    }
}

void XlsPages::add(const Page& page)
{
    pages_.push_back(XlsPageBuilder(*this, page).build());
}

namespace {

bool has_decimal_comma(const std::string& locale)
{
    UErrorCode error = U_ZERO_ERROR;
    const icu::DecimalFormatSymbols symbols(icu::Locale(locale.c_str()), error);
    return U_SUCCESS(error) && symbols.getConstSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol) == u",";
}

}  // namespace

/// 0 for a pattern that no workbook has.
uint16_t XlsPages::date_format(const std::string& pattern)
{
    const auto [place, is_new] = date_formats_.try_emplace(pattern, uint16_t{0});
    if (is_new) {
        const auto code = xls_date_format(letters_of_date_style(pattern, locale_).value_or(pattern));
        if (code) place->second = styles_.format(*code);
    }
    return place->second;
}

void XlsPages::settle_amounts()
{
    const bool undecided = points_ > 0 && commas_ > 0;
    for (const OpenAmount& open : open_amounts_) {
        XlsItem& item = pages_[open.page].items[open.item];
        if (undecided) {
            item.label.text = strings_.add(open.text);
            continue;
        }
        const bool comma = points_ + commas_ > 0 ? commas_ > 0 : has_decimal_comma(locale_);
        const WrittenAmount amount = open.amount.settled(comma ? ',' : '.');
        XlsLooks looks = looks_.at(open.number_looks);
        looks.format = styles_.format(amount.format());
        item.kind = XlsItem::Kind::Number;
        item.looks = looks_.add(looks);
        item.number = amount.value();
    }
    open_amounts_.clear();
}

}  // namespace velora::engine
