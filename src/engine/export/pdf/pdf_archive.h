#pragma once

#include <string>

#include "engine/page/page.h"

namespace velora::engine {

/// The colour profile of the standard RGB space (IEC 61966-2-1) in the form ICC.1:2001-04, for the output intent.
std::string srgb_profile();

/// What the file says about itself, as an XMP packet.
/// @param archived  whether it keeps the rules of PDF/A-2b
std::string xmp_packet(const Document& document, bool archived);

}  // namespace velora::engine
