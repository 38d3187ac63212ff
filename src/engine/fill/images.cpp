#include "engine/fill/images.h"

#include <fstream>
#include <sstream>

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

bool is_inside(const std::filesystem::path& file, const std::filesystem::path& folder)
{
    const auto relative = file.lexically_relative(folder);
    return !relative.empty() && *relative.begin() != "..";
}

/// None for what is no base64 text; blanks are passed over.
std::optional<std::string> decoded_base64(std::string_view text)
{
    constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        if (c == ' ' || c == '\n' || c == '\r' || c == '\t') continue;
        if (c == '=') break;
        const size_t digit = kDigits.find(c);
        if (digit == std::string_view::npos) return std::nullopt;
        bits = (bits << 6 | static_cast<uint32_t>(digit)) & 0xffffff;
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes.push_back(static_cast<char>(bits >> count & 0xff));
        }
    }
    return bytes;
}

std::shared_ptr<const ImageData> embedded(const std::string& name, std::string& reason)
{
    const size_t comma = name.find(',');
    const bool is_base64 = comma != std::string::npos && name.substr(0, comma).ends_with(";base64");
    auto bytes = is_base64 ? decoded_base64(std::string_view(name).substr(comma + 1)) : std::nullopt;
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
    std::error_code error;
    fs::path file = path;
    if (file.is_relative()) {
        const fs::path folder = fs::weakly_canonical(folder_.empty() ? fs::path(".") : folder_, error);
        file = fs::weakly_canonical(folder / file, error);
        if (error || !is_inside(file, folder)) {
            reason = "picture '" + path.substr(0, 200) + "' is outside the definition's folder";
            return nullptr;
        }
    }
    if (!fs::is_regular_file(file, error) || fs::file_size(file, error) > kLargestImage) {
        reason = "picture '" + path.substr(0, 200) + "' is not there or too large";
        return nullptr;
    }
    std::ifstream stream(file, std::ios::binary);
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
