#include "windows/page_binding.h"

#include <QAbstractListModel>
#include <QCache>
#include <QHeaderView>
#include <QListView>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <cmath>

#include "windows/texts.h"

namespace velora::windows {

namespace {

/// What the layout has beside the pages; null where it has nothing.
PageGuide* beside(const QWidget& pages)
{
    return dynamic_cast<PageGuide*>(pages.window()->findChild<QWidget*>("guide"));
}

}  // namespace

PageBinding::PageBinding(BoundForm& form, forms::PageArea& control, PageArea& widget)
    : Binding(form, control, widget), area_(widget), viewer_(dynamic_cast<forms::frmViewer&>(form.form()))
{
    widget.show_pages(form, viewer_);
    if (auto* guide = beside(widget)) guide->show_pages(form, viewer_);
    watch(viewer_.moved, [this] { show_status(); });
    show_status();
}

/// The page of how many, and how often the text was found.
void PageBinding::show_status()
{
    QString status = shown(viewer_.position());
    if (!viewer_.searched().empty()) {
        status += QString("      %1: %2").arg(shown(viewer_.search_box.label())).arg(viewer_.matches());
    }
    form().show_status(status);
}

void PageBinding::detach()
{
    area_.forget_viewer();
    if (auto* guide = beside(area_)) guide->forget_viewer();
    Binding::detach();
}

void PageBinding::show_more()
{
    name_for_readers(area_, control().label(), control().tip());
}

/// Pictures are painted when they come into sight, and a few hundred are kept.
class PageGuide::Thumbnails final : public QAbstractListModel {
public:
    static constexpr int kWidth = 96;
    Thumbnails(const forms::frmViewer& viewer, QWidget& around)
        : QAbstractListModel(&around), viewer_(&viewer), around_(around), pictures_(kMostPictures)
    {
    }

    void follow()
    {
        const int count = viewer_ != nullptr ? static_cast<int>(viewer_->page_count()) : 0;
        if (count <= count_) return;
        beginInsertRows({}, count_, count - 1);
        count_ = count;
        endInsertRows();
    }
    void forget_viewer() { viewer_ = nullptr; }

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : count_; }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
    {
        if (role == Qt::DisplayRole) return QString::number(index.row() + 1);
        if (role == Qt::TextAlignmentRole) return static_cast<int>(Qt::AlignHCenter);
        return role == Qt::DecorationRole ? QVariant(picture(static_cast<size_t>(index.row()))) : QVariant();
    }

private:
    static constexpr int kMostPictures = 300;
    struct Picture {
        QPixmap pixmap;
        uint32_t revision = 0;
    };

    [[nodiscard]] QPixmap picture(size_t page) const
    {
        const auto* painted = viewer_ != nullptr ? dynamic_cast<const PaintedPages*>(viewer_->pages()) : nullptr;
        if (painted == nullptr) return {};
        const uint32_t revision = painted->revision(page);
        const Picture* known = pictures_.object(page);
        if (known != nullptr && known->revision == revision) return known->pixmap;
        const auto size = viewer_->pages()->page_size();
        const double ratio = around_.devicePixelRatioF();
        const double scale = kWidth * ratio / size.width;
        QImage drawn(static_cast<int>(kWidth * ratio), static_cast<int>(std::ceil(size.height * scale)),
                     QImage::Format_RGB32);
        constexpr double kPointsPerInch = 72;
        painted->paint(page, scale * kPointsPerInch,
                       {0, 0, drawn.width(), drawn.height(), reinterpret_cast<uint32_t*>(drawn.bits())});
        drawn.setDevicePixelRatio(ratio);
        auto* kept = new Picture{QPixmap::fromImage(drawn), revision};
        pictures_.insert(page, kept);
        return kept->pixmap;
    }

    const forms::frmViewer* viewer_;
    QWidget& around_;
    int count_ = 0;
    mutable QCache<size_t, Picture> pictures_;
};

PageGuide::PageGuide(QWidget* parent)
    : QWidget(parent), tabs_(new QTabWidget(this)), list_(new QListView(tabs_)), tree_(new QTreeWidget(tabs_))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tabs_);
    list_->setFocusPolicy(Qt::NoFocus);  // the pages have the focus; their keys turn them
    list_->setIconSize({Thumbnails::kWidth, Thumbnails::kWidth * 2});
    list_->setViewMode(QListView::IconMode);
    list_->setFlow(QListView::TopToBottom);
    list_->setWrapping(false);
    list_->setMovement(QListView::Static);
    list_->setUniformItemSizes(true);
    list_->setSpacing(4);
    tree_->hide();  // until there is something in it
    tree_->setFocusPolicy(Qt::NoFocus);
    tree_->header()->setVisible(false);
    tabs_->setDocumentMode(true);
    tabs_->setFocusPolicy(Qt::NoFocus);
    tabs_->tabBar()->setFocusPolicy(Qt::NoFocus);
    connect(list_, &QListView::clicked, this,
            [this](const QModelIndex& at) { go_to(static_cast<size_t>(at.row()) + 1); });
    connect(tree_, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* item) { go_to(item->data(0, Qt::UserRole).toULongLong()); });
}

void PageGuide::show_pages(BoundForm& form, forms::frmViewer& viewer)
{
    form_ = &form;
    viewer_ = &viewer;
    model_ = new Thumbnails(viewer, *this);
    list_->setModel(model_);
    tabs_->addTab(list_, shown(viewer.caxrViewer.label()));
    name_for_readers(*list_, viewer.caxrViewer.label(), {});
    watch_ = viewer.moved.watch([this] { follow(); });
    follow();
}

void PageGuide::forget_viewer()
{
    if (viewer_ == nullptr) return;
    viewer_->moved.forget(watch_);
    viewer_ = nullptr;
    model_->forget_viewer();
}

void PageGuide::follow()
{
    model_->follow();
    list_->viewport()->update();  // pages that came before the last may look different now
    if (entries_ != viewer_->tree().size()) fill_tree();
    const auto at = model_->index(static_cast<int>(viewer_->page()) - 1, 0);
    if (list_->currentIndex() == at) return;
    list_->setCurrentIndex(at);
    list_->scrollTo(at);
}

void PageGuide::fill_tree()
{
    tree_->clear();
    entries_ = viewer_->tree().size();
    std::vector<QTreeWidgetItem*> above;  // by level
    for (const auto& entry : viewer_->tree()) {
        above.resize(std::min(above.size(), static_cast<size_t>(std::max(entry.level, 1)) - 1));
        auto* item = above.empty() ? new QTreeWidgetItem(tree_) : new QTreeWidgetItem(above.back());
        item->setText(0, shown(entry.text));
        item->setToolTip(0, shown(entry.text));
        item->setData(0, Qt::UserRole, static_cast<qulonglong>(entry.page + 1));
        above.push_back(item);
    }
    if (entries_ > 0 && tabs_->count() == 1) tabs_->addTab(tree_, shown(viewer_->tree_label()));
    name_for_readers(*tree_, viewer_->tree_label(), {});
}

void PageGuide::go_to(size_t page)
{
    if (viewer_ == nullptr) return;
    form_->act([&] { viewer_->go_to(page); });
}

}  // namespace velora::windows
