#include "engine/definition/parts.h"

namespace velora::engine {

namespace {

using namespace model;

// clang-format off
constexpr auto kSplits = std::to_array<Choice<SplitType>>({
    {"Stretch", SplitType::Stretch}, {"Prevent", SplitType::Prevent}, {"Immediate", SplitType::Immediate}});

constexpr auto kBandRules = std::to_array<AttributeRule<Band>>({
    {"height",       set_length<&Band::height>},
    {"splitType",    set_choice<&Band::split, kSplits>},
    {"splitAllowed", [](Band& b, const Attribute& a) { if (!a.flag().value_or(true)) b.split = SplitType::Prevent; }},
});
// clang-format on

/// Elements that reach below their band would be cut without a word.
void check_elements(const Band& band, Tag& tag)
{
    for (const Element& element : band.elements) {
        if (element.y + element.height <= band.height || band.height == 0) continue;
        tag.warn(element.place, "an element reaches " + std::to_string(element.y + element.height - band.height) +
                                    " points below the band");
    }
}

}  // namespace

Band read_band(Tag& tag)
{
    Band out;
    out.place = tag.place();
    tag.read<Band>(kBandRules, out);
    tag.each_child([&](Tag& child) {
        if (child.name() == "printWhenExpression") {
            out.print_when = child.expression();
            return true;
        }
        if (child.name() == "returnValue") {
            child.ignore_all();
            return true;
        }
        return read_property(out.properties, child) || read_element_child(out.elements, child);
    });
    check_elements(out, tag);
    return out;
}

}  // namespace velora::engine
