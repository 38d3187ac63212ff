#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velora::engine {

/// A text that is an amount and nothing else, such as "(1,234.50 CAD)".
struct WrittenAmount {
    std::string prefix, suffix;  ///< around the digits, without sign and parentheses
    std::string digits;          ///< all of them
    size_t decimals = 0;
    bool grouped = false;
    std::string negative_prefix, negative_suffix;  ///< of a negative one, as it is written
    bool negative = false;
    char decimal_mark = 0;  ///< 0 where none is shown
    bool open = false;      ///< "1,234" and "1.234": the mark parts groups or decimals, as in the rest of the document

    /// The same where `decimal_mark` is known to be the document's mark.
    [[nodiscard]] WrittenAmount settled(char mark) const;
    [[nodiscard]] double value() const;
    /// The workbook's format code that shows the value as it is written.
    [[nodiscard]] std::string format() const;
};

/// Reads an amount as the documents of this product and of designers write it: figures in groups of three, a decimal
/// mark, a sign or parentheses, a currency's sign or code or a short unit, a percent sign. None for everything else:
/// figures with leading zeros, four and more figures without any mark, words, dates, telephone numbers.
std::optional<WrittenAmount> written_amount(std::string_view text);

}  // namespace velora::engine
