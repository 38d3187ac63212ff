#include "engine/export/pdf/pdf_outline.h"
#include "engine/export/common/short_number.h"

namespace velora::engine {

void PdfOutline::add(PdfId page, const PdfCanvas::PageAnchor& anchor)
{
    const std::string destination = "[" + pdf_reference(page) + "/XYZ null " + short_number(anchor.y) + " null]";
    if (!anchor.anchor.name.empty()) places_.try_emplace(anchor.anchor.name, destination);
    if (anchor.anchor.bookmark_level <= 0) return;
    bookmarks_.push_back(
        {anchor.anchor.name.empty() ? anchor.label : anchor.anchor.name, destination, anchor.anchor.bookmark_level});
}

/// A bookmark hangs below the nearest one before it that has a lower level.
std::vector<PdfOutline::Node> PdfOutline::tree() const
{
    std::vector<Node> nodes(bookmarks_.size() + 1);
    std::vector<std::pair<int, size_t>> open{{0, 0}};
    for (size_t i = 1; i < nodes.size(); ++i) {
        const int level = bookmarks_[i - 1].level;
        while (open.back().first >= level) open.pop_back();
        const size_t parent = open.back().second;
        nodes[i].parent = parent;
        nodes[i].previous = nodes[parent].last;
        if (nodes[parent].last != 0) nodes[nodes[parent].last].next = i;
        if (nodes[parent].first == 0) nodes[parent].first = i;
        nodes[parent].last = i;
        for (const auto& [above_level, above] : open) ++nodes[above].below;
        open.emplace_back(level, i);
    }
    return nodes;
}

std::string PdfOutline::write_bookmarks(PdfFile& file) const
{
    const std::vector<Node> nodes = tree();
    std::vector<PdfId> ids;
    for (size_t i = 0; i < nodes.size(); ++i) ids.push_back(file.reserve());
    for (size_t i = 0; i < nodes.size(); ++i) {
        const Node& node = nodes[i];
        std::string body = "<<";
        const auto refer = [&](const char* name, size_t other) {
            if (other != 0) body += std::string(name) + " " + pdf_reference(ids[other]);
        };
        if (i == 0) {
            body += "/Type/Outlines";
        } else {
            body += "/Title " + pdf_text(bookmarks_[i - 1].title) + "/Dest" + bookmarks_[i - 1].destination +
                    "/Parent " + pdf_reference(ids[node.parent]);
        }
        refer("/First", node.first);
        refer("/Last", node.last);
        refer("/Prev", node.previous);
        refer("/Next", node.next);
        if (node.below != 0) body += "/Count " + std::to_string(node.below);
        file.object(ids[i], body + ">>");
    }
    return "/Outlines " + pdf_reference(ids[0]) + "/PageMode/UseOutlines";
}

std::string PdfOutline::write(PdfFile& file, const std::string& other_names) const
{
    std::string entries, dictionary = other_names;
    if (!bookmarks_.empty()) entries += write_bookmarks(file);
    if (!places_.empty()) {
        const PdfId names = file.reserve();
        std::string list = "<</Names[";
        for (const auto& [name, destination] : places_) list += pdf_literal(name) + destination;
        file.object(names, list + "]>>");
        dictionary += "/Dests " + pdf_reference(names);
    }
    if (!dictionary.empty()) entries += "/Names<<" + dictionary + ">>";
    return entries;
}

}  // namespace velora::engine
