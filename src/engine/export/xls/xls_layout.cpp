#include "engine/export/xls/xls_layout.h"

#include <algorithm>

#include "engine/export/common/page_walk.h"

namespace velora::engine {
namespace {

constexpr size_t kMostColumns = 250;
constexpr int32_t kSlack = 14;  ///< points that rounding to whole pixels may add to a page
constexpr size_t kLongestName = 31;

struct PaperSize {
    int32_t width, height;
    uint16_t number;
};
// clang-format off
constexpr PaperSize kPapers[] = {
    {595,  842, 9},   // A4
    {612,  792, 1},   // Letter
    {612, 1008, 5},   // Legal
    {842, 1191, 8},   // A3
    {420,  595, 11},  // A5
    {792, 1224, 3},   // Tabloid
    {522,  756, 7},   // Executive
    {709, 1001, 12},  // B4
    {516,  729, 13},  // B5
};
// clang-format on

}  // namespace

uint16_t xls_paper_number(int32_t width, int32_t height)
{
    const auto distance = [&](const PaperSize& paper) {
        return std::abs(paper.width - std::min(width, height)) + std::abs(paper.height - std::max(width, height));
    };
    return std::min_element(std::begin(kPapers), std::end(kPapers),
                            [&](const auto& a, const auto& b) { return distance(a) < distance(b); })
        ->number;
}

std::u16string xls_sheet_name(const std::string& title, size_t number, size_t count)
{
    std::u16string name;
    for (const char16_t unit : xls_utf16(title)) {
        if (unit >= 0x20 && std::u16string_view(u"[]:*?/\\'").find(unit) == std::u16string_view::npos) name += unit;
    }
    if (name.empty()) name = u"Report";
    const std::u16string suffix = count > 1 ? xls_utf16(" (" + std::to_string(number + 1) + ")") : std::u16string();
    name.resize(std::min(name.size(), kLongestName - suffix.size()));
    return name + suffix;
}

void XlsLayout::find_columns()
{
    for (uint32_t number = 0; number < pages.spans().size(); ++number) {
        const auto& [left, right] = pages.spans().at(number);
        columns.add(left);
        columns.add(right);
    }
    columns.solve(kMostColumns);
}

/// The margins end where the content begins, so that no empty row or column stands in front of it; behind it they
/// leave room for what rounding adds.
void XlsLayout::find_margins(const Document& document)
{
    int32_t top = INT32_MAX;
    for (const XlsPage& page : pages.pages()) {
        if (page.row_lines.size() < 2) continue;
        top = std::min(top, page.row_lines.front());
    }
    const auto& lines = columns.lines();
    paper.width = std::clamp(document.page_width, 0, kFarthest);
    paper.height = std::clamp(document.page_height, 0, kFarthest);
    paper.landscape = document.page_width > document.page_height;
    paper.left = std::clamp(lines.front(), 0, paper.width);
    paper.right = std::clamp(paper.width - lines.back() - kSlack, 0, paper.width);
    paper.top = top == INT32_MAX ? 0 : std::clamp(top, 0, paper.height);
}

void XlsLayout::settle(const Document& document)
{
    pages.settle_amounts();
    find_columns();
    if (columns.lines().size() < 2) {
        // Nothing to show: one empty cell makes a sheet all the same.
        columns.clear();
        columns.add({0, 0, 0});
        columns.add({72, 72, 72});
        columns.solve(kMostColumns);
    }
    find_margins(document);
}

}  // namespace velora::engine
