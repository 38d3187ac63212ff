#pragma once

#include <string>

#include "engine/export/xls/xls_strings.h"
#include "engine/export/xls/xls_styles.h"

namespace velora::engine {

/// Fonts, grounds, borders, number formats and cell formats.
std::string xlsx_styles(const XlsStyles& styles);
/// The texts that cells refer to by number.
std::string xlsx_strings(const XlsStrings& strings, const XlsStyles& styles);

}  // namespace velora::engine
