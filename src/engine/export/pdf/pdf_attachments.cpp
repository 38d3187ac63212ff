#include "engine/export/pdf/pdf_attachments.h"

#include <algorithm>
#include <array>
#include <map>

namespace velora::engine {
namespace {

struct MediaType {
    std::string_view ending, type;
};
constexpr auto kMediaTypes = std::to_array<MediaType>({
    {".csv", "text/csv"},
    {".docx", "application/vnd.openxmlformats-officedocument.wordprocessingml.document"},
    {".jpg", "image/jpeg"},
    {".json", "application/json"},
    {".pdf", "application/pdf"},
    {".png", "image/png"},
    {".txt", "text/plain"},
    {".xlsx", "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"},
    {".xml", "text/xml"},
});

/// As a name of PDF, in which a slash would begin another one.
std::string media_type(std::string_view file)
{
    std::string_view type = "application/octet-stream";
    for (const MediaType& known : kMediaTypes) {
        if (file.ends_with(known.ending)) type = known.type;
    }
    std::string name = "/";
    for (const char c : type) name += c == '/' ? std::string("#2F") : std::string(1, c);
    return name;
}

}  // namespace

AttachmentEntries write_attachments(PdfFile& file, const std::vector<Attachment>& attachments)
{
    std::map<std::string, PdfId> in_order;  // readers look names up by halves
    for (const Attachment& attachment : attachments) {
        const PdfId content = file.reserve(), id = file.reserve();
        file.stream(content,
                    "/Type/EmbeddedFile/Subtype" + media_type(attachment.name) + "/Params<</Size " +
                        std::to_string(attachment.bytes.size()) + ">>",
                    attachment.bytes);
        const std::string name = pdf_text(attachment.name);
        file.object(id, "<</Type/Filespec/F " + name + "/UF " + name + "/AFRelationship/Supplement/Desc " + name +
                            "/EF<</F " + pdf_reference(content) + "/UF " + pdf_reference(content) + ">>>>");
        in_order[name] = id;
    }
    AttachmentEntries entries;
    if (in_order.empty()) return entries;
    entries.names = "/EmbeddedFiles<</Names[";
    entries.catalog = "/AF[";
    for (const auto& [name, id] : in_order) {
        entries.names += name + pdf_reference(id) + " ";
        entries.catalog += pdf_reference(id) + " ";
    }
    entries.names += "]>>";
    entries.catalog += "]";
    return entries;
}

}  // namespace velora::engine
