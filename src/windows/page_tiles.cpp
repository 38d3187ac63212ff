#include "windows/page_tiles.h"

namespace velora::windows {

QImage PageTiles::find(const Key& key)
{
    const auto found = kept_.find(key);
    if (found == kept_.end()) return {};
    uses_.splice(uses_.begin(), uses_, found->second.use);
    return found->second.picture;
}

QImage PageTiles::paint(const PaintedPages& pages, const Key& key, const QSize& size)
{
    const QPoint corner(key.column * kSide, key.row * kSide);
    const int width = std::min(kSide, size.width() - corner.x()), height = std::min(kSide, size.height() - corner.y());
    if (width <= 0 || height <= 0) return {};
    QImage picture(width, height, QImage::Format_RGB32);
    constexpr double kHundred = 100;
    pages.paint(key.page, key.resolution / kHundred,
                {corner.x(), corner.y(), width, height, reinterpret_cast<uint32_t*>(picture.bits())});
    uses_.push_front(key);
    kept_.insert_or_assign(key, Kept{picture, uses_.begin()});
    bytes_ += picture.sizeInBytes();
    while (bytes_ > kMostBytes && uses_.size() > 1) {
        const auto last = kept_.find(uses_.back());
        bytes_ -= last->second.picture.sizeInBytes();
        kept_.erase(last);
        uses_.pop_back();
    }
    return picture;
}

}  // namespace velora::windows
