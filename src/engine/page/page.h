#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "engine/page/drawing.h"
#include "engine/page/style.h"
#include "values/value.h"

namespace velora::engine {

/// Where an element stands, in whole points from the upper left corner of the page or of the frame around it.
struct Place {
    int32_t x = 0, y = 0, width = 0, height = 0;
    bool operator==(const Place&) const = default;
};

struct Link {
    enum class Kind : uint8_t { None, Reference, LocalAnchor, LocalPage, RemoteAnchor, RemotePage };
    Kind kind = Kind::None;
    std::string target;  ///< address of a reference or of the other document
    std::string anchor;
    int32_t page = 0;  ///< from 1
    std::string tooltip;
    bool operator==(const Link&) const = default;
};

/// A place that links lead to. A level from 1 puts it into the bookmarks; 0 keeps it out.
struct Anchor {
    std::string name;
    int32_t bookmark_level = 0;
    bool operator==(const Anchor&) const = default;
};

/// Marked-up part of a text: bytes from `begin` up to `end` look different from the element's style.
struct TextRun {
    enum class Script : uint8_t { Normal, Super, Sub };
    uint32_t begin = 0, end = 0;
    std::shared_ptr<const Font> font;  ///< never null
    Color fore = kBlack;
    std::optional<Color> back;
    Script script = Script::Normal;
    std::string link;  ///< address, empty for none
    bool operator==(const TextRun& other) const;
};

/// One laid-out line: bytes from `begin` up to `end`, without the line break and the blanks before it.
struct TextLine {
    uint32_t begin = 0, end = 0;
    float width = 0;              ///< of the visible part
    float ascent = 0;             ///< from the line's top to its base line, leading included
    float height = 0;             ///< from the line's top to the next one's
    float indent = 0;             ///< from the left edge of the text area (the right one for right-to-left text)
    bool ends_paragraph = false;  ///< such a line is not stretched when justified
    bool operator==(const TextLine&) const = default;
};

/// What only some texts have; kept apart so that a plain text on one line stays small.
struct TextDetail {
    std::vector<TextLine> lines;          ///< empty: one line that holds the whole text
    std::vector<TextRun> runs;            ///< in order, not overlapping; empty for text without markup
    std::optional<uint32_t> truncate_at;  ///< bytes that are shown of a text that was kept in full
    float line_spacing_factor = 0;        ///< 0: that of the font
    float leading_offset = 0;
    Value value;  ///< what the text shows, when the sink asked for typed values and the text is number or date
    Link link;
    Anchor anchor;
    std::string marked;           ///< with runs: the text as the definition marked it up, when it is all shown
    bool marked_as_html = false;  ///< how `marked` is written; else it is styled text
    bool operator==(const TextDetail&) const = default;
};

struct Text {
    std::string text;  ///< UTF-8, plain; markup stands in the runs
    float text_height = 0;
    std::unique_ptr<TextDetail> detail;  ///< null for most

    TextDetail& details();  ///< made when there is none yet
    [[nodiscard]] std::string_view shown() const;
};

struct Line {};
struct Rectangle {};
struct Ellipse {};

/// A picture, shared by every element that shows it.
struct ImageData {
    std::string bytes;    ///< of a PNG or JPEG file
    std::string source;   ///< file name or address, for messages and for the XML
    double density = 1;   ///< pixels for each point of its natural size
    std::string drawn{};  ///< the SVG file that `bytes` was made from; empty for others
};

struct Image {
    std::shared_ptr<const ImageData> data;
    std::shared_ptr<const Link> link;
    std::shared_ptr<const Anchor> anchor;
};

struct Element;

struct Frame {
    std::vector<Element> children;  ///< their places count from the frame's corner, inside its paddings
};

/// A chart or a barcode: a vector drawing in the element's own coordinates.
struct Graphic {
    std::shared_ptr<const Drawing> drawing;
};

struct Element {
    Place place;
    const Style* style = nullptr;  ///< in the document's sheet, never null on a finished page
    uint32_t source = 0;           ///< index into Document::sources
    bool begins_band = false;      ///< the first one that a band printed on this page or column
    std::variant<Text, Line, Rectangle, Ellipse, Image, Frame, Graphic> content;
};

struct Page {
    std::vector<Element> elements;  ///< in painting order
};

/// The element of the definition that a printed element came from.
struct Source {
    std::string uuid;
    std::string band;     ///< "detail", "groupHeader", ...; empty when unknown
    std::string group;    ///< for group bands
    uint8_t heading = 0;  ///< its texts head what follows, level 1 to 6; 0 for none
    bool operator==(const Source&) const = default;
};

/// What a file asks of its readers before it opens, and what it lets them do.
struct Protection {
    std::string user_password;   ///< empty: it opens without
    std::string owner_password;  ///< lifts what is forbidden; empty: nobody's
    bool print = false, print_finely = false;
    bool copy = false, assemble = false, fill_in = false, annotate = false, modify = false;
    bool read_out = true;  ///< by programs for those who cannot see it
    bool operator==(const Protection&) const = default;
};

/// A file that goes along inside another.
struct Attachment {
    std::string name;
    std::string bytes;
};

/// What holds for all pages. Sizes are points.
struct Document {
    std::string name;
    int32_t page_width = 595, page_height = 842;
    int32_t top_margin = 20, left_margin = 20, bottom_margin = 20, right_margin = 20;
    bool landscape = false;
    std::string locale = "en_US";
    std::string time_zone = "GMT";
    std::string title, author, subject, keywords;
    std::shared_ptr<const Protection> protection;                ///< null for none
    std::shared_ptr<const std::vector<Attachment>> attachments;  ///< null for none
    std::string language;  ///< of the texts, as in "de-AT"; empty: that of the locale
    /// Files that can tell it say what is a heading, a cell, a picture, and in which order to read.
    bool tagged = false;
    std::optional<DateTime> created;  ///< date that the file formats carry; none leaves it out
    Font default_font;
    std::shared_ptr<StyleSheet> styles = std::make_shared<StyleSheet>();
    /// Grows while a report is filled; entry 0 stands for an unknown source.
    std::shared_ptr<std::vector<Source>> sources = std::make_shared<std::vector<Source>>(1);
};

/// Takes the pages one after the other: an exporter, the viewer, the printer.
class PageSink {
public:
    virtual ~PageSink() = default;

    /// Whether texts are to carry the values that they show; spreadsheets want them.
    [[nodiscard]] virtual bool wants_values() const { return false; }
    /// The document lives at least until `end` has returned.
    virtual void begin(const Document& document) = 0;
    virtual void page(Page&& page) = 0;
    /// Called once behind the last page; not called when filling failed.
    virtual void end() = 0;
};

/// Keeps all pages in memory.
class PageList : public PageSink {
public:
    void begin(const Document& header) override { document = header; }
    void page(Page&& page) override { pages.push_back(std::move(page)); }
    void end() override {}

    Document document;
    std::vector<Page> pages;
};

}  // namespace velora::engine
