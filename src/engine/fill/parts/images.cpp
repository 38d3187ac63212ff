#include "engine/fill/parts/images.h"

#include <fstream>
#include <sstream>

#include "engine/definition/file_beside.h"
#include "values/base64.h"
#include "values/utf8.h"

namespace velora::engine {

namespace {

constexpr uintmax_t kLargestImage = 64u << 20;

uint32_t big_endian(std::string_view bytes, size_t at, size_t count)
{
    uint32_t number = 0;
    for (size_t index = 0; index < count; ++index) {
        number = number << 8 | static_cast<uint8_t>(bytes[at + index]);
    }
    return number;
}

std::optional<ImageSize> jpeg_size(std::string_view bytes)
{
    size_t at = 2;
    while (at + 9 < bytes.size() && static_cast<uint8_t>(bytes[at]) == 0xff) {
        const auto marker = static_cast<uint8_t>(bytes[at + 1]);
        const bool is_frame = marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
        if (is_frame) {
            return ImageSize{static_cast<int>(big_endian(bytes, at + 7, 2)),
                             static_cast<int>(big_endian(bytes, at + 5, 2))};
        }
        at += marker == 0xff ? 1 : 2 + big_endian(bytes, at + 2, 2);  // any number of bytes may fill up
    }
    return std::nullopt;
}

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

}  // namespace

std::shared_ptr<const ImageData> Images::find(const std::string& name, std::string& reason)
{
    if (const auto known = known_.find(name); known != known_.end()) return known->second;
    auto image = name.starts_with("data:") ? embedded(name, reason) : read(name, reason);
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

std::optional<ImageSize> image_size(std::string_view bytes)
{
    if (bytes.size() >= 24 && bytes.starts_with("\x89PNG")) {
        return ImageSize{static_cast<int>(big_endian(bytes, 16, 4)), static_cast<int>(big_endian(bytes, 20, 4))};
    }
    if (bytes.size() >= 10 && bytes.starts_with("GIF8")) {
        const auto little = [&](size_t at) {
            return static_cast<int>(static_cast<uint8_t>(bytes[at]) | static_cast<uint8_t>(bytes[at + 1]) << 8);
        };
        return ImageSize{little(6), little(8)};
    }
    return bytes.starts_with("\xff\xd8") ? jpeg_size(bytes) : std::nullopt;
}

}  // namespace velora::engine
