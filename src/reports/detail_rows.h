#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "reports/columns.h"

namespace velora {

enum class LineKind : uint8_t { Item, Comment, Charge };

/// The detail line or miscellaneous charge in hand, with what its fields share.
///
/// `BaseConv`, `pricing_unit` and `last_line` outlive the line: a statement that falls away leaves them as the line
/// before left them. The columns below work on the row and not only read it: a line number becomes the last one, and
/// a base price may fill the currency and the price list of the line, so that the order of the columns matters.
struct DetailRow {
    SessionState& state;
    std::string& currency;  ///< of all amounts of the report
    QueryRow row;           ///< of the detail line

    LineKind kind = LineKind::Item;
    const MiscChargeRecord* charge = nullptr;  ///< of a charge row alone
    int16_t customer_type = 0;                 ///< discount level of whom the price is for

    double BaseConv = 0;
    std::string pricing_unit = {};
    int16_t last_line = 0;

    /// Takes the line on which the rows stand, and works out what its fields share, statement by statement.
    void take_line(Statements& statements);
    /// The same for a line that is an item's without saying so.
    /// @param keep_line  leaves the line's price list alone when the company's default has to serve
    void take_item(Statements& statements, bool keep_line);
    /// Takes a charge. It goes on with the numbering behind the last line, as far as 16 bits reach.
    void take_charge(const MiscChargeRecord& record, Statements& statements);

    /// An amount as the report shows it.
    [[nodiscard]] Outcome money(Checked amount);
    /// A share as "12.50%", without its sign.
    [[nodiscard]] Outcome percent(Checked share);
    /// Quantity times price in pricing units, before any discount.
    [[nodiscard]] Checked gross() const;
    /// @throws Fault 94 when the item kind is null
    [[nodiscard]] bool is_accounting_item() const;
};

// Two fields that another kind of report works out with a change of its own.
Outcome original_base_price(DetailRow& r);
Outcome margin(DetailRow& r);

/// The comment or instruction of an item line. Which of them print is the user's choice: all, comments only (kind 1),
/// instructions only (kind 2).
Outcome comment_or_instruction(SessionState& state, const QueryRow& row);

template <class Source>
Outcome line_comment(Source& source)
{
    return comment_or_instruction(source.state, source.row);
}

/// The detail fields of the quote, each with its value for each kind of row.
std::span<const Column<DetailRow>> detail_columns();

}  // namespace velora
