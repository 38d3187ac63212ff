#include <gtest/gtest.h>

#include <pugixml.hpp>
#include <sstream>

#include "definitions/shipped.h"

namespace velora {
namespace {

/// What designers' tools know by an element's name: they refuse a definition with an attribute more, which our own
/// reader would take. `bench/peer/open-definitions` asks such a tool; what it let through may be added here.
struct Known {
    std::string_view element;
    std::string_view attributes;
};

// clang-format off
constexpr std::string_view kPlace = " kind uuid x y width height style positionType removeLineWhenBlank ";
constexpr std::string_view kFont = " fontName fontSize bold italic underline strikeThrough ";
constexpr std::string_view kPen = " lineWidth lineStyle lineColor ";
constexpr auto kKnown = std::to_array<Known>({
    {"jasperReport", " name language uuid pageWidth pageHeight columnWidth leftMargin rightMargin topMargin bottomMargin"
                     " orientation floatColumnFooter summaryWithPageHeaderAndFooter whenNoDataType resourceBundle "},
    {"style",        " name style default mode forecolor backcolor hTextAlign vTextAlign fontName fontSize bold italic"
                     " blankWhenNull "},
    {"box",          " padding topPadding leftPadding bottomPadding rightPadding "},
    {"pen", kPen}, {"topPen", kPen}, {"leftPen", kPen}, {"bottomPen", kPen}, {"rightPen", kPen},
    {"titleFont", kFont}, {"subtitleFont", kFont}, {"legendFont", kFont},
    {"field",        " name class "},
    {"parameter",    " name class "},
    {"property",     " name value "}, {"propertyExpression", " name "},
    {"sortField",    " name type order "},
    {"variable",     " name class calculation resetType resetGroup incrementType incrementGroup "},
    {"group",        " name keepTogether minHeightToStartNewPage preventOrphanFooter reprintHeaderOnEachPage "},
    {"title",        " height splitType "}, {"summary",      " height splitType "}, {"band", " height splitType "},
    {"pageHeader",   " height splitType "}, {"columnHeader", " height splitType "}, {"pageFooter", " height splitType "},
    {"dataset",      " kind incrementType incrementGroup "},
    {"plot",         " labelFormat valueAxisTickLabelMask "}, {"seriesColor", " order color "},
    {"groupHeader", ""}, {"groupFooter", ""}, {"detail", ""}, {"series", ""}, {"text", ""}, {"expression", ""},
});
/// Of an element by its kind, beside those of its place.
constexpr auto kKinds = std::to_array<Known>({
    {"staticText", ""}, {"line", ""}, {"rectangle", ""}, {"frame", ""},
    {"image",        " scaleImage hImageAlign vImageAlign onErrorType "},
    {"textField",    " evaluationTime evaluationGroup pattern textAdjust "},
    {"chart",        " chartType evaluationTime titleColor "},
});
// clang-format on

std::string attributes_of(std::string_view element, std::string_view kind)
{
    for (const auto& known : kKinds) {
        if (element == "element" && known.element == kind) return std::string(kPlace) + std::string(known.attributes);
    }
    for (const auto& known : kKnown) {
        if (known.element == element) return std::string(known.attributes);
    }
    return element.ends_with("Expression") ? "" : "?";
}

/// Every attribute and element that the tables above lack.
struct Unknown : pugi::xml_tree_walker {
    bool for_each(pugi::xml_node& node) override
    {
        if (node.type() != pugi::node_element) return true;
        const std::string known = attributes_of(node.name(), node.attribute("kind").value());
        if (known == "?") found << node.name() << ' ' << node.attribute("kind").value() << '\n';
        for (const auto attribute : node.attributes()) {
            if (known.find(" " + std::string(attribute.name()) + " ") != std::string::npos) continue;
            found << node.name() << ' ' << attribute.name() << "=\"" << attribute.value() << "\"\n";
        }
        return true;
    }
    std::ostringstream found;
};

TEST(ShippedFormat, DesignersKnowEveryNameInIt)
{
    for (const auto& shipped : kShipped) {
        pugi::xml_document document;
        ASSERT_TRUE(document.load_file(definition_file(shipped.name).c_str())) << shipped.name;
        Unknown unknown;
        document.traverse(unknown);
        EXPECT_EQ(unknown.found.str(), "") << shipped.name;
    }
}

}  // namespace
}  // namespace velora
