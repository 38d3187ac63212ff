#include "engine/export/pdf/pdf_tags.h"

#include "engine/export/common/short_number.h"
#include "engine/export/common/xml_text.h"

namespace velora::engine {
namespace {

std::string references(const std::vector<PdfId>& ids)
{
    std::string list;
    for (const PdfId id : ids) {
        append_pdf_reference(list, id);
        list += ' ';
    }
    return list;
}

void append_head(std::string& out, std::string_view type, PdfId parent)
{
    out.append("<</S/").append(type).append("/P ");
    append_pdf_reference(out, parent);
}

std::string type_of(const StructurePart& part)
{
    switch (part.role) {
        case PartRole::Paragraph:
            return "P";
        case PartRole::Heading:
            return "H" + std::to_string(part.level);
        case PartRole::Figure:
            return "Figure";
        case PartRole::Table:
            return "Table";
        case PartRole::Row:
            return "TR";
        case PartRole::HeadCell:
            return "TH";
        case PartRole::Cell:
            break;
    }
    return "TD";
}

/// Attributes and alternative text of a part.
std::string entries_of(const StructurePart& part, double page_height)
{
    if (part.role == PartRole::Figure) {
        const double left = part.place.x, top = page_height - part.place.y;
        return "/Alt" + pdf_text(part.description) + "/A<</O/Layout/Placement/Block/BBox[" + short_number(left) + " " +
               short_number(top - part.place.height) + " " + short_number(left + part.place.width) + " " +
               short_number(top) + "]>>";
    }
    std::string attributes;
    if (part.role == PartRole::HeadCell) attributes = part.heads_row ? "/Scope/Row" : "/Scope/Column";
    if (part.span > 1) attributes += "/ColSpan " + std::to_string(part.span);
    return attributes.empty() ? "" : "/A<</O/Table" + attributes + ">>";
}

}  // namespace

PdfTags::PdfTags(PdfFile& file) : file_(file), root_(file.reserve())
{
    document_.id = file.reserve();
}

void PdfTags::begin(const Document& document)
{
    finder_.begin(document);
    page_height_ = document.page_height;
}

const PageStructure& PdfTags::begin_page(const Page& page)
{
    structure_ = finder_.find(page);
    content_.assign(structure_.parts.size(), {});
    for (Content& content : content_) content.id = file_.reserve();
    return structure_;
}

std::string PdfTags::add_link(PdfId annotation, int32_t part)
{
    if (part < 0) return "";
    Content& content = content_[static_cast<size_t>(part)];
    if (content.link == 0) content.link = file_.reserve();
    content.annotations.push_back(annotation);
    keys_.push_back(content.link);
    return "/StructParent " + std::to_string(keys_.size() - 1);
}

/// A text of nothing that shows is none; cells keep their place.
bool PdfTags::is_heard(size_t index) const
{
    const PartRole role = structure_.parts[index].role;
    const bool by_content = role == PartRole::Paragraph || role == PartRole::Heading || role == PartRole::Figure;
    return !by_content || content_[index].first_mark != kNone || !content_[index].annotations.empty();
}

bool PdfTags::is_linked_figure(size_t index) const
{
    return structure_.parts[index].role == PartRole::Figure && content_[index].link != 0;
}

/// The element that stands for the part in the tree.
PdfId PdfTags::id_of(size_t index) const
{
    return is_linked_figure(index) ? content_[index].link : content_[index].id;
}

/// Makes the part a kid of its parent.
void PdfTags::join(size_t index)
{
    const StructurePart& part = structure_.parts[index];
    const PdfId id = id_of(index);
    if (part.role == PartRole::Table) {
        close_table();
        table_.id = id;
    }
    Content& content = content_[index];
    if (part.role == PartRole::Row) {
        content.parent = table_.id;
        table_.kids.push_back(id);
    } else if (part.parent >= 0) {
        Content& parent = content_[static_cast<size_t>(part.parent)];
        content.parent = parent.id;
        const auto kid = static_cast<int32_t>(index);
        (parent.first_kid == kNone ? parent.first_kid : content_[static_cast<size_t>(parent.last_kid)].next_kid) = kid;
        parent.last_kid = kid;
    } else {
        content.parent = document_.id;
        document_.kids.push_back(id);
    }
}

void PdfTags::append_marks(std::string& out, const Content& content) const
{
    for (int32_t mark = content.first_mark; mark != kNone; mark = next_mark_[static_cast<size_t>(mark)]) {
        append_number(out, mark);
        out += ' ';
    }
}

void PdfTags::append_annotations(std::string& out, const Content& content, PdfId page)
{
    for (const PdfId annotation : content.annotations) {
        out += "<</Type/OBJR/Pg " + pdf_reference(page) + "/Obj " + pdf_reference(annotation) + ">>";
    }
}

void PdfTags::write_part(size_t index, PdfId page)
{
    const StructurePart& part = structure_.parts[index];
    if (part.role == PartRole::Table) return;  // when it is complete
    const Content& content = content_[index];
    if (content.link != 0) return write_linked_part(index, page);
    std::string& out = file_.begin_packed_object(content.id);
    append_head(out, type_of(part), content.parent);
    if (part.role == PartRole::Figure || part.role == PartRole::HeadCell || part.span > 1) {
        out += entries_of(part, page_height_);
    }
    if (content.first_mark != kNone) {
        out += "/Pg ";
        append_pdf_reference(out, page);
    }
    if (content.first_mark != kNone || content.first_kid != kNone) {
        out += "/K[";
        append_marks(out, content);
        for (int32_t kid = content.first_kid; kid != kNone; kid = content_[static_cast<size_t>(kid)].next_kid) {
            append_pdf_reference(out, id_of(static_cast<size_t>(kid)));
            out += ' ';
        }
        out += ']';
    }
    out += ">>";
    file_.end_packed_object();
}

/// A link stands inside a text that it makes up, and around a figure.
void PdfTags::write_linked_part(size_t index, PdfId page)
{
    const StructurePart& part = structure_.parts[index];
    const Content& content = content_[index];
    const std::string on_page = "/Pg " + pdf_reference(page);
    const std::string entries = entries_of(part, page_height_);
    std::string marks, annotations;
    append_marks(marks, content);
    append_annotations(annotations, content, page);
    if (is_linked_figure(index)) {
        write_element(content.id, "Figure", content.link, entries + on_page, marks);
        write_element(content.link, "Link", content.parent, on_page, pdf_reference(content.id) + " " + annotations);
        return;
    }
    write_element(content.id, type_of(part), content.parent, entries, pdf_reference(content.link));
    write_element(content.link, "Link", content.id, on_page, marks + annotations);
}

std::string PdfTags::end_page(PdfId page, const std::vector<int32_t>& marks)
{
    next_mark_.assign(marks.size(), kNone);
    for (size_t at = 0; at < marks.size(); ++at) {
        Content& content = content_[static_cast<size_t>(marks[at])];
        const auto mark = static_cast<int32_t>(at);
        (content.first_mark == kNone ? content.first_mark : next_mark_[static_cast<size_t>(content.last_mark)]) = mark;
        content.last_mark = mark;
    }
    for (size_t index = 0; index < content_.size(); ++index) {
        if (is_heard(index)) join(index);
    }
    // Parts stand behind what they are in, so that now all kids are known.
    for (size_t index = 0; index < content_.size(); ++index) {
        if (is_heard(index)) write_part(index, page);
    }
    std::string owners;
    for (const int32_t part : marks) {
        const Content& content = content_[static_cast<size_t>(part)];
        const bool in_link = content.link != 0 && !is_linked_figure(static_cast<size_t>(part));
        append_pdf_reference(owners, in_link ? content.link : content.id);
        owners += ' ';
    }
    const PdfId list = file_.reserve();
    file_.packed_object(list, "[" + owners + "]");
    keys_.push_back(list);
    return "/Tabs/S/StructParents " + std::to_string(keys_.size() - 1);
}

void PdfTags::write_element(PdfId id, std::string_view type, PdfId parent, const std::string& entries,
                            const std::string& kids)
{
    std::string& out = file_.begin_packed_object(id);
    append_head(out, type, parent);
    out += entries;
    if (!kids.empty()) out.append("/K[").append(kids).append("]");
    out += ">>";
    file_.end_packed_object();
}

void PdfTags::close_table()
{
    if (table_.id != 0) write_element(table_.id, "Table", document_.id, "", references(table_.kids));
    table_ = {};
}

std::string PdfTags::finish()
{
    close_table();
    write_element(document_.id, "Document", root_, "", references(document_.kids));
    std::string keys;
    for (size_t key = 0; key < keys_.size(); ++key) {
        keys += std::to_string(key) + " " + pdf_reference(keys_[key]) + " ";
    }
    file_.packed_object(root_, "<</Type/StructTreeRoot/K " + pdf_reference(document_.id) + "/ParentTree<</Nums[" +
                                   keys + "]>>/ParentTreeNextKey " + std::to_string(keys_.size()) + ">>");
    return "/StructTreeRoot " + pdf_reference(root_) + "/MarkInfo<</Marked true>>";
}

}  // namespace velora::engine
