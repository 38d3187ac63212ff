#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/export/common/picture_fit.h"
#include "engine/export/paint/drawing_picture.h"
#include "engine/export/xls/grid_lines.h"
#include "engine/export/xls/xls_amount.h"
#include "engine/export/xls/xls_strings.h"
#include "engine/export/xls/xls_styles.h"
#include "engine/page/page.h"
#include "engine/text/measurer.h"

namespace velora::engine {

/// Something that a page puts on the grid. Rows are known with the page, columns only with the last page, so an item
/// keeps the number of its span and stays small.
struct XlsItem {
    enum class Kind : uint8_t { Text, Number, Ground, LevelRule, UprightRule };
    Kind kind = Kind::Ground;
    uint32_t span = 0;             ///< in XlsSpans
    uint32_t top = 0, bottom = 0;  ///< numbers of row lines
    uint32_t looks = 0;            ///< in XlsPages::looks, of a ground or rule in XlsPages::grounds
    struct Label {
        uint32_t text;  ///< in the shared strings
        float width;    ///< points that it takes on one line; 0 for one that is laid out in lines
    };
    union {
        Label label{};
        double number;
    };
};

/// A text in lines: a spreadsheet breaks them anew, by its own measures.
struct XlsWrapped {
    uint32_t item = 0;  ///< in XlsPage::items
    const Style* style = nullptr;
};

/// A picture, placed freely above the cells. Lengths are points.
struct XlsPicture {
    PictureBox place;
    std::shared_ptr<const ImageData> data;
    std::string words;  ///< that it shows
};

struct XlsLink {
    uint32_t span = 0, top = 0, bottom = 0;
    std::string address;
};

struct XlsPage {
    std::vector<int32_t> row_lines;
    std::vector<XlsItem> items;
    std::vector<XlsWrapped> wrapped;
    std::vector<XlsPicture> pictures;
    std::vector<XlsLink> links;
};

/// The pairs of left and right edges that occur. Few in a report, because bands repeat.
class XlsSpans {
public:
    uint32_t add(const GridEdge& left, const GridEdge& right);
    [[nodiscard]] const std::pair<GridEdge, GridEdge>& at(uint32_t number) const { return *spans_[number]; }
    [[nodiscard]] size_t size() const { return spans_.size(); }

private:
    std::map<std::pair<GridEdge, GridEdge>, uint32_t> numbers_;
    std::vector<const std::pair<GridEdge, GridEdge>*> spans_;
};

/// Numbers for values that repeat.
template <class T>
class XlsInterned {
public:
    uint32_t add(const T& value)
    {
        const auto [place, is_new] = numbers_.try_emplace(value, static_cast<uint32_t>(values_.size()));
        if (is_new) values_.push_back(value);
        return place->second;
    }
    [[nodiscard]] const T& at(uint32_t number) const { return values_[number]; }

private:
    std::map<T, uint32_t> numbers_;
    std::vector<T> values_;
};

/// Turns pages into items on a grid.
class XlsPages {
public:
    XlsPages(XlsStyles& styles, XlsStrings& strings, Measurer& measurer, FontStore& fonts)
        : styles_(styles), strings_(strings), measurer_(measurer), drawings_(fonts)
    {
    }

    /// The locale of the document, before its first page.
    void speak(std::string locale) { locale_ = std::move(locale); }
    void add(const Page& page);
    /// Behind the last page: decides on the texts that only the document's other amounts explain, or else the locale.
    void settle_amounts();

    [[nodiscard]] const std::vector<XlsPage>& pages() const { return pages_; }
    [[nodiscard]] const XlsSpans& spans() const { return spans_; }
    [[nodiscard]] const XlsLooks& looks(uint32_t number) const { return looks_.at(number); }
    [[nodiscard]] std::string_view text(const XlsItem& item) const { return strings_.text(item.label.text); }
    [[nodiscard]] const XlsGround& ground(uint32_t number) const { return grounds_.at(number); }

private:
    friend class XlsPageBuilder;

    /// "1,234": an amount whose mark may part groups or decimals, as the document's others tell.
    struct OpenAmount {
        size_t page = 0, item = 0;
        std::string text;
        WrittenAmount amount;
        uint32_t number_looks = 0;  ///< but for the format
    };

    uint16_t date_format(const std::string& pattern);

    XlsStyles& styles_;
    XlsStrings& strings_;
    Measurer& measurer_;
    DrawingPictures drawings_;
    XlsSpans spans_;
    XlsInterned<XlsLooks> looks_;
    XlsInterned<XlsGround> grounds_;
    std::vector<XlsPage> pages_;
    std::vector<OpenAmount> open_amounts_;
    std::map<std::string, uint16_t, std::less<>> date_formats_;  ///< by the pattern of a definition
    std::string locale_ = "en_US";
    size_t points_ = 0, commas_ = 0;  ///< that part decimals in the amounts that leave no doubt
};

}  // namespace velora::engine
