#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/page/page.h"

namespace velora::engine {

/// What a part of a page is for somebody who has it read out.
enum class PartRole : uint8_t { Paragraph, Heading, Figure, Table, Row, HeadCell, Cell };

struct StructurePart {
    static constexpr int32_t kDocument = -1;   ///< parent of what stands by itself
    static constexpr int32_t kOpenTable = -2;  ///< parent of rows whose table began on an earlier page

    PartRole role = PartRole::Paragraph;
    int32_t parent = kDocument;  ///< index on the page, before this one
    uint16_t span = 1;           ///< of a cell: columns
    uint8_t level = 0;           ///< of a heading
    bool heads_row = false;      ///< of a head cell: it is for what stands right of it, not below
    Place place;                 ///< of a figure, on the page
    std::string description;     ///< of a figure
};

/// Who owns what an element paints: a part of the page, or nobody.
struct ElementOwner {
    static constexpr int32_t kDecoration = -1;
    static constexpr int32_t kRunning = -2;  ///< repeated on every page: heads, feet, numbers

    int32_t part = kDecoration;
    bool is_figure = false;
};

struct PageStructure {
    std::vector<StructurePart> parts;  ///< in the order in which they are read
    std::vector<ElementOwner> owners;  ///< by element, in painting order, frames before what they hold
};

/// Finds headings, paragraphs, figures and tables on the pages of a document, one after the other. It goes by the bands
/// that the elements come from: rows of details below a column header are a table, whose columns are the header's.
class StructureFinder {
public:
    void begin(const Document& document);
    PageStructure find(const Page& page);

private:
    struct Leaf {
        const Element* element;
        Place place;
        size_t index;  ///< into the owners
        bool begins;
    };
    struct Column {
        int32_t left, right;
    };
    using Leaves = std::vector<Leaf>;

    void collect(const std::vector<Element>& elements, int32_t x, int32_t y);
    void take_run(const Leaves& run);
    void take_head(const Leaves& run);
    void take_row(const Leaves& run);
    void take_flow(const Leaves& run);
    void take_running(const Leaves& run);
    void add_row(const Leaves& run, bool is_head, bool heads_row);
    void open_table(const Leaves& run);
    void columns_from(const Leaves& run);
    [[nodiscard]] std::pair<size_t, size_t> columns_of(const Place& place) const;
    [[nodiscard]] const Leaf* title_of(const Leaves& run) const;
    void own(const Leaf& leaf, int32_t part);
    int32_t add(StructurePart part);
    int32_t add_content(const Leaf& leaf, int32_t parent);
    int32_t add_heading(const Leaf& leaf, uint8_t level);
    [[nodiscard]] const Source& source(const Leaf& leaf) const;
    [[nodiscard]] bool is_row_of_details(const Leaves& run) const;

    const Document* document_ = nullptr;
    PageStructure found_;
    Leaves leaves_;
    bool next_begins_ = false;
    size_t pages_ = 0;
    uint8_t last_heading_ = 0;
    std::vector<Column> columns_;
    Leaves head_;               ///< of a table that has no row yet
    uint32_t head_source_ = 0;  ///< of the first element of the open table's head
    int32_t table_ = StructurePart::kDocument;
};

}  // namespace velora::engine
