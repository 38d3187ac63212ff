#include "windows/page_area.h"

#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <cmath>

#include "forms/page_search.h"

namespace velora::windows {

namespace {

constexpr int kGap = 12;           // around a page and between two
constexpr int kPaintingTime = 25;  // milliseconds for which one frame paints parts of pages
constexpr size_t kMostTexts = 64;  // so many pages keep their texts

}  // namespace

PageArea::PageArea(QWidget* parent) : QAbstractScrollArea(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Mid);
    later_.setSingleShot(true);
    later_.setInterval(0);
    connect(&later_, &QTimer::timeout, this, [this] { paint_waiting(); });
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { scrolled(); });
}

void PageArea::show_pages(BoundForm& form, forms::frmViewer& viewer)
{
    form_ = &form;
    viewer_ = &viewer;
    watch_ = viewer.moved.watch([this] { follow(); });
    viewer.marked_text = [this] { return marked_text(); };
    follow();
}

void PageArea::forget_viewer()
{
    if (viewer_ == nullptr) return;
    viewer_->moved.forget(watch_);
    viewer_->marked_text = nullptr;
    viewer_ = nullptr;
    later_.stop();
}

const PaintedPages* PageArea::painted() const
{
    return viewer_ != nullptr ? dynamic_cast<const PaintedPages*>(viewer_->pages()) : nullptr;
}

double PageArea::scale() const
{
    constexpr double kPercent = 100, kPointsPerInch = 72;
    return (viewer_ != nullptr ? viewer_->zoom() : kPercent) / kPercent * logicalDpiX() / kPointsPerInch;
}

QSize PageArea::page_pixels() const
{
    const auto size =
        viewer_ != nullptr && viewer_->pages() != nullptr ? viewer_->pages()->page_size() : PageView::Size();
    return {static_cast<int>(std::ceil(size.width * scale())), static_cast<int>(std::ceil(size.height * scale()))};
}

int PageArea::step() const
{
    return page_pixels().height() + kGap;
}

size_t PageArea::page_at(int y) const
{
    if (count_ == 0) return 0;
    const int at = std::max(0, y + verticalScrollBar()->value() - kGap / 2) / step();
    return std::min(static_cast<size_t>(at), count_ - 1);
}

QRect PageArea::place_of(size_t page) const
{
    const QSize size = page_pixels();
    const int room = viewport()->width();
    const int left =
        size.width() + 2 * kGap <= room ? (room - size.width()) / 2 : kGap - horizontalScrollBar()->value();
    return {QPoint(left, kGap + static_cast<int>(page) * step() - verticalScrollBar()->value()), size};
}

/// The viewer says another page, zoom or search.
void PageArea::follow()
{
    if (viewer_ == nullptr) return;
    const bool zoomed = zoom_ != viewer_->zoom() || count_ != viewer_->page_count();
    const bool other_search = searched_ != viewer_->searched();
    const size_t before = page_;
    zoom_ = viewer_->zoom();
    count_ = viewer_->page_count();
    page_ = viewer_->page();
    searched_ = viewer_->searched();
    if (zoomed) set_ranges();
    const bool by_scrolling = is_following_;
    if (!by_scrolling && (zoomed || page_ != before)) scroll_to(page_);
    if (!by_scrolling && !searched_.empty() && (other_search || page_ != before)) follow_search();
    viewport()->update();
}

void PageArea::set_ranges()
{
    is_following_ = true;
    const QSize size = page_pixels();
    verticalScrollBar()->setRange(0, std::max(0, kGap + static_cast<int>(count_) * step() - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(fontMetrics().height() * 3);
    horizontalScrollBar()->setRange(0, std::max(0, size.width() + 2 * kGap - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(fontMetrics().height() * 3);
    is_following_ = false;
}

void PageArea::scroll_to(size_t page)
{
    is_following_ = true;
    verticalScrollBar()->setValue(static_cast<int>(page > 0 ? page - 1 : 0) * step());
    is_following_ = false;
}

/// The first place that was found on the page is in sight.
void PageArea::follow_search()
{
    const auto& found = texts_of(page_ - 1).found;
    if (found.empty()) return;
    const auto show = [this](QScrollBar& bar, int at, int room) {
        if (at < 0 || at >= room - kGap) bar.setValue(bar.value() + at - room / 3);
    };
    const QRect place = place_of(page_ - 1);
    is_following_ = true;
    show(*verticalScrollBar(), place.top() + static_cast<int>(found.front().y * scale()), viewport()->height());
    show(*horizontalScrollBar(), place.left() + static_cast<int>(found.front().x * scale()), viewport()->width());
    is_following_ = false;
}

/// A person has scrolled: the page in the upper third is the current one.
void PageArea::scrolled()
{
    viewport()->update();
    if (is_following_ || viewer_ == nullptr) return;
    const size_t page = page_at(viewport()->height() / 3) + 1;
    if (page == viewer_->page()) return;
    is_following_ = true;
    form_->act([&] { viewer_->go_to(page); });
    is_following_ = false;
}

void PageArea::resizeEvent(QResizeEvent*)
{
    set_ranges();
    if (viewer_ == nullptr || form_->is_scripted()) return;
    const double pixels_per_point = scale() * 100 / viewer_->zoom();
    viewer_->set_view_size((viewport()->width() - 2 * kGap) / pixels_per_point,
                           (viewport()->height() - 2 * kGap) / pixels_per_point);
}

void PageArea::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().brush(QPalette::Mid));
    if (painted() == nullptr || count_ == 0) return;
    const size_t last = page_at(viewport()->height());
    for (size_t page = page_at(0); page <= last; ++page) {
        const QRect place = place_of(page);
        const QRect shown = place & viewport()->rect();
        if (!shown.isEmpty()) paint_page(painter, page, place, shown);
    }
}

void PageArea::paint_page(QPainter& painter, size_t page, const QRect& place, const QRect& shown)
{
    const double ratio = devicePixelRatioF();
    constexpr double kPointsPerInch = 72, kHundred = 100;
    const int resolution = static_cast<int>(std::lround(scale() * kPointsPerInch * ratio * kHundred));
    const QSize size = place.size() * ratio;
    const double side = PageTiles::kSide / ratio;
    QElapsedTimer clock;
    clock.start();
    painter.fillRect(place, Qt::white);
    const auto first_column = static_cast<int>((shown.left() - place.left()) / side);
    const auto last_column = static_cast<int>((shown.right() - place.left()) / side);
    const auto first_row = static_cast<int>((shown.top() - place.top()) / side);
    const auto last_row = static_cast<int>((shown.bottom() - place.top()) / side);
    for (int row = first_row; row <= last_row; ++row) {
        for (int column = first_column; column <= last_column; ++column) {
            const PageTiles::Key key{page, resolution, column, row, painted()->revision(page)};
            QImage tile = tiles_.find(key);
            // What one frame has no time for stays white until the next.
            if (tile.isNull() && clock.elapsed() < kPaintingTime) tile = tiles_.paint(*painted(), key, size);
            if (tile.isNull()) {
                if (!later_.isActive()) later_.start();
                continue;
            }
            tile.setDevicePixelRatio(ratio);
            painter.drawImage(QPointF(place.left() + column * side, place.top() + row * side), tile);
        }
    }
    paint_marks(painter, page, place.topLeft());
    painter.setPen(palette().color(QPalette::Shadow));
    painter.drawRect(place.adjusted(-1, -1, 0, 0));
}

void PageArea::paint_waiting()
{
    viewport()->update();
}

PageArea::TextsOfPage& PageArea::texts_of(size_t page)
{
    if (texts_.size() >= kMostTexts && !texts_.contains(page)) texts_.clear();
    const auto [at, is_new] = texts_.try_emplace(page);
    auto& known = at->second;
    const uint32_t revision = painted() != nullptr ? painted()->revision(page) : 0;
    const bool is_amended = revision != known.revision;
    if ((is_new || is_amended) && painted() != nullptr) known.texts = painted()->page_texts(page);
    if (is_amended || known.searched != searched_) {
        known.searched = searched_;
        known.found = forms::letters_found(known.texts, searched_);
    }
    known.revision = revision;
    return known;
}

void PageArea::paint_marks(QPainter& painter, size_t page, const QPoint& corner)
{
    const bool selected = has_marks_ && std::min(from_, to_).page <= page && page <= std::max(from_, to_).page;
    if (searched_.empty() && !selected) return;
    const auto box = [&, s = scale()](const PageText::Letter& at) {
        return QRectF(corner.x() + at.x * s, corner.y() + at.y * s, at.width * s, at.height * s);
    };
    const auto& known = texts_of(page);
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);  // the letters stay as dark as they are
    for (const auto& letter : known.found) painter.fillRect(box(letter), QColor(255, 221, 87));
    if (selected) {
        QColor mark = palette().color(QPalette::Highlight);
        mark = QColor::fromHslF(mark.hslHueF() < 0 ? 0.6f : mark.hslHueF(), 0.7f, 0.8f);
        Spot at{page, 0};
        for (const auto& text : known.texts) {
            for (const auto& letter : text.letters) {
                if (std::min(from_, to_) <= at && at < std::max(from_, to_)) painter.fillRect(box(letter), mark);
                ++at.letter;
            }
        }
    }
    painter.restore();
}

/// The boundary between letters that is nearest: before a letter, or behind the page's last.
PageArea::Spot PageArea::spot_at(const QPoint& at)
{
    const size_t page = page_at(at.y());
    const QRect place = place_of(page);
    const double x = (at.x() - place.left()) / scale(), y = (at.y() - place.top()) / scale();
    Spot nearest{page, 0};
    double least = 1e18;
    size_t number = 0;
    for (const auto& text : texts_of(page).texts) {
        for (const auto& letter : text.letters) {
            const double above = std::max({0.0, letter.y - y, y - letter.y - letter.height});
            const double beside = std::max({0.0, letter.x - x, x - letter.x - letter.width});
            constexpr double kLinesCountMore = 10;
            if (const double away = above * kLinesCountMore + beside; away < least) {
                least = away;
                nearest.letter = number + (x > letter.x + letter.width / 2 ? 1 : 0);
            }
            ++number;
        }
    }
    return nearest;
}

std::string PageArea::marked_text()
{
    std::string marked;
    if (!has_marks_ || painted() == nullptr) return marked;
    const Spot begin = std::min(from_, to_), end = std::max(from_, to_);
    int32_t line = 0;
    for (size_t page = begin.page; page <= end.page && page < count_; ++page) {
        Spot at{page, 0};
        for (const auto& text : texts_of(page).texts) {
            bool is_first = true;
            for (const auto& letter : text.letters) {
                if (begin <= at && at < end) {
                    if (is_first && !marked.empty()) marked += text.line == line ? '\t' : '\n';
                    is_first = false;
                    line = text.line;
                    marked.append(text.text, letter.begin, letter.end - letter.begin);
                }
                ++at.letter;
            }
        }
    }
    return marked;
}

void PageArea::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || painted() == nullptr || count_ == 0) return;
    from_ = to_ = spot_at(event->pos());
    is_marking_ = true;
    has_marks_ = false;
    viewport()->update();
}

void PageArea::mouseMoveEvent(QMouseEvent* event)
{
    if (!is_marking_ || painted() == nullptr) return;
    to_ = spot_at(event->pos());
    has_marks_ = from_ != to_;
    if (event->pos().y() < 0) verticalScrollBar()->setValue(verticalScrollBar()->value() - kGap);
    if (event->pos().y() > viewport()->height()) verticalScrollBar()->setValue(verticalScrollBar()->value() + kGap);
    viewport()->update();
}

void PageArea::mouseReleaseEvent(QMouseEvent*)
{
    is_marking_ = false;
}

void PageArea::wheelEvent(QWheelEvent* event)
{
    if (viewer_ == nullptr || !event->modifiers().testFlag(Qt::ControlModifier)) {
        return QAbstractScrollArea::wheelEvent(event);
    }
    const auto& button = event->angleDelta().y() > 0 ? viewer_->zoom_in : viewer_->zoom_out;
    form_->act([&] { button.press(); });
    event->accept();
}

/// Keys that mean something else in the boxes, and so are not shortcuts of the buttons.
void PageArea::keyPressEvent(QKeyEvent* event)
{
    if (viewer_ == nullptr) return;
    const bool with_control = event->modifiers().testFlag(Qt::ControlModifier);
    const forms::ToolButton* button = nullptr;
    if (event->key() == Qt::Key_Escape) return form_->act([&] { viewer_->unload(); });
    if (event->matches(QKeySequence::Copy)) button = &viewer_->copy;
    // The plus, with Shift or without, as the keyboard has it.
    if (with_control && (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Equal)) button = &viewer_->zoom_in;
    if (event->key() == Qt::Key_Home) button = &viewer_->first;
    if (event->key() == Qt::Key_End) button = &viewer_->last;
    if (button != nullptr) return form_->act([&] { button->press(); });
    if (event->matches(QKeySequence::Find)) return void(form_->enter(viewer_->search_box));
    QAbstractScrollArea::keyPressEvent(event);
}

}  // namespace velora::windows
