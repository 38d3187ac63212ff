#pragma once

#include <string>

#include "engine/page/page.h"

namespace velora::engine {

/// The colour profile of the standard RGB space (IEC 61966-2-1) in the form ICC.1:2001-04, for the output intent.
std::string srgb_profile();

/// What the file says about itself, as an XMP packet.
/// What a file may say of itself.
struct Claims {
    bool archived = false;  ///< it keeps the rules of PDF/A-2b, and with tags those of 2a
    bool tagged = false;    ///< it keeps the rules of PDF/UA-1
    bool attached = false;  ///< files of any kind go along: only PDF/A-3 allows that
};

std::string xmp_packet(const Document& document, Claims claims);

}  // namespace velora::engine
