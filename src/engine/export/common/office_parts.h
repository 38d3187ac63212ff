#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/export/common/zip_file.h"
#include "engine/page/page.h"

namespace velora::engine {

inline constexpr std::string_view kXmlHead = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
inline constexpr std::string_view kOfficeTypes = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";

/// What one part of an office document refers to. The numbers count from 1: "rId1".
class OfficeRelations {
public:
    /// @param type  the last word of the relation's type
    size_t add(std::string_view type, std::string_view target, bool outside = false);
    [[nodiscard]] bool empty() const { return relations_.empty(); }
    [[nodiscard]] std::string xml() const;

private:
    std::string relations_;
    size_t count_ = 0;
};

/// The pictures of an office document, each kept once.
class OfficePictures {
public:
    /// File name of the picture in the folder "media".
    std::string add(const std::shared_ptr<const ImageData>& data);
    void write(ZipFile& zip, std::string_view folder) const;

private:
    std::map<const ImageData*, std::string> names_;
    std::vector<std::shared_ptr<const ImageData>> pictures_;
};

/// The parts that every office document has: what it is made of, its title and its author.
/// @param main  path of the main part
/// @param types  path and content type of the parts that are no pictures and no relations
void write_office_frame(ZipFile& zip, const Document& document, std::string_view main,
                        const std::vector<std::pair<std::string, std::string>>& types);

/// "rrggbb"
std::string office_color(Color color);

}  // namespace velora::engine
