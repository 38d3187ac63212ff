#pragma once

#include <QAbstractScrollArea>
#include <QTimer>
#include <map>

#include "forms/frm_viewer.h"
#include "windows/bound_form.h"
#include "windows/page_tiles.h"

namespace velora::windows {

/// The pages of a viewer, one below the other. It shows the page and the zoom that the viewer says, and tells it what a
/// person scrolls to; texts are marked with the mouse.
class PageArea final : public QAbstractScrollArea {
public:
    explicit PageArea(QWidget* parent);
    void show_pages(BoundForm& form, forms::frmViewer& viewer);
    void forget_viewer();

    /// The texts that are marked, lines and parts of a line as the page has them.
    [[nodiscard]] std::string marked_text();
    /// How much of the tiles' bound is in use, in bytes.
    [[nodiscard]] qsizetype tile_bytes() const { return tiles_.bytes(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// A letter of the pages, in the order in which they are read.
    struct Spot {
        size_t page = 0, letter = 0;
        auto operator<=>(const Spot&) const = default;
    };
    struct TextsOfPage {
        std::vector<PageText> texts;
        std::vector<PageText::Letter> found;
        std::string searched;
        uint32_t revision = 0;
    };

    void follow();
    void follow_search();
    void set_ranges();
    void scroll_to(size_t page);
    void scrolled();
    void paint_page(QPainter& painter, size_t page, const QRect& place, const QRect& shown);
    void paint_marks(QPainter& painter, size_t page, const QPoint& corner);
    void paint_waiting();
    TextsOfPage& texts_of(size_t page);
    [[nodiscard]] Spot spot_at(const QPoint& at);
    [[nodiscard]] size_t page_at(int y) const;
    [[nodiscard]] QRect place_of(size_t page) const;  ///< on the viewport
    [[nodiscard]] double scale() const;               ///< logical pixels for a point
    [[nodiscard]] QSize page_pixels() const;          ///< logical
    [[nodiscard]] int step() const;                   ///< from the top of a page to that of the next
    [[nodiscard]] const PaintedPages* painted() const;

    BoundForm* form_ = nullptr;
    forms::frmViewer* viewer_ = nullptr;
    size_t watch_ = 0;
    PageTiles tiles_;
    std::map<size_t, TextsOfPage> texts_;
    QTimer later_;
    size_t page_ = 0;
    int zoom_ = 0;
    size_t count_ = 0;
    std::string searched_;
    bool is_following_ = false;
    bool is_marking_ = false;
    Spot from_, to_;
    bool has_marks_ = false;
};

}  // namespace velora::windows
