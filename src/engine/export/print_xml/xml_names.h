#pragma once

#include <array>
#include <string>
#include <string_view>

#include "engine/page/page.h"

/// The words of the print form, for its writer and its reader.
namespace velora::engine::print_xml {

template <class Enum, size_t N>
struct Names {
    std::array<const char*, N> names;  ///< in the order of the enumeration

    [[nodiscard]] const char* name(Enum value) const { return names.at(static_cast<size_t>(value)); }
    [[nodiscard]] Enum value(std::string_view text, Enum otherwise) const
    {
        for (size_t i = 0; i < N; ++i) {
            if (text == names[i]) return static_cast<Enum>(i);
        }
        return otherwise;
    }
};

// clang-format off
inline constexpr Names<LineStyle, 4>       kLineStyles{{"Solid", "Dashed", "Dotted", "Double"}};
inline constexpr Names<HorizontalAlign, 4> kHorizontal{{"Left", "Center", "Right", "Justified"}};
inline constexpr Names<VerticalAlign, 4>   kVertical{{"Top", "Middle", "Bottom", "Justified"}};
inline constexpr Names<Rotation, 4>        kRotations{{"None", "Left", "Right", "UpsideDown"}};
inline constexpr Names<ScaleImage, 5>      kScales{{"Clip", "FillFrame", "RetainShape", "RealHeight", "RealSize"}};
inline constexpr Names<LineSpacing, 6>     kSpacings{{"Single", "1_1_2", "Double", "AtLeast", "Fixed", "Proportional"}};
inline constexpr Names<Link::Kind, 6>      kLinks{{"None", "Reference", "LocalAnchor", "LocalPage", "RemoteAnchor", "RemotePage"}};

struct FlagName { const char* name; bool Font::*flag; };
inline constexpr std::array kFontFlags = {
    FlagName{"isBold", &Font::bold},           FlagName{"isItalic", &Font::italic},
    FlagName{"isUnderline", &Font::underline}, FlagName{"isStrikeThrough", &Font::strike_through},
};

struct PenName { const char* name; Pen Box::*pen; };
inline constexpr std::array kBoxPens = {
    PenName{"topPen", &Box::top},       PenName{"leftPen", &Box::left},
    PenName{"bottomPen", &Box::bottom}, PenName{"rightPen", &Box::right},
};

struct PaddingName { const char* name; int16_t Box::*padding; };
inline constexpr std::array kPaddings = {
    PaddingName{"topPadding", &Box::top_padding},       PaddingName{"leftPadding", &Box::left_padding},
    PaddingName{"bottomPadding", &Box::bottom_padding}, PaddingName{"rightPadding", &Box::right_padding},
};

struct LengthName { const char* name; int16_t Paragraph::*length; };
inline constexpr std::array kParagraphLengths = {
    LengthName{"firstLineIndent", &Paragraph::first_line_indent}, LengthName{"leftIndent", &Paragraph::left_indent},
    LengthName{"rightIndent", &Paragraph::right_indent},          LengthName{"spacingBefore", &Paragraph::spacing_before},
    LengthName{"spacingAfter", &Paragraph::spacing_after},        LengthName{"tabStopWidth", &Paragraph::tab_width},
};

struct MarginName { const char* name; int32_t Document::*length; };
inline constexpr std::array kDocumentLengths = {
    MarginName{"pageWidth", &Document::page_width},       MarginName{"pageHeight", &Document::page_height},
    MarginName{"topMargin", &Document::top_margin},       MarginName{"leftMargin", &Document::left_margin},
    MarginName{"bottomMargin", &Document::bottom_margin}, MarginName{"rightMargin", &Document::right_margin},
};

struct DocumentText { const char* name; std::string Document::*text; };
/// Properties of the document that the form has no attribute for.
inline constexpr std::array kDocumentProperties = {
    DocumentText{"velora.title", &Document::title},     DocumentText{"velora.author", &Document::author},
    DocumentText{"velora.subject", &Document::subject}, DocumentText{"velora.keywords", &Document::keywords},
};
// clang-format on
inline constexpr const char* kCreated = "velora.created";
inline constexpr const char* kLines = "velora.lines";
inline constexpr const char* kDrawing = "velora.drawing";

/// Shapes are filled unless they say otherwise, everything else is transparent.
inline bool opaque_by_default(const Element& element)
{
    return std::holds_alternative<Line>(element.content) || std::holds_alternative<Rectangle>(element.content) ||
           std::holds_alternative<Ellipse>(element.content);
}

}  // namespace velora::engine::print_xml
