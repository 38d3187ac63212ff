#pragma once

#include <string_view>

#include "engine/page/page.h"

namespace velora::engine {

/// Reads pages in the print form and hands them to the sink. Elements of other kinds are left out.
/// @throws Fault 20507 with the reason when the text is no such document
void read_print_xml(std::string_view xml, PageSink& sink);

}  // namespace velora::engine
