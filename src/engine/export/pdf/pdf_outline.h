#pragma once

#include <map>
#include <string>
#include <vector>

#include "engine/export/pdf/pdf_canvas.h"

namespace velora::engine {

/// The places that links and bookmarks of a file lead to.
class PdfOutline {
public:
    void add(PdfId page, const PdfCanvas::PageAnchor& anchor);

    /// Writes bookmarks and named places; returns the entries for the catalog.
    /// @param other_names  entries that stand beside the places in the dictionary of names
    [[nodiscard]] std::string write(PdfFile& file, const std::string& other_names) const;

private:
    struct Bookmark {
        std::string title, destination;
        int level;
    };
    struct Node {
        size_t parent = 0, first = 0, last = 0, previous = 0, next = 0, below = 0;  // 0: none; the root is node 0
    };
    [[nodiscard]] std::vector<Node> tree() const;
    [[nodiscard]] std::string write_bookmarks(PdfFile& file) const;

    std::vector<Bookmark> bookmarks_;
    std::map<std::string, std::string> places_;
};

}  // namespace velora::engine
