#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velora::engine {

/// A text as a part of a format code that stands for itself; a percent sign keeps its meaning.
std::string xls_literal(std::string_view literal);

/// The workbook's format code for a number pattern of definitions ("#,##0.00;(#,##0.00)").
///
/// Decimals that a pattern shows only when needed are settled for the value, because a spreadsheet would leave the
/// decimal mark standing ("5.").
/// @param shown  the text on the page; the currency sign of a pattern is taken from it
/// @return none when a workbook has no such format
std::optional<std::string> xls_number_format(std::string_view pattern, double value, std::string_view shown);

/// The workbook's format code for a date pattern of definitions ("dd MMM yyyy, HH:mm"). None when it has none.
std::optional<std::string> xls_date_format(std::string_view pattern);

}  // namespace velora::engine
