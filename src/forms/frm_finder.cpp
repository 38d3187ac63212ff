#include "forms/frm_finder.h"

namespace velora::forms {

namespace {

constexpr int kHeight = 6000;
constexpr size_t kPage = 200;

}  // namespace

frmFinder::frmFinder(SessionState& state, const std::string& caption, std::unique_ptr<FinderRows> source,
                     const std::string& search_for)
    : Form("frmFinder"), state_(state), source_(std::move(source))
{
    set_caption(caption);
    set_height(kHeight);
    tbxSearch.set_label("Search");
    tbxSearch.set_text(search_for);
    tbxSearch.change.handle("tbxSearch_Change", [this] { read("frmFinder.tbxSearch_Change", [this] { search(); }); });
    lvwRows.set_label("Found");
    lvwRows.set_columns(source_->columns());
    lvwRows.click.handle("lvwRows_Click", [this] { lvbOK.set_enabled(lvwRows.selected() >= 0); });
    lvwRows.double_click.handle("lvwRows_DblClick", [this] { lvbOK_Click(); });
    tbxSearch.on_key("Down", "tbxSearch_KeyDown", [this] {
        if (lvwRows.count() > 0 && enter(lvwRows)) lvwRows.choose(0);
    });
    lvwRows.fetch_more = [this] {
        bool added = false;
        read("frmFinder.lvwRows_Scroll", [&] { added = add_page(); });
        return added;
    };
    lvwRows.sort_by = [this](int column, bool descending) {
        column_ = static_cast<size_t>(column);
        descending_ = descending;
        read("frmFinder.lvwRows_ColumnClick", [this] { search(); });
    };
    lvbOK.set_caption("OK");
    lvbOK.set_tip("Accept the selected row");
    lvbOK.shortcut = kAcceptKey;
    lvbOK.click.handle("lvbOK_Click", [this] { lvbOK_Click(); });
    lvbCancel.set_caption("Cancel");
    lvbCancel.set_tip("Close the finder");
    lvbCancel.shortcut = kGiveUpKey;
    lvbCancel.click.handle("lvbCancel_Click", [this] { unload(); });
}

void frmFinder::load()
{
    lvbOK.set_enabled(false);
    read("frmFinder.Form_Load", [this] { search(); });
}

void frmFinder::read(const char* procedure, const std::function<void()>& work)
{
    with_failure_path(state_, source_->messenger(), procedure, work);
}

/// The rows begin anew, none of them selected.
void frmFinder::search()
{
    lvwRows.clear();
    keys_.clear();
    lvbOK.set_enabled(false);
    source_->start(tbxSearch.text(), column_, descending_);
    add_page();
}

bool frmFinder::add_page()
{
    std::vector<ListView::Row> rows;
    for (FinderRow& row : source_->next(kPage)) {
        keys_.push_back(std::move(row.key));
        rows.push_back(std::move(row.cells));
    }
    if (rows.empty()) return false;
    lvwRows.add_rows(std::move(rows));
    return true;
}

void frmFinder::lvbOK_Click()
{
    if (lvwRows.selected() < 0) return;
    chosen_ = keys_.at(static_cast<size_t>(lvwRows.selected()));
    unload();
}

}  // namespace velora::forms
