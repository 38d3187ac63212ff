#include "engine/fill/parts/images.h"

#include <fstream>
#include <sstream>

#include "engine/definition/file_beside.h"
#include "engine/page/picture_head.h"
#include "engine/picture/other_pictures.h"
#include "values/base64.h"
#include "values/fault.h"
#include "values/utf8.h"

namespace velora::engine {

namespace {

constexpr uintmax_t kLargestImage = 64u << 20;

std::shared_ptr<const ImageData> embedded(const std::string& name, std::string& reason)
{
    const size_t comma = name.find(',');
    const bool is_base64 = comma != std::string::npos && name.substr(0, comma).ends_with(";base64");
    auto bytes = is_base64 ? from_base64(std::string_view(name).substr(comma + 1)) : std::nullopt;
    if (!bytes) {
        reason = "the embedded picture cannot be read";
        return nullptr;
    }
    return std::make_shared<ImageData>(ImageData{std::move(*bytes), "embedded"});
}

/// A picture that no format but HTML knows, as PNG.
std::shared_ptr<const ImageData> made_showable(const ImageData& image, std::string& reason)
{
    const bool is_drawn = image_media_type(image.bytes) == "image/svg+xml";
    try {
        ShownPicture shown = shown_picture_of(image.bytes);
        return std::make_shared<ImageData>(
            ImageData{std::move(shown.png), image.source, shown.density, is_drawn ? image.bytes : std::string()});
    } catch (const Fault& fault) {
        reason = "picture '" + image.source + "' is left out: " + fault.what();
        return nullptr;
    }
}

}  // namespace

std::shared_ptr<const ImageData> Images::find(const std::string& name, std::string& reason)
{
    if (const auto known = known_.find(name); known != known_.end()) return known->second;
    auto image = name.starts_with("data:") ? embedded(name, reason) : read(name, reason);
    if (image && is_other_picture(image->bytes)) {
        image = made_showable(*image, reason);
    } else if (image && image_media_type(image->bytes).empty()) {
        reason = "picture '" + image->source +
                 "' is none of the kinds that are shown (PNG, JPEG, GIF, BMP, TIFF, "
                 "WebP, SVG) and is left out";
    }
    return known_[name] = std::move(image);
}

std::shared_ptr<const ImageData> Images::read(const std::string& name, std::string& reason) const
{
    namespace fs = std::filesystem;
    const std::string path = name.starts_with("file:") ? name.substr(name.starts_with("file://") ? 7 : 5) : name;
    const std::string shown(cut_to_bytes(path, 200));
    const auto file = file_beside(folder_, path);
    if (!file) {
        reason = "picture '" + shown + "' is outside the definition's folder";
        return nullptr;
    }
    std::error_code error;
    if (!fs::is_regular_file(*file, error) || fs::file_size(*file, error) > kLargestImage) {
        reason = "picture '" + shown + "' is not there or too large";
        return nullptr;
    }
    std::ifstream stream(*file, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return std::make_shared<ImageData>(ImageData{std::move(bytes).str(), path});
}

}  // namespace velora::engine
