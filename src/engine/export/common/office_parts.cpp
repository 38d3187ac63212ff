#include "engine/export/common/office_parts.h"

#include "engine/export/common/xml_text.h"

namespace velora::engine {

size_t OfficeRelations::add(std::string_view type, std::string_view target, bool outside)
{
    relations_ += "<Relationship";
    append_attribute(relations_, "Id", "rId" + std::to_string(++count_));
    append_attribute(relations_, "Type", std::string(kOfficeTypes) + "/" + std::string(type));
    append_attribute(relations_, "Target", target);
    if (outside) append_attribute(relations_, "TargetMode", "External");
    relations_ += "/>";
    return count_;
}

std::string OfficeRelations::xml() const
{
    return std::string(kXmlHead) +
           "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">" + relations_ +
           "</Relationships>";
}

std::string OfficePictures::add(const std::shared_ptr<const ImageData>& data)
{
    const auto [place, is_new] = names_.try_emplace(data.get());
    if (is_new) {
        pictures_.push_back(data);
        const bool png = data->bytes.starts_with("\x89PNG");
        place->second = "image" + std::to_string(pictures_.size()) + (png ? ".png" : ".jpeg");
    }
    return place->second;
}

void OfficePictures::write(ZipFile& zip, std::string_view folder) const
{
    for (const auto& picture : pictures_) {
        zip.add(std::string(folder) + "/media/" + names_.at(picture.get()), picture->bytes);
    }
}

namespace {

std::string content_types(const std::vector<std::pair<std::string, std::string>>& types)
{
    std::string out(kXmlHead);
    out +=
        "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
        "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
        "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
        "<Default Extension=\"png\" ContentType=\"image/png\"/>"
        "<Default Extension=\"jpeg\" ContentType=\"image/jpeg\"/>";
    for (const auto& [part, type] : types) {
        out += "<Override";
        append_attribute(out, "PartName", "/" + part);
        append_attribute(out, "ContentType", type);
        out += "/>";
    }
    return out + "</Types>";
}

std::string properties(const Document& document)
{
    std::string out(kXmlHead);
    out +=
        "<cp:coreProperties xmlns:cp=\"http://schemas.openxmlformats.org/package/2006/metadata/core-properties\" "
        "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmlns:dcterms=\"http://purl.org/dc/terms/\" "
        "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">";
    const auto add = [&](const char* name, std::string_view text) {
        if (text.empty()) return;
        out.append("<").append(name).append(">");
        append_xml_text(out, text);
        out.append("</").append(name).append(">");
    };
    add("dc:title", document.title.empty() ? document.name : document.title);
    add("dc:subject", document.subject);
    add("dc:creator", document.author);
    add("cp:keywords", document.keywords);
    if (document.created) {
        out += "<dcterms:created xsi:type=\"dcterms:W3CDTF\">" + document.created->iso().substr(0, 10) +
               "T00:00:00Z</dcterms:created>";
    }
    return out + "</cp:coreProperties>";
}

}  // namespace

void write_office_frame(ZipFile& zip, const Document& document, std::string_view main,
                        const std::vector<std::pair<std::string, std::string>>& types)
{
    auto all = types;
    all.emplace_back("docProps/core.xml", "application/vnd.openxmlformats-package.core-properties+xml");
    zip.add("[Content_Types].xml", content_types(all));
    std::string relations = std::string(kXmlHead) +
                            "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
                            "<Relationship Id=\"rId1\" Type=\"" +
                            std::string(kOfficeTypes) + "/officeDocument\" Target=\"" + std::string(main) +
                            "\"/><Relationship Id=\"rId2\" Type=\"http://schemas.openxmlformats.org/package/2006/"
                            "relationships/metadata/core-properties\" Target=\"docProps/core.xml\"/></Relationships>";
    zip.add("_rels/.rels", relations);
    zip.add("docProps/core.xml", properties(document));
}

std::string office_color(Color color)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string out;
    for (const uint8_t part : {color.red, color.green, color.blue}) out += {kDigits[part >> 4], kDigits[part & 15]};
    return out;
}

}  // namespace velora::engine
