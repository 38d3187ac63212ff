#include "forms/frm_viewer.h"

#include <gtest/gtest.h>

#include "forms/desk.h"
#include "platform/painted_pages.h"

namespace velora::forms {
namespace {

/// Pages of one word each, which may come and change.
struct Words final : PageView, PaintedPages {
    std::vector<std::string> words;
    std::vector<uint32_t> revisions;
    mutable size_t read = 0;

    void add(const std::string& word)
    {
        words.push_back(word);
        revisions.push_back(0);
    }
    void change(size_t page, const std::string& word)
    {
        words[page] = word;
        ++revisions[page];
    }

    [[nodiscard]] size_t page_count() const override { return words.size(); }
    [[nodiscard]] std::string page_png(size_t, double) const override { return {}; }
    [[nodiscard]] std::string page_text(size_t page) const override
    {
        ++read;
        return words[page];
    }
    [[nodiscard]] std::vector<OutlineEntry> outline() const override { return {{"heading", 0, 1}}; }
    void Export(ExportFormat, const std::string&) const override {}
    void paint(size_t, double, const PixelArea&) const override {}
    [[nodiscard]] std::vector<PageText> page_texts(size_t) const override { return {}; }
    [[nodiscard]] uint32_t revision(size_t page) const override { return revisions[page]; }
};

TEST(Viewer, GrowsWithItsPagesAndSaysSo)
{
    SessionState state;
    Desk desk(state);
    const auto pages = std::make_shared<Words>();
    pages->add("one apple");
    frmViewer& viewer = desk.begin_viewer(pages);
    EXPECT_EQ(viewer.position(), "1 / 1 so far");
    EXPECT_FALSE(viewer.print.enabled()) << "the pages that are missing would not be printed";
    EXPECT_FALSE(viewer.export_pages.enabled());

    viewer.search_box.set_text("APPLE");
    EXPECT_EQ(viewer.matches(), 1u);
    pages->add("none");
    pages->add("apple and apple");
    viewer.pages_grew(false);
    EXPECT_EQ(viewer.matches(), 3u) << "what came is searched too";
    EXPECT_EQ(viewer.page(), 1u) << "and moves nobody";
    EXPECT_EQ(pages->read, 3u) << "each page once";
    viewer.find_next.press();
    EXPECT_EQ(viewer.position(), "3 / 3 so far");
    viewer.find_next.press();
    EXPECT_EQ(viewer.page(), 1u) << "round the end";

    pages->change(2, "apple, apple, apple");
    pages->change(0, "one pear");
    viewer.pages_grew(true);
    EXPECT_EQ(viewer.matches(), 3u) << "pages that changed are searched anew";
    EXPECT_EQ(pages->read, 5u) << "and no others";
    EXPECT_EQ(viewer.position(), "1 / 3");
    EXPECT_TRUE(viewer.print.enabled());
    EXPECT_TRUE(viewer.export_pages.enabled());
    EXPECT_EQ(viewer.tree().size(), 1u);
    viewer.unload();
}

}  // namespace
}  // namespace velora::forms
