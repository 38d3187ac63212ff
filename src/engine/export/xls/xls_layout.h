#pragma once

#include "engine/export/xls/xls_page.h"

namespace velora::engine {

/// Paper and margins in points, the same for all sheets of a workbook.
struct XlsPaper {
    int32_t width = 595, height = 842;
    bool landscape = false;
    int32_t left = 0, right = 0, top = 0;  ///< margins; the lower one is what the pages leave
};

/// Width of a digit of the workbook's normal font in points: eight pixels of 96 an inch.
inline constexpr double kXlsDigitPoints = 6;

/// The number of the paper nearest in size; a workbook has no others.
uint16_t xls_paper_number(int32_t width, int32_t height);

/// A name that a sheet may have: without the characters that references use, and short.
std::u16string xls_sheet_name(const std::string& title, size_t number, size_t count);

/// The pages of a document on the grid of a workbook, whatever form it is written in.
class XlsLayout {
public:
    explicit XlsLayout(FontStore& fonts) : measurer(fonts), pages(styles, strings, measurer, fonts) {}

    /// Behind the last page: finds columns and margins.
    void settle(const Document& document);

    XlsStyles styles;
    XlsStrings strings;
    Measurer measurer;
    XlsPages pages;
    GridLines columns{kColumnTolerance, kWidestColumn};
    XlsPaper paper;

private:
    static constexpr int32_t kColumnTolerance = 4;
    static constexpr int32_t kWidestColumn = 1300;  ///< points; the format ends at 255 digits

    void find_columns();
    void find_margins(const Document& document);
};

}  // namespace velora::engine
