#pragma once

#include <string_view>

namespace velora::engine {

/// "image/png", "image/jpeg", "image/svg+xml", told by the content; empty when it is none of them.
std::string_view image_media_type(std::string_view bytes);

}  // namespace velora::engine
