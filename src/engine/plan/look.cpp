#include "engine/plan/look.h"

#include <algorithm>

namespace velora::engine {

namespace {

template <class T, class U>
void take(T& target, const std::optional<U>& source)
{
    if (source) target = static_cast<T>(*source);
}

/// The pens and paddings while layers are merged: a side's own value wins over that of all sides.
struct OpenPen {
    std::optional<float> width;
    std::optional<LineStyle> style;
    std::optional<Color> color;

    void lay(const model::PenAttributes& pen)
    {
        if (pen.width) width = pen.width;
        if (pen.style) style = pen.style;
        if (pen.color) color = pen.color;
    }
    [[nodiscard]] Pen closed(const OpenPen& all, float default_width, Color fore) const
    {
        return {width.value_or(all.width.value_or(default_width)), style.value_or(all.style.value_or(LineStyle::Solid)),
                color.value_or(all.color.value_or(fore))};
    }
};

class Merge {
public:
    explicit Merge(LookKind kind) : kind_(kind) { look_.style.opaque = kind == LookKind::Graphic; }

    void lay(const model::StyleAttributes& a)
    {
        Style& style = look_.style;
        if (a.mode) style.opaque = *a.mode == model::Mode::Opaque;
        take(style.fore, a.forecolor);
        take(style.back, a.backcolor);
        take(style.radius, a.radius);
        take(style.scale, a.scale_image);
        take(style.rotation, a.rotation);
        take(style.pattern, a.pattern);
        take(look_.blank_when_null, a.blank_when_null);
        take(look_.markup, a.markup);
        const bool image = kind_ == LookKind::Image;
        take(style.horizontal, image ? a.image_align : a.text_align);
        take(style.vertical, image ? a.image_valign : a.text_valign);
        lay(a.font);
        lay(a.paragraph);
        lay(a.box);
        pen_.lay(a.pen);
    }

    Look finish()
    {
        Style& style = look_.style;
        style.pen = pen_.closed({}, kind_ == LookKind::Graphic ? 1.0f : 0.0f, style.fore);
        style.box.top = top_.closed(all_, 0, style.fore);
        style.box.left = left_.closed(all_, 0, style.fore);
        style.box.bottom = bottom_.closed(all_, 0, style.fore);
        style.box.right = right_.closed(all_, 0, style.fore);
        const auto padding = [&](const std::optional<int>& side) {
            return static_cast<int16_t>(std::clamp(side.value_or(padding_.value_or(0)), 0, 10000));
        };
        style.box.top_padding = padding(top_padding_);
        style.box.left_padding = padding(left_padding_);
        style.box.bottom_padding = padding(bottom_padding_);
        style.box.right_padding = padding(right_padding_);
        return std::move(look_);
    }

private:
    void lay(const model::FontAttributes& font)
    {
        Font& target = look_.style.font;
        take(target.family, font.name);
        take(target.size, font.size);
        take(target.bold, font.bold);
        take(target.italic, font.italic);
        take(target.underline, font.underline);
        take(target.strike_through, font.strike_through);
    }

    void lay(const model::ParagraphAttributes& p)
    {
        Paragraph& target = look_.style.paragraph;
        take(target.spacing, p.line_spacing);
        take(target.spacing_size, p.line_spacing_size);
        take(target.first_line_indent, p.first_line_indent);
        take(target.left_indent, p.left_indent);
        take(target.right_indent, p.right_indent);
        take(target.spacing_before, p.spacing_before);
        take(target.spacing_after, p.spacing_after);
        take(target.tab_width, p.tab_stop_width);
    }

    void lay(const model::BoxAttributes& box)
    {
        all_.lay(box.pen);
        top_.lay(box.top);
        left_.lay(box.left);
        bottom_.lay(box.bottom);
        right_.lay(box.right);
        if (box.padding) padding_ = box.padding;
        if (box.top_padding) top_padding_ = box.top_padding;
        if (box.left_padding) left_padding_ = box.left_padding;
        if (box.bottom_padding) bottom_padding_ = box.bottom_padding;
        if (box.right_padding) right_padding_ = box.right_padding;
    }

    LookKind kind_;
    Look look_;
    OpenPen pen_, all_, top_, left_, bottom_, right_;
    std::optional<int> padding_, top_padding_, left_padding_, bottom_padding_, right_padding_;
};

using ByName = std::map<std::string_view, const model::Style*>;

/// A style and those that it inherits from, itself first.
std::vector<const model::Style*> line_of(const model::Style& style, const ByName& styles)
{
    constexpr size_t kLongest = 100;  // each style holds the layers of all in its line
    std::vector<const model::Style*> line;
    for (const auto* at = &style; at != nullptr;) {
        if (line.size() == kLongest) {
            throw DefinitionError(
                style.place, "style",
                "style '" + style.name + "' inherits from more than " + std::to_string(kLongest - 1) + " others");
        }
        if (std::ranges::find(line, at) != line.end()) {
            throw DefinitionError(style.place, "style", "style '" + style.name + "' inherits from itself");
        }
        line.push_back(at);
        const auto parent = styles.find(at->parent);
        at = parent == styles.end() ? nullptr : parent->second;
    }
    return line;
}

/// Adds the layers of a style: its attributes, then its conditions, of which the first one wins.
void add_layers(const model::Style& style, const Names& names, StylePlan& plan)
{
    plan.layers.push_back({{}, &style.attributes});
    for (auto condition = style.conditions.rbegin(); condition != style.conditions.rend(); ++condition) {
        if (!condition->condition.present() || plan.conditions == 64) continue;
        auto holds =
            compile(condition->condition.text, names, condition->condition.place, "conditionalStyle of " + style.name);
        if (!holds) continue;
        plan.layers.push_back({std::move(holds), &condition->attributes});
        ++plan.conditions;
    }
}

}  // namespace

Look resolve_look(const StylePlan* plan, uint64_t holding, const model::StyleAttributes& own, LookKind kind)
{
    Merge merge(kind);
    if (plan) {
        for (const auto& layer : plan->layers) {
            const bool counts = !layer.condition || (holding & 1);
            if (layer.condition) holding >>= 1;
            if (counts) merge.lay(*layer.attributes);
        }
    }
    merge.lay(own);
    return merge.finish();
}

StylePlans::StylePlans(const model::Definition& definition, const Names& names)
{
    ByName styles;
    for (const auto& style : definition.styles) {
        styles[style.name] = &style;
    }
    std::vector<const model::Style*> usual;  // the default style and those that it inherits from
    for (const auto& style : definition.styles) {
        if (style.is_default) usual = line_of(*styles[style.name], styles);
    }
    for (const auto& style : definition.styles) {
        StylePlan& plan = plans_[style.name];
        if (!plan.layers.empty()) continue;
        plan.name = style.name;
        const auto line = line_of(*styles[style.name], styles);
        if (std::ranges::find(usual, line.back()) == usual.end()) {
            // a style without a parent stands upon the default style, but for its conditions
            for (auto base = usual.rbegin(); base != usual.rend(); ++base) {
                plan.layers.push_back({{}, &(*base)->attributes});
            }
        }
        for (auto base = line.rbegin(); base != line.rend(); ++base) add_layers(**base, names, plan);
        if (style.is_default) default_ = &plan;
    }
}

const StylePlan* StylePlans::find(std::string_view name) const
{
    if (name.empty()) return default_;
    const auto found = plans_.find(name);
    return found == plans_.end() ? nullptr : &found->second;
}

}  // namespace velora::engine
