#include "engine/export/pdf/pdf_archive.h"

#include <array>
#include <cmath>
#include <vector>

#include "engine/export/common/xml_text.h"

namespace velora::engine {
namespace {

void append_big_endian(std::string& out, uint32_t number, int bytes)
{
    for (int at = bytes - 1; at >= 0; --at) out += static_cast<char>(number >> (8 * at) & 0xFF);
}

void append_fixed(std::string& out, double number)
{
    append_big_endian(out, static_cast<uint32_t>(std::lround(number * 65536)), 4);
}

std::string xyz(double x, double y, double z)
{
    std::string out("XYZ \0\0\0\0", 8);
    for (const double part : {x, y, z}) append_fixed(out, part);
    return out;
}

std::string description(std::string_view text)
{
    std::string out("desc\0\0\0\0", 8);
    append_big_endian(out, static_cast<uint32_t>(text.size() + 1), 4);
    out.append(text);
    out.append(1 + 4 + 4 + 2 + 1 + 67, '\0');  // no Unicode and no script text
    return out;
}

/// The linear share of each of 256 values.
std::string tone_curve()
{
    constexpr uint32_t kSteps = 256;
    std::string out("curv\0\0\0\0", 8);
    append_big_endian(out, kSteps, 4);
    for (uint32_t step = 0; step < kSteps; ++step) {
        const double value = step / 255.0;
        const double linear = value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        append_big_endian(out, static_cast<uint32_t>(std::lround(linear * 65535)), 2);
    }
    return out;
}

struct Tag {
    std::string_view name;
    size_t data;  ///< number in the list of data: the three curves are one
};

std::string made_profile()
{
    // primaries and white as they are under the light of the profile's connection space
    const std::vector<std::string> data{description("sRGB"),
                                        std::string("text\0\0\0\0No copyright, use freely\0", 33),
                                        xyz(0.9642, 1, 0.8249),
                                        xyz(0.4360, 0.2225, 0.0139),
                                        xyz(0.3851, 0.7169, 0.0971),
                                        xyz(0.1431, 0.0606, 0.7139),
                                        tone_curve()};
    constexpr auto kTags = std::to_array<Tag>({{"desc", 0},
                                               {"cprt", 1},
                                               {"wtpt", 2},
                                               {"rXYZ", 3},
                                               {"gXYZ", 4},
                                               {"bXYZ", 5},
                                               {"rTRC", 6},
                                               {"gTRC", 6},
                                               {"bTRC", 6}});
    constexpr size_t kHead = 128;
    std::vector<size_t> places;
    size_t place = kHead + 4 + 12 * kTags.size();
    for (const auto& each : data) {
        places.push_back(place);
        place += (each.size() + 3) / 4 * 4;
    }
    std::string out;
    append_big_endian(out, static_cast<uint32_t>(place), 4);
    out.append(4, '\0');
    append_big_endian(out, 0x02100000, 4);
    out += "mntrRGB XYZ ";
    for (const uint32_t part : {2026U, 1U, 1U, 0U, 0U, 0U}) append_big_endian(out, part, 2);
    out += "acsp";
    out.append(28, '\0');
    for (const double part : {0.9642, 1.0, 0.8249}) append_fixed(out, part);
    out.append(kHead - out.size(), '\0');
    append_big_endian(out, kTags.size(), 4);
    for (const Tag& tag : kTags) {
        out.append(tag.name);
        append_big_endian(out, static_cast<uint32_t>(places[tag.data]), 4);
        append_big_endian(out, static_cast<uint32_t>(data[tag.data].size()), 4);
    }
    for (size_t at = 0; at < data.size(); ++at) {
        out.append(places[at] - out.size(), '\0').append(data[at]);
    }
    return out.append(place - out.size(), '\0');
}

/// The claim of PDF/UA-1, and the words of it that archives want explained.
constexpr const char* kAccessible =
    "<pdfuaid:part xmlns:pdfuaid=\"http://www.aiim.org/pdfua/ns/id/\">1</pdfuaid:part>\n"
    "<pdfaExtension:schemas xmlns:pdfaExtension=\"http://www.aiim.org/pdfa/ns/extension/\" "
    "xmlns:pdfaSchema=\"http://www.aiim.org/pdfa/ns/schema#\" "
    "xmlns:pdfaProperty=\"http://www.aiim.org/pdfa/ns/property#\"><rdf:Bag><rdf:li rdf:parseType=\"Resource\">"
    "<pdfaSchema:schema>PDF/UA identification</pdfaSchema:schema>"
    "<pdfaSchema:namespaceURI>http://www.aiim.org/pdfua/ns/id/</pdfaSchema:namespaceURI>"
    "<pdfaSchema:prefix>pdfuaid</pdfaSchema:prefix><pdfaSchema:property><rdf:Seq><rdf:li rdf:parseType=\"Resource\">"
    "<pdfaProperty:name>part</pdfaProperty:name><pdfaProperty:valueType>Integer</pdfaProperty:valueType>"
    "<pdfaProperty:category>internal</pdfaProperty:category>"
    "<pdfaProperty:description>Part of ISO 14289 that the file keeps</pdfaProperty:description>"
    "</rdf:li></rdf:Seq></pdfaSchema:property></rdf:li></rdf:Bag></pdfaExtension:schemas>\n";

}  // namespace

std::string srgb_profile()
{
    static const std::string profile = made_profile();
    return profile;
}

std::string xmp_packet(const Document& document, Claims claims)
{
    std::string out =
        "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
        "<rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
        "xmlns:pdf=\"http://ns.adobe.com/pdf/1.3/\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" "
        "xmlns:pdfaid=\"http://www.aiim.org/pdfa/ns/id/\">\n";
    const auto add = [&](const char* name, const char* before, std::string_view text, const char* after) {
        if (text.empty()) return;
        out.append("<").append(name).append(">").append(before);
        append_xml_text(out, text);
        out.append(after).append("</").append(name).append(">\n");
    };
    if (claims.archived) {
        out += claims.attached ? "<pdfaid:part>3</pdfaid:part>" : "<pdfaid:part>2</pdfaid:part>";
        out += "<pdfaid:conformance>";
        out += claims.tagged ? "A" : "B";
        out += "</pdfaid:conformance>\n";
    }
    if (claims.tagged) out += kAccessible;
    constexpr const char* kLanguage = "<rdf:Alt><rdf:li xml:lang=\"x-default\">";
    add("dc:title", kLanguage, document.title.empty() ? document.name : document.title, "</rdf:li></rdf:Alt>");
    add("dc:description", kLanguage, document.subject, "</rdf:li></rdf:Alt>");
    add("dc:creator", "<rdf:Seq><rdf:li>", document.author, "</rdf:li></rdf:Seq>");
    add("pdf:Keywords", "", document.keywords, "");
    add("pdf:Producer", "", "Velora", "");
    if (document.created) {
        std::string iso = document.created->iso();
        if (iso.size() == 10) iso += "T00:00:00";
        add("xmp:CreateDate", "", iso, "");
    }
    return out + "</rdf:Description></rdf:RDF></x:xmpmeta>\n<?xpacket end=\"r\"?>";
}

}  // namespace velora::engine
