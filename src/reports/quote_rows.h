#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "reports/columns.h"
#include "reports/quote_document.h"

namespace velora {

/// Columns of `gQuoteDetails` that the rows read, looked up once.
struct LineColumns {
    explicit LineColumns(const Recordset& details);

    size_t Line, deDType, deIType, ItemID, APItem, deDesc, deComment, deQuantity, deQtyTransfer, deUofM, deConvFactor,
        deQuotedPrice, dePriceList, deDiscount, deCost, deLocation, deCategory, deCustItem, deShipDate, deLeadTime,
        deWeight, deHasItemCom, CoInType, CommIns;
};

/// The detail line in hand, with what its fields share. The last three outlive the line: a statement that falls away
/// leaves them as the line before left them.
struct DetailRow {
    QuoteDocument& document;
    Recordset& line;
    LineColumns columns;

    double BaseConv = 0;
    std::string pricing_unit = {};
    int16_t last_line = 0;

    [[nodiscard]] const Value& at(size_t LineColumns::*column) const { return line.value(columns.*column); }
    [[nodiscard]] Checked number(size_t LineColumns::*column) const { return Checked(at(column)); }
    /// A column as text that a lookup takes. @throws Fault 94 for a null
    [[nodiscard]] std::string text(size_t LineColumns::*column) const { return to_text(at(column)); }
    [[nodiscard]] bool is_item() const;
    /// @throws Fault 94 when the item kind is null
    [[nodiscard]] bool is_accounting_item() const;
    /// Quantity times price in pricing units, before any discount.
    [[nodiscard]] Checked gross() const;
};

/// The miscellaneous charge in hand.
struct ChargeRow {
    QuoteDocument& document;
    const MiscChargeRecord& charge;
    int16_t line;
};

/// A detail field of the quote report, with its value for each kind of row; none where the kind leaves it null.
struct DetailColumn {
    std::string_view name;
    ado::Type type;
    uint16_t size;
    Outcome (*item)(DetailRow&);
    Outcome (*comment)(DetailRow&);
    Outcome (*charge)(ChargeRow&);
};

std::span<const DetailColumn> quote_detail_columns();

/// Works out what the fields of an item row share, statement by statement.
void prepare_item_row(DetailRow& row, Statements& statements);

}  // namespace velora
