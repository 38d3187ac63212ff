#include "engine/export/common/picture_bytes.h"

namespace velora::engine {

std::string_view image_media_type(std::string_view bytes)
{
    if (bytes.starts_with("\x89PNG\r\n\x1A\n")) return "image/png";
    if (bytes.starts_with("\xFF\xD8\xFF")) return "image/jpeg";
    if (bytes.substr(0, 1024).find("<svg") != std::string_view::npos) return "image/svg+xml";
    return {};
}

}  // namespace velora::engine
