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
    static constexpr int32_t kNone = -1;

    /// What the tree has of a part. Marks and kids are chains, since nearly all parts have one or none.
    struct Content {
        PdfId id = 0, parent = 0;
        PdfId link = 0;  ///< the element around its content when it is linked
        int32_t first_mark = kNone, last_mark = kNone;
        int32_t first_kid = kNone, last_kid = kNone, next_kid = kNone;  ///< parts of the page
        std::vector<PdfId> annotations;
    };

    void close_table();
    void join(size_t index);
    void write_part(size_t index, PdfId page);
    void write_linked_part(size_t index, PdfId page);
    void write_element(PdfId id, std::string_view type, PdfId parent, const std::string& entries,
                       const std::string& kids);
    void append_marks(std::string& out, const Content& content) const;
    static void append_annotations(std::string& out, const Content& content, PdfId page);
    [[nodiscard]] PdfId id_of(size_t index) const;
    [[nodiscard]] bool is_heard(size_t index) const;
    [[nodiscard]] bool is_linked_figure(size_t index) const;

    PdfFile& file_;
    StructureFinder finder_;
    double page_height_ = 0;
    PageStructure structure_;
    std::vector<Content> content_;    ///< of the page's parts
    std::vector<int32_t> next_mark_;  ///< by mark: the part's next one
    Open document_, table_;
    PdfId root_;
    std::vector<PdfId> keys_;  ///< what each key of the parent tree leads to
};

}  // namespace velora::engine
