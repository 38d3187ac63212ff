#pragma once

#include "forms/frm_viewer.h"
#include "windows/binding.h"
#include "windows/page_area.h"

class QListView;
class QTabWidget;
class QTreeWidget;

namespace velora::windows {

/// The part of a viewer on which its pages are painted.
class PageBinding final : public Binding {
public:
    PageBinding(BoundForm& form, forms::PageArea& control, PageArea& widget);
    void detach() override;

private:
    void show_more() override;
    void show_status();

    PageArea& area_;
    forms::frmViewer& viewer_;
};

/// What goes beside the pages: small pictures of them, and the tree of headings where there is one.
class PageGuide final : public QWidget {
public:
    explicit PageGuide(QWidget* parent);
    void show_pages(BoundForm& form, forms::frmViewer& viewer);
    void forget_viewer();

private:
    class Thumbnails;
    void fill_tree();
    void follow();
    void go_to(size_t page);

    BoundForm* form_ = nullptr;
    forms::frmViewer* viewer_ = nullptr;
    size_t watch_ = 0;
    QTabWidget* tabs_;
    QListView* list_;
    QTreeWidget* tree_;
    Thumbnails* model_ = nullptr;
    size_t entries_ = 0;
};

}  // namespace velora::windows
