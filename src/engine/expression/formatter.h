#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/expression/cell.h"

namespace velora::engine {

/// Turns cells into text by a pattern, and texts back into cells. Made once, used for many cells; its const calls may
/// come from several threads.
class Formatter {
public:
    virtual ~Formatter() = default;
    /// None for a cell that the pattern is not for.
    [[nodiscard]] virtual std::optional<std::string> format(const Cell& cell) const = 0;
    /// Null for a text that does not fit.
    [[nodiscard]] virtual Cell parse(std::string_view text) const = 0;

protected:
    Formatter() = default;
    Formatter(const Formatter&) = default;
    Formatter& operator=(const Formatter&) = default;
};

/// Stands for the pattern by which a locale writes amounts of its currency.
inline constexpr std::string_view kCurrencyPattern = "currency";

/// "#,##0.00", "0.0%", "¤#,##0.00;(¤#,##0.00)". Halves go to the even neighbour, seen from the exact binary value
/// of a double. A locale may name marks of its own: "fr_CA@marks=.|," writes 1,234.50, whatever fr_CA does. Null when
/// the pattern cannot be read.
std::shared_ptr<const Formatter> make_number_formatter(std::string_view pattern, const std::string& locale);

/// "dd.MM.yyyy HH:mm", or the styles "short", "medium", "long", "full", "default", "hide", alone for date and time
/// or as "date,time". Empty is the short form of both. Null when the pattern cannot be read.
std::shared_ptr<const Formatter> make_date_formatter(std::string_view pattern, const std::string& locale,
                                                     const std::string& time_zone);

/// The letters that "medium,hide" and its like stand for in a region: "d MMM y". Null when the pattern is no style.
std::optional<std::string> letters_of_date_style(std::string_view pattern, const std::string& locale);

/// The formatters that one program made, so that `new DecimalFormat("0.00")` costs a look-up a row.
class FormatterCache {
public:
    enum class Kind : uint8_t { Number, Date };
    [[nodiscard]] std::shared_ptr<const Formatter> get(Kind kind, std::string_view pattern, const std::string& locale,
                                                       const std::string& time_zone);

private:
    struct Entry {
        Kind kind;
        std::string pattern;
        std::string locale;
        std::string time_zone;
        std::shared_ptr<const Formatter> formatter;
    };
    std::mutex mutex_;
    std::vector<Entry> entries_;
};

}  // namespace velora::engine
