#pragma once

#include "engine/export/common/office_parts.h"
#include "engine/export/xls/xls_cells.h"
#include "engine/export/xls/xls_layout.h"

namespace velora::engine {

/// One sheet: pages below each other, with a page break between them.
class XlsxSheet {
public:
    static constexpr uint32_t kMostRows = 1'048'576;
    static constexpr size_t kMostBreaks = 1023;

    /// @param layout  with its columns and its paper; outlives the sheet
    explicit XlsxSheet(XlsLayout& layout);

    [[nodiscard]] bool has_room(uint32_t rows) const;
    /// Adds rows `from` up to `to` of the page. A gap in front keeps the page's distance from the margin.
    void add_page(const XlsPage& page, uint32_t from, uint32_t to, int32_t gap);
    /// The rows of the first page down to that place stay in view.
    void keep_in_view(const XlsPage& page, int32_t end);
    [[nodiscard]] uint32_t hidden() const { return cells_.hidden(); }  ///< texts for which the sheet had no row left

    struct Parts {
        std::string sheet, relations, drawing, drawing_relations;  ///< empty where there is nothing
    };
    [[nodiscard]] Parts parts(size_t number, OfficePictures& pictures) const;

private:
    /// A picture with its corner in a cell. Lengths are points.
    struct Anchored {
        uint32_t column = 0, row = 0;
        double across = 0, down = 0, width = 0, height = 0;
        const XlsPicture* picture = nullptr;
    };

    void row_head(uint32_t row, int32_t points);
    void write_cell(const XlsPage& page, uint32_t row, uint32_t column);
    void place_pictures(const XlsPage& page, uint32_t from, uint32_t to);
    void append_view(std::string& out, bool first) const;
    void append_columns(std::string& out) const;
    void append_merges(std::string& out) const;
    void append_links(std::string& out, OfficeRelations& relations) const;
    void append_page_setup(std::string& out) const;
    [[nodiscard]] std::string drawing(OfficePictures& pictures, OfficeRelations& relations) const;

    XlsLayout& layout_;
    XlsCells cells_;  ///< of the page at hand
    uint32_t rows_ = 0, kept_rows_ = 0, first_gap_ = 0;
    int32_t tallest_ = 0;  ///< points of the tallest page
    std::string table_;
    std::vector<XlsRange> merges_;
    std::vector<uint32_t> breaks_;
    std::vector<std::pair<XlsRange, std::string>> links_;
    std::vector<Anchored> pictures_;
};

}  // namespace velora::engine
