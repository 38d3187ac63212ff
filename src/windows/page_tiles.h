#pragma once

#include <QImage>
#include <functional>
#include <list>
#include <map>
#include <tuple>

#include "platform/painted_pages.h"

namespace velora::windows {

/// Painted parts of pages. The parts used last are kept, as many as fit into a bound, whatever the length of the
/// report.
class PageTiles {
public:
    static constexpr int kSide = 1536;  ///< pixels of a full tile's side

    struct Key {
        size_t page;
        int resolution;  ///< pixels for a hundred inches
        int column, row;
        uint32_t revision = 0;  ///< of the page
        auto operator<=>(const Key&) const = default;
    };

    /// A null picture when the tile is not painted yet.
    [[nodiscard]] QImage find(const Key& key);
    /// @param size  of the page in pixels
    QImage paint(const PaintedPages& pages, const Key& key, const QSize& size);

    static constexpr qsizetype kMostBytes = 96 * 1024 * 1024;
    [[nodiscard]] qsizetype bytes() const { return bytes_; }

private:
    struct Kept {
        QImage picture;
        std::list<Key>::iterator use;
    };
    std::map<Key, Kept> kept_;
    std::list<Key> uses_;  ///< the latest first
    qsizetype bytes_ = 0;
};

}  // namespace velora::windows
