#pragma once

#include <string>
#include <vector>

#include "engine/export/xls/xls_cells.h"
#include "engine/export/xls/xls_layout.h"
#include "engine/export/xls/xls_records.h"

namespace velora::engine {

/// A picture at its place in the sheet. Corners are cells with the part of the cell in 1/1024 (across) and 1/256
/// (down).
struct XlsAnchoredPicture {
    struct Corner {
        uint16_t column = 0, across = 0, row = 0, down = 0;
    };
    Corner from, to;
    std::shared_ptr<const ImageData> data;
    std::string words;  ///< that it shows
};

/// One sheet: pages below each other, with a page break between them.
class XlsSheet {
public:
    static constexpr uint32_t kMostRows = 65536;
    static constexpr size_t kMostBreaks = 1026;

    /// @param layout  with its columns and its paper; outlives the sheet
    explicit XlsSheet(XlsLayout& layout);

    /// Whether a page of that many rows still fits.
    [[nodiscard]] bool has_room(uint32_t rows) const;
    [[nodiscard]] bool empty() const { return rows_ == 0; }
    /// Adds rows `from` up to `to` of the page. A gap in front keeps the page's distance from the margin.
    void add_page(const XlsPage& page, uint32_t from, uint32_t to, int32_t gap);

    [[nodiscard]] uint32_t references() const { return references_; }  ///< cells that refer to the shared strings
    [[nodiscard]] uint32_t hidden() const { return cells_.hidden(); }  ///< texts for which the sheet had no row left
    [[nodiscard]] const std::vector<XlsAnchoredPicture>& pictures() const { return pictures_; }

    /// The whole sheet; `drawing` holds the records of its pictures.
    void write(XlsRecords& stream, bool selected, const XlsRecords& drawing) const;

private:
    [[nodiscard]] XlsRange in_sheet(const XlsRange& range) const;
    void write_rows(const XlsPage& page);
    void write_cell(const XlsPage& page, uint32_t row, uint32_t column);
    void place_links(const XlsPage& page, uint32_t from, uint32_t to);
    void place_pictures(const XlsPage& page, uint32_t from, uint32_t to);
    void write_row(uint32_t row, int32_t points);

    void write_settings(XlsRecords& stream) const;
    void write_page_setup(XlsRecords& stream) const;
    void write_columns(XlsRecords& stream) const;
    void write_merges(XlsRecords& stream) const;
    void write_links(XlsRecords& stream) const;

    const XlsPages& pages_;
    XlsStyles& styles_;
    const GridLines& lines_;
    XlsPaper paper_;

    XlsCells cells_;       ///< of the page at hand
    int32_t tallest_ = 0;  ///< points of the tallest page
    uint32_t rows_ = 0, references_ = 0;
    XlsRecords table_;
    std::vector<XlsRange> merges_;
    std::vector<uint32_t> breaks_;
    std::vector<std::pair<XlsRange, std::string>> links_;
    std::vector<XlsAnchoredPicture> pictures_;
};

}  // namespace velora::engine
