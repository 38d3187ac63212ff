#pragma once

#include <string>
#include <vector>

#include "engine/export/pdf/page_structure.h"
#include "engine/export/pdf/pdf_file.h"

namespace velora::engine {

/// Writes the structure tree of a tagged file (ISO 32000, 14.7): what each piece of the pages' content is, in the order
/// of reading. A page's parts are written with the page; only a table that goes on is kept open.
class PdfTags {
public:
    explicit PdfTags(PdfFile& file);

    void begin(const Document& document);
    /// Finds the parts of the page that comes next; they hold until the one after.
    const PageStructure& begin_page(const Page& page);
    /// Makes a link on this page part of the tree. @return entries of its annotation
    std::string add_link(PdfId annotation, int32_t part);
    /// @param marks  by number of marked content: the part that it belongs to
    /// @return entries of the page
    std::string end_page(PdfId page, const std::vector<int32_t>& marks);
    /// @return entries of the catalog
    std::string finish();

private:
    struct Open {
        PdfId id = 0;
        std::vector<PdfId> kids;
    };
    struct Content {
        PdfId id = 0, parent = 0;
        PdfId link = 0;  ///< the element around its content when it is linked
        std::vector<size_t> marks;
        std::vector<PdfId> annotations;
        std::vector<PdfId> kids;
    };

    void close_table();
    void join(size_t index);
    void write_part(size_t index, PdfId page);
    void write_element(PdfId id, std::string_view type, PdfId parent, const std::string& entries,
                       const std::string& kids);
    [[nodiscard]] std::string content_of(const Content& content, PdfId page) const;
    [[nodiscard]] bool is_heard(size_t index) const;
    [[nodiscard]] bool is_linked_figure(size_t index) const;

    PdfFile& file_;
    StructureFinder finder_;
    double page_height_ = 0;
    PageStructure structure_;
    std::vector<Content> content_;  ///< of the page's parts
    Open document_, table_;
    PdfId root_;
    std::vector<PdfId> keys_;  ///< what each key of the parent tree leads to
};

}  // namespace velora::engine
