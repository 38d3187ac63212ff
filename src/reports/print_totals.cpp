#include "reports/print_totals.h"

#include <array>
#include <memory>
#include <vector>

#include "pricing/amount_display.h"
#include "pricing/taxes.h"
#include "pricing/units.h"
#include "reports/detail_lines.h"
#include "reports/run_frame.h"
#include "reports/statement.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr std::array<int32_t, 3> kTolerated{fault::kArrayFixed, fault::kNull, fault::kInvalidRow};
constexpr double kItemLine = 20;
constexpr double kAccountingItem = 30;

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

bool is_one(const Value& flag)
{
    return !flag.is_null() && trimmed_text(flag) == "1";
}

bool is_filled(const Value& text)
{
    return !text.is_null() && !trimmed_text(text).empty();
}

bool equals(const Value& number, double expected)
{
    return !number.is_null() && numeric_value(number) == expected;
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
        for (rows.MoveFirst(); !rows.at_eof(); rows.MoveNext()) {
            statements_.at_row(at_ + 1);
            if (equals(rows.value("deDType"), kItemLine)) add_line(rows, lines_[at_]);
            ++at_;
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

    void add_line(Recordset& row, TaxedAmount& line)
    {
        price_line(row, line);
        sum_line(row);
        TaxFields fields;
        for (size_t n = 0; n < kTaxSlots; ++n) {
            fields.tax_class[n] = row.value("deTaxClass" + std::to_string(n + 1));
            fields.included[n] = row.value("deTaxIncl" + std::to_string(n + 1));
        }
        tax_amount(fields, line);
    }

    void price_line(Recordset& row, TaxedAmount& line)
    {
        const Value& kind = row.value("deIType");
        if (kind.is_null()) return statements_.settle("deIType", fault::kNull);
        if (numeric_value(kind) == kAccountingItem) return price_accounting_line(row, line);
        statements_.attempt("line net", [&] {
            if (to_int32(row.value("ItemID")) == 0) return;
            set_net(row, Checked(1), line);
        });
    }

    void price_accounting_line(Recordset& row, TaxedAmount& line)
    {
        statements_.attempt("item details", [&] {
            if (row.value("dePriceList").is_null()) {
                Fetch_PrItemDetails(state_, trimmed(state_.gQuote.quCurCode), false);
            }
        });
        statements_.attempt("BaseConv", [&] {
            base_conv_ = Return_BaseConvFactor(state_, to_text(row.value("APItem")), to_text(row.value("dePriceList")),
                                               state_.gQuote.quCurCode, false);
        });
        statements_.attempt("line net", [&] {
            if (trimmed_text(row.value("APItem")).empty()) return;
            set_net(row, Checked(base_conv_), line);
        });
    }

    /// The gross amount has two decimals whatever the currency, the discount those of the currency. One statement:
    /// a null in any of its columns leaves the line at zero.
    void set_net(const Recordset& row, Checked divisor, TaxedAmount& line)
    {
        const Checked unit = Checked(row.value("deQuotedPrice")) * (Checked(row.value("deConvFactor")) / divisor);
        const Checked gross = Checked(row.value("deQuantity")) * unit;
        const Checked discount(row.value("deDiscount"));
        line.net = Fixed4::from(rounded(gross.raised(), 2) - in_currency(discount.raised())).to_double();
    }

    /// The cost has no unit conversion while the weight has: that is meant.
    void sum_line(const Recordset& row)
    {
        statements_.attempt("cost sum", [&] {
            const double cost = to_number(row.value("deQuantity")) * to_number(row.value("deCost"));
            cost_sum_ = Fixed4::from(cost_sum_.to_double() + cost);
        });
        statements_.attempt("discount sum", [&] { discount_sum_ += in_currency(to_number(row.value("deDiscount"))); });
        statements_.attempt("weight sum", [&] {
            weight_sum_ += to_number(row.value("deWeight")) *
                           (to_number(row.value("deQuantity")) * to_number(row.value("deConvFactor")));
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
    size_t at_ = 0;

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
