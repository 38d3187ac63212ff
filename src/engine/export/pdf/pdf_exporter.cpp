#include "engine/export/pdf/pdf_exporter.h"

#include <algorithm>

#include "engine/export/common/short_number.h"
#include "engine/export/paint/paint.h"
#include "engine/export/pdf/pdf_archive.h"
#include "engine/export/pdf/pdf_attachments.h"
#include "engine/export/pdf/pdf_canvas.h"
#include "engine/export/pdf/pdf_outline.h"
#include "engine/export/pdf/pdf_tags.h"

namespace velora::engine {
namespace {

constexpr size_t kPagesInNode = 64;  // keeps the page tree's lists short in long files

class PdfExporter : public PageSink {
public:
    PdfExporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
        : file_(std::move(file)),
          fonts_(file_),
          images_(file_, context.warn),
          canvas_(fonts_, images_),
          painter_(context.fonts),
          catalog_(file_.reserve()),
          info_(file_.reserve()),
          tree_(file_.reserve()),
          resources_(file_.reserve())
    {
    }

    void begin(const Document& document) override;
    void page(Page&& page) override;
    void end() override;

private:
    struct Node {
        PdfId id;
        std::vector<PdfId> pages;
    };

    std::string annotations();
    std::string action(const Link& link);
    void write_tree();
    void write_info();
    [[nodiscard]] Claims claims() const;
    std::string archive_entries();

    PdfFile file_;
    PdfFonts fonts_;
    PdfImages images_;
    PdfCanvas canvas_;
    Painter painter_;
    PdfOutline outline_;
    std::unique_ptr<PdfTags> tags_;  ///< null for a file without
    PdfId catalog_, info_, tree_, resources_;
    std::vector<Node> nodes_;
    std::vector<PdfId> pages_;        ///< in order
    std::set<size_t> forward_pages_;  ///< numbers of pages that links led to before they were there
    const Document* document_ = nullptr;
};

void PdfExporter::begin(const Document& document)
{
    document_ = &document;
    if (document.protection) file_.protect(document.protection);
    if (!document.tagged) return;
    tags_ = std::make_unique<PdfTags>(file_);
    tags_->begin(document);
}

/// The action of a link; empty for one that leads nowhere. Page numbers count from 1.
std::string PdfExporter::action(const Link& link)
{
    const auto remote = [&](const std::string& place) {
        return "/A<</S/GoToR/F " + pdf_text(link.target) + "/D" + place + ">>";
    };
    const int32_t page = std::max(link.page, 1) - 1;
    switch (link.kind) {
        case Link::Kind::Reference:
            return link.target.empty() ? "" : "/A<</S/URI/URI " + pdf_literal(link.target) + ">>";
        case Link::Kind::LocalAnchor:
            return "/Dest" + pdf_literal(link.anchor);
        case Link::Kind::LocalPage:
            if (static_cast<size_t>(page) < pages_.size()) {
                return "/Dest[" + pdf_reference(pages_[static_cast<size_t>(page)]) + "/Fit]";
            }
            forward_pages_.insert(static_cast<size_t>(page) + 1);  // that page is still to come: go by a name
            return "/Dest" + pdf_literal("page " + std::to_string(page + 1));
        case Link::Kind::RemoteAnchor:
            return remote(pdf_literal(link.anchor));
        case Link::Kind::RemotePage:
            return remote("[" + std::to_string(page) + "/Fit]");
        case Link::Kind::None:
            break;
    }
    return "";
}

std::string PdfExporter::annotations()
{
    std::string list;
    for (const auto& [area, link, part] : canvas_.links()) {
        const std::string target = action(link);
        if (target.empty()) continue;
        const PdfId id = file_.reserve();
        std::string body = "<</Type/Annot/Subtype/Link/Border[0 0 0]/F 4/Rect[";
        for (const double value : {area.x, area.y, area.x + area.width, area.y + area.height}) {
            append_short_number(body, value);
            body += ' ';
        }
        body += "]" + target;
        const std::string& told = link.tooltip.empty() && tags_ ? link.target : link.tooltip;
        if (!told.empty()) body += "/Contents " + pdf_text(told);
        if (tags_) body += tags_->add_link(id, part);
        file_.object(id, body + ">>");
        list += pdf_reference(id) + " ";
    }
    return list.empty() ? "" : "/Annots[" + list + "]";
}

void PdfExporter::page(Page&& page)
{
    canvas_.begin_page(document_->page_height, tags_ ? &tags_->begin_page(page) : nullptr);
    painter_.paint(page, canvas_);
    const PdfId content = file_.reserve(), id = file_.reserve();
    file_.stream(content, "", canvas_.end_page());
    if (nodes_.empty() || nodes_.back().pages.size() == kPagesInNode) nodes_.push_back({file_.reserve(), {}});
    pages_.push_back(id);
    std::string entries = annotations();
    if (tags_) entries += tags_->end_page(id, canvas_.marks());
    file_.object(id, "<</Type/Page/Parent " + pdf_reference(nodes_.back().id) + "/Resources " +
                         pdf_reference(resources_) + "/Contents " + pdf_reference(content) + entries + ">>");
    nodes_.back().pages.push_back(id);
    for (const auto& anchor : canvas_.anchors()) outline_.add(id, anchor);
}

void PdfExporter::write_tree()
{
    if (pages_.empty()) page({});  // a file without any page cannot be opened
    std::string kids;
    for (const Node& node : nodes_) {
        std::string list;
        for (const PdfId id : node.pages) list += pdf_reference(id) + " ";
        file_.object(node.id, "<</Type/Pages/Parent " + pdf_reference(tree_) + "/Count " +
                                  std::to_string(node.pages.size()) + "/Kids[" + list + "]>>");
        kids += pdf_reference(node.id) + " ";
    }
    file_.object(tree_, "<</Type/Pages/Count " + std::to_string(pages_.size()) + "/Kids[" + kids + "]/MediaBox[0 0 " +
                            std::to_string(document_->page_width) + " " + std::to_string(document_->page_height) +
                            "]>>");
}

/// Archives must be able to open their files for ever: one that is locked is nothing for them.
Claims PdfExporter::claims() const
{
    Claims claims;
    claims.archived = fonts_.suit_archives() && !images_.any_of_inks() && !document_->protection;
    claims.tagged = tags_ != nullptr && (!document_->protection || document_->protection->read_out);
    claims.attached = document_->attachments != nullptr;
    return claims;
}

/// What an archive asks of every file: a description that programs read, and the meaning of its colours.
std::string PdfExporter::archive_entries()
{
    const PdfId metadata = file_.reserve(), profile = file_.reserve();
    file_.raw_stream(metadata, "/Type/Metadata/Subtype/XML", xmp_packet(*document_, claims()));
    file_.stream(profile, "/N 3", srgb_profile());
    return "/Metadata " + pdf_reference(metadata) +
           "/OutputIntents[<</Type/OutputIntent/S/GTS_PDFA1/OutputConditionIdentifier(sRGB)/Info(sRGB)"
           "/DestOutputProfile " +
           pdf_reference(profile) + ">>]";
}

void PdfExporter::write_info()
{
    std::string info = "<</Producer(Velora)";
    const auto entry = [&](const char* name, const std::string& text) {
        if (!text.empty()) info += std::string(name) + " " + pdf_text(text);
    };
    entry("/Title", document_->title.empty() ? document_->name : document_->title);
    entry("/Author", document_->author);
    entry("/Subject", document_->subject);
    entry("/Keywords", document_->keywords);
    if (document_->created) {
        std::string digits = document_->created->iso();
        std::erase_if(digits, [](char c) { return c < '0' || c > '9'; });
        info += "/CreationDate(D:" + digits + ")";
    }
    file_.object(info_, info + ">>");
}

void PdfExporter::end()
{
    write_tree();
    for (size_t i = 0; i < pages_.size(); ++i) {
        // Links by page number lead here when they stand before the page.
        if (forward_pages_.contains(i + 1)) {
            outline_.add(pages_[i], {double(document_->page_height), {"page " + std::to_string(i + 1), 0}, {}});
        }
    }
    file_.object(resources_, "<</Font<<" + fonts_.write() + ">>/XObject<<" + images_.entries() + ">>/ExtGState<<" +
                                 canvas_.alpha_entries() + ">>>>");
    write_info();
    AttachmentEntries attached;
    if (document_->attachments) attached = write_attachments(file_, *document_->attachments);
    std::string language = document_->language.empty() ? document_->locale : document_->language;
    std::ranges::replace(language, '_', '-');
    file_.object(catalog_, "<</Type/Catalog/Pages " + pdf_reference(tree_) + "/Lang" + pdf_literal(language) +
                               "/ViewerPreferences<</DisplayDocTitle true>>" + outline_.write(file_, attached.names) +
                               attached.catalog + archive_entries() + (tags_ ? tags_->finish() : "") + ">>");
    file_.finish(catalog_, info_);
}

}  // namespace

std::unique_ptr<PageSink> make_pdf_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
{
    return std::make_unique<PdfExporter>(std::move(file), context);
}

}  // namespace velora::engine
