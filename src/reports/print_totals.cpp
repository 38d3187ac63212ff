#include "reports/print_totals.h"

#include <array>
#include <memory>
#include <vector>

#include "pricing/amount_display.h"
#include "pricing/taxes.h"
#include "pricing/units.h"
#include "reports/detail_lines.h"
#include "reports/line_kinds.h"
#include "reports/query_row.h"
#include "reports/run_frame.h"
#include "reports/statement.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr std::array<int32_t, 3> kTolerated{fault::kArrayFixed, fault::kNull, fault::kInvalidRow};

/// What one line or charge comes to.
struct TaxedAmount {
    double net = 0;  // of a line in four-place fixed point, of a charge the single that it is
    Fixed4 base;
    std::array<double, kTaxSlots> included{};
    std::array<Fixed4, kTaxSlots> tax{};
};

/// The taxes of one line or charge: class and inclusion flag for each slot. A null flag is not "1", a null class is
/// a fault of the statement that reads it.
struct TaxFields {
    std::array<Value, kTaxSlots> tax_class;
    std::array<Value, kTaxSlots> included;
};

/// Where the tax fields of a line stand, the slots 1 to 5 in order.
class TaxColumns {
public:
    explicit TaxColumns(const Rows& rows)
    {
        for (size_t n = 0; n < kTaxSlots; ++n) {
            classes_[n] = rows.column("deTaxClass" + std::to_string(n + 1));
            included_[n] = rows.column("deTaxIncl" + std::to_string(n + 1));
        }
    }
    [[nodiscard]] TaxFields of(const Rows& rows) const
    {
        TaxFields fields;
        for (size_t n = 0; n < kTaxSlots; ++n) {
            fields.tax_class[n] = rows.value(classes_[n]);
            fields.included[n] = rows.value(included_[n]);
        }
        return fields;
    }

private:
    std::array<size_t, kTaxSlots> classes_{};
    std::array<size_t, kTaxSlots> included_{};
};

bool is_one(const Value& flag)
{
    return !flag.is_null() && trimmed_text(flag) == "1";
}

bool is_filled(const Value& text)
{
    return !text.is_null() && !trimmed_text(text).empty();
}

class PrintTotals {
public:
    PrintTotals(SessionState& state, int16_t count, TaxSlots& slots)
        : state_(state), count_(static_cast<size_t>(count)), slots_(slots), statements_(state, kTolerated)
    {
    }

    void read_lines(Recordset& rows)
    {
        lines_.resize(rows.RecordCount());
        const QueryRow row(rows);
        const TaxColumns taxes(rows);
        rows.MoveFirst();
        for (size_t at = 0; at < lines_.size(); ++at, rows.MoveNext()) {
            statements_.at_row(at + 1);
            if (!is_item_line(row.at<"deDType">())) continue;
            price_line(row, lines_[at]);
            sum_line(row);
            tax_amount(taxes.of(rows), lines_[at]);
        }
        statements_.at_row(0);
    }

    void read_charges(const std::vector<MiscChargeRecord>& charges)
    {
        charges_.resize(charges.size());
        for (size_t at = 0; at < charges.size(); ++at) add_charge(charges[at], charges_[at]);
    }

    void publish()
    {
        for (const auto& line : lines_) detail_sum_ += in_currency(line.net);
        sum_taxes(lines_);
        for (const auto& charge : charges_) charge_sum_ += in_currency(charge.net);
        sum_taxes(charges_);
        for (size_t n = 0; n < count_; ++n) tax_sum_ += in_currency(taxes_[n]);
        publish_sums();
        publish_profit();
    }

private:
    /// A number with the decimals of the quote's currency, which is asked for anew each time.
    [[nodiscard]] double in_currency(double value)
    {
        return rounded(value, currency_decimals(state_, state_.gQuote.quCurCode));
    }

    void price_line(const QueryRow& row, TaxedAmount& line)
    {
        const Value& kind = row.at<"deIType">();
        if (kind.is_null()) return statements_.settle("deIType", fault::kNull);
        if (is_accounting_item(kind)) return price_accounting_line(row, line);
        statements_.attempt("line net", [&] {
            if (to_int32(row.at<"ItemID">()) == 0) return;
            set_net(row, Checked(1), line);
        });
    }

    void price_accounting_line(const QueryRow& row, TaxedAmount& line)
    {
        statements_.attempt("item details", [&] {
            if (row.at<"dePriceList">().is_null()) {
                Fetch_PrItemDetails(state_, trimmed(state_.gQuote.quCurCode), false);
            }
        });
        statements_.attempt("BaseConv", [&] {
            base_conv_ = Return_BaseConvFactor(state_, row.text<"APItem">(), row.text<"dePriceList">(),
                                               state_.gQuote.quCurCode, false);
        });
        statements_.attempt("line net", [&] {
            if (trimmed_text(row.at<"APItem">()).empty()) return;
            set_net(row, Checked(base_conv_), line);
        });
    }

    /// The gross amount has two decimals whatever the currency, the discount those of the currency. One statement:
    /// a null in any of its columns leaves the line at zero.
    void set_net(const QueryRow& row, Checked divisor, TaxedAmount& line)
    {
        const Checked unit = row.number<"deQuotedPrice">() * (row.number<"deConvFactor">() / divisor);
        const Checked gross = row.number<"deQuantity">() * unit;
        const Checked discount = row.number<"deDiscount">();
        line.net = Fixed4::from(rounded(gross.raised(), 2) - in_currency(discount.raised())).to_double();
    }

    /// The cost has no unit conversion while the weight has: that is meant.
    void sum_line(const QueryRow& row)
    {
        statements_.attempt("cost sum", [&] {
            const double cost = to_number(row.at<"deQuantity">()) * to_number(row.at<"deCost">());
            cost_sum_ = Fixed4::from(cost_sum_.to_double() + cost);
        });
        statements_.attempt("discount sum", [&] { discount_sum_ += in_currency(to_number(row.at<"deDiscount">())); });
        statements_.attempt("weight sum", [&] {
            weight_sum_ += to_number(row.at<"deWeight">()) *
                           (to_number(row.at<"deQuantity">()) * to_number(row.at<"deConvFactor">()));
        });
    }

    void add_charge(const MiscChargeRecord& charge, TaxedAmount& amount)
    {
        amount.net = charge.Amount;
        TaxFields fields;
        for (size_t n = 0; n < kTaxSlots; ++n) {
            fields.tax_class[n] = charge.TaxClass[n];
            fields.included[n] = charge.TaxIncl[n];
        }
        tax_amount(fields, amount);
    }

    /// Splits what is included and works out what is added. Each included tax is taken from the whole amount by its
    /// own rate, while the base uses the sum of the rates. @throws Fault 11 or 6 for a rate of -100
    void tax_amount(const TaxFields& fields, TaxedAmount& into)
    {
        for (size_t n = 0; n < kTaxSlots; ++n) {
            statements_.attempt("tax rate", [&] {
                rates_[n] = Return_TaxRate(state_, slots_[n].Authority, trimmed(state_.gQuote.quTaxClass[n]),
                                           trimmed_text(fields.tax_class[n]));
            });
        }
        float included_rates = 0;
        for (size_t n = 0; n < count_; ++n) {
            if (!is_one(fields.included[n])) continue;
            included_rates += rates_[n];
            into.included[n] += (Checked(into.net * rates_[n]) / (100.0 + rates_[n])).raised();
        }
        const Checked base = Checked(into.net * 100) / (100.0 + included_rates);
        into.base = Fixed4::from(in_currency(base.raised()));
        for (size_t n = 0; n < count_; ++n) {
            if (!is_filled(fields.tax_class[n]) || !(rates_[n] > 0)) continue;
            into.tax[n] = Fixed4::from(into.base.to_double() * (double{rates_[n]} / 100));
        }
    }

    void sum_taxes(const std::vector<TaxedAmount>& amounts)
    {
        for (size_t n = 0; n < count_; ++n) {
            for (const auto& amount : amounts) {
                const double tax = in_currency(amount.tax[n].to_double());
                const double included = in_currency(amount.included[n]);
                taxes_[n] += tax;
                included_sum_ += included;
                slots_[n].Amount = to_single(slots_[n].Amount + tax - included);
            }
        }
    }

    void publish_sums()
    {
        state_.gPrSubTotal = in_currency(detail_sum_ + charge_sum_ + discount_sum_);
        state_.gPrNetTotal = in_currency(detail_sum_ + charge_sum_);
        state_.gPrDiscount = in_currency(discount_sum_);
        state_.gPrTaxTotal = in_currency(tax_sum_ - included_sum_);
        state_.gPrCost = in_currency(cost_sum_.to_double());
    }

    /// The profit holds the tax, and the discount does not lower the margin: both are meant. Without a subtotal the
    /// margin keeps the text of the quote before.
    void publish_profit()
    {
        const double cost = cost_sum_.to_double();
        const auto revenue = Fixed4::from(state_.gPrSubTotal - state_.gPrDiscount + state_.gPrTaxTotal);
        state_.gPrProfit = in_currency(revenue.to_double() - cost);
        if (state_.gPrSubTotal > 0) {
            const double margin = (Fixed4::from(state_.gPrSubTotal).to_double() - cost) / state_.gPrSubTotal * 100;
            state_.gPrMargin = Format_Decimals(state_, margin, 2) + " %";
        }
        state_.gPrTotal = in_currency(tax_sum_ - included_sum_ + detail_sum_ + charge_sum_);
        state_.gPrWeight = rounded(weight_sum_, 4);
    }

    SessionState& state_;
    size_t count_;
    TaxSlots& slots_;
    Statements statements_;

    // A statement that falls away leaves these as the line before left them.
    double base_conv_ = 0;
    std::array<float, kTaxSlots> rates_{};

    std::vector<TaxedAmount> lines_;
    std::vector<TaxedAmount> charges_;
    std::array<double, kTaxSlots> taxes_{};
    double detail_sum_ = 0;
    double charge_sum_ = 0;
    double discount_sum_ = 0;
    double included_sum_ = 0;
    double tax_sum_ = 0;
    double weight_sum_ = 0;
    Fixed4 cost_sum_;
};

}  // namespace

void Calculate_PrintTotals(SessionState& state, int32_t pQuoteID, int16_t pCount, TaxSlots& pSlots)
{
    try {
        const auto rows =
            open_query(state, {Command::procedure("sprDetailAll", {Command::Parameter::integer("QID", pQuoteID)}),
                               Command::statement("SELECT * FROM Details WHERE (QuoteID =" + std::to_string(pQuoteID) +
                                                  ") ORDER BY QuoteID, Line")});
        PrintTotals totals(state, pCount, pSlots);
        if (!rows->is_empty()) totals.read_lines(*rows);
        if (state.gMiscCharges) totals.read_charges(*state.gMiscCharges);
        totals.publish();
        rows->Close();
    } catch (const std::exception& caught) {
        Show_ReportError(state, fault::of(caught), "Calculate_PrintTotals");
    }
}

}  // namespace velora
