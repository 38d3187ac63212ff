#pragma once

#include <sstream>
#include <string>

#include "engine/definition/model.h"

namespace velora::engine::testing {

/// A definition as text, so that two forms of one definition can be compared and a difference can be seen.
class ModelText {
public:
    std::string of(const model::Definition& d)
    {
        const auto& p = d.page;
        out_ << "page " << p.width << 'x' << p.height << " margins " << p.left << ' ' << p.right << ' ' << p.top << ' '
             << p.bottom << " columns " << p.column_count << ' ' << p.column_width << ' ' << p.column_spacing
             << " order " << static_cast<int>(p.order) << " orientation " << static_cast<int>(p.orientation) << '\n';
        out_ << "no data " << (d.when_no_data ? static_cast<int>(*d.when_no_data) : -1) << " flags " << d.title_new_page
             << d.summary_new_page << d.summary_with_page_header_and_footer << d.float_column_footer
             << d.ignore_pagination << '\n';
        for (const auto& style : d.styles) add(style);
        add(d.data);
        for (const auto& group : d.groups) add(group);
        add("background", d.background);
        add("title", d.title);
        add("page header", d.page_header);
        add("column header", d.column_header);
        for (const auto& band : d.details) add("detail", std::optional(band));
        add("column footer", d.column_footer);
        add("page footer", d.page_footer);
        add("last page footer", d.last_page_footer);
        add("summary", d.summary);
        add("no data", d.no_data);
        return out_.str();
    }

private:
    template <class T>
    void opt(const char* name, const std::optional<T>& value)
    {
        if (!value) return;
        out_ << ' ' << name << '=';
        if constexpr (std::is_enum_v<T>) {
            out_ << static_cast<int>(*value);
        } else if constexpr (std::is_same_v<T, Color>) {
            out_ << int{value->red} << ',' << int{value->green} << ',' << int{value->blue};
        } else {
            out_ << *value;
        }
    }

    void add(const model::PenAttributes& pen, const char* name)
    {
        out_ << ' ' << name << '(';
        opt("width", pen.width);
        opt("style", pen.style);
        opt("color", pen.color);
        out_ << ')';
    }

    void add(const model::StyleAttributes& s)
    {
        opt("mode", s.mode);
        opt("fore", s.forecolor);
        opt("back", s.backcolor);
        opt("radius", s.radius);
        opt("align", s.text_align);
        opt("valign", s.text_valign);
        opt("image", s.image_align);
        opt("rotation", s.rotation);
        opt("pattern", s.pattern);
        opt("blank", s.blank_when_null);
        opt("markup", s.markup);
        opt("font", s.font.name);
        opt("size", s.font.size);
        opt("bold", s.font.bold);
        opt("italic", s.font.italic);
        opt("underline", s.font.underline);
        opt("spacing", s.paragraph.line_spacing);
        opt("indent", s.paragraph.first_line_indent);
        add(s.pen, "pen");
        opt("padding", s.box.padding);
        opt("left padding", s.box.left_padding);
        add(s.box.pen, "box");
        add(s.box.top, "top");
        add(s.box.bottom, "bottom");
    }

    void add(const model::Style& style)
    {
        out_ << "style " << style.name << " of " << style.parent << (style.is_default ? " default" : "");
        add(style.attributes);
        out_ << '\n';
        for (const auto& condition : style.conditions) {
            out_ << "  if " << condition.condition.text;
            add(condition.attributes);
            out_ << '\n';
        }
    }

    void add(const model::Dataset& data)
    {
        for (const auto& p : data.parameters) {
            out_ << "parameter " << p.name << ' ' << p.class_name << ' ' << p.for_prompting << ' '
                 << p.default_value.text << '\n';
        }
        for (const auto& f : data.fields)
            out_ << "field " << f.name << ' ' << f.class_name << ' ' << f.description << '\n';
        for (const auto& s : data.sort_fields) out_ << "sort " << s.name << ' ' << s.descending << '\n';
        for (const auto& v : data.variables) {
            out_ << "variable " << v.name << ' ' << v.class_name << ' ' << static_cast<int>(v.calculation) << ' '
                 << static_cast<int>(v.reset) << v.reset_group << ' ' << static_cast<int>(v.increment)
                 << v.increment_group << ' ' << v.expression.text << '|' << v.initial_value.text << '\n';
        }
        out_ << "query " << data.query.language << ' ' << data.query.text.text << " filter " << data.filter.text
             << '\n';
    }

    void add(const model::Group& g)
    {
        out_ << "group " << g.name << ' ' << g.expression.text << ' ' << g.start_new_page << g.start_new_column
             << g.reset_page_number << g.reprint_header_on_each_page << g.reprint_header_on_each_column
             << g.keep_together << g.prevent_orphan_footer << ' ' << g.min_height_to_start_new_page << ' '
             << g.min_details_to_start_from_top << ' ' << static_cast<int>(g.footer_position) << '\n';
        for (const auto& band : g.headers) add("group header", std::optional(band));
        for (const auto& band : g.footers) add("group footer", std::optional(band));
    }

    void add(const char* name, const std::optional<model::Band>& band)
    {
        if (!band) return;
        out_ << "band " << name << ' ' << band->height << ' ' << static_cast<int>(band->split) << ' '
             << band->print_when.text << '\n';
        for (const auto& element : band->elements) add(element);
    }

    void add(const model::Element& e)
    {
        out_ << "  element " << e.body.index() << ' ' << e.uuid << ' ' << e.key << ' ' << e.x << ',' << e.y << ' '
             << e.width << 'x' << e.height << ' ' << e.style << " position " << static_cast<int>(e.position)
             << static_cast<int>(e.stretch) << ' ' << e.print_repeated_values << e.remove_line_when_blank
             << e.print_in_first_whole_band << e.print_when_detail_overflows << e.print_when_group_changes << ' '
             << e.print_when.text;
        add(e.attributes);
        std::visit([this](const auto& body) { add_body(body); }, e.body);
        out_ << '\n';
    }

    template <class Body>
    void add_body(const Body& body)
    {
        if constexpr (requires { body.text; }) out_ << " text " << body.text;
        if constexpr (requires { body.expression.text; }) out_ << " = " << body.expression.text;
        if constexpr (requires { body.evaluation; })
            out_ << " at " << static_cast<int>(body.evaluation) << body.evaluation_group;
        if constexpr (requires { body.adjust; }) out_ << " adjust " << static_cast<int>(body.adjust);
        if constexpr (requires { body.link; }) {
            out_ << " link " << body.link.type << ' ' << body.link.reference.text << ' ' << body.link.anchor_name.text;
        }
        if constexpr (requires { body.bottom_up; }) out_ << " up " << body.bottom_up;
        if constexpr (std::is_same_v<Body, model::Break>) out_ << " break " << static_cast<int>(body.type);
        if constexpr (requires { body.series; }) add_chart(body);
        if constexpr (requires { body.children; }) {
            out_ << " {\n";
            for (const auto& child : body.children) add(child);
            out_ << "  }";
        }
    }

    void add_chart(const model::Chart& chart)
    {
        out_ << ' ' << chart.type << " title " << chart.title.text << " legend " << chart.show_legend.value_or(true)
             << " horizontal " << chart.horizontal << " colors " << chart.colors.size() << " labels "
             << chart.show_labels << " axis " << chart.category_axis_label.text << '|' << chart.value_axis_label.text;
        opt("title size", chart.title_font.size);
        opt("title color", chart.title_color);
        for (const auto& series : chart.series) {
            out_ << " series " << series.series.text << '|' << series.category.text << '|' << series.value.text;
        }
        if (chart.run) out_ << " from " << chart.run->dataset;
    }

    std::ostringstream out_;
};

}  // namespace velora::engine::testing
