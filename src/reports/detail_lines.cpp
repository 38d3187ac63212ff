#include "reports/detail_lines.h"

#include <array>

#include "gateway/accounting_lookups.h"
#include "gateway/view_reading.h"
#include "pricing/amount_display.h"
#include "pricing/base_price.h"
#include "pricing/taxes.h"
#include "pricing/units.h"
#include "reports/statement.h"
#include "session/company.h"
#include "session/error_messengers.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr std::array<int32_t, 3> kToleratedByFetch{fault::kArrayFixed, fault::kNull, fault::kInvalidRow};
constexpr std::array<int32_t, 1> kToleratedByItem{fault::kNull};

/// A new recordset stands in the state from the start, so that a query that fails leaves that one. A quote without
/// lines leaves none.
void load_details(SessionState& state, int32_t quote)
{
    Statements statements(state, kToleratedByFetch);
    statements.attempt("gQuoteDetails", [&] {
        open_query(state, state.gQuoteDetails,
                   {Command::procedure("sprDetailsCommInsAll", {Command::Parameter::integer("QID", quote)}),
                    Command::statement("SELECT Details.*,CommIns.CoInType,CommIns.CommIns FROM Details LEFT OUTER JOIN "
                                       "CommIns ON Details.QuoteID = CommIns.QuoteID AND Details.Line = CommIns.Line "
                                       "WHERE (Details.QuoteID =" +
                                       std::to_string(quote) + ") ORDER BY Details.QuoteID, Details.Line")});
    });
    if (state.gQuoteDetails->is_empty()) {
        state.gQuoteDetails->Close();
        state.gQuoteDetails.reset();
    } else {
        state.gQuoteDetails->Disconnect();
    }
}

/// The current line and the steps that complete it; each step is one statement.
class LineCompletion {
public:
    LineCompletion(SessionState& state, std::string_view currency)
        : state_(state),
          line_(opened(state.gQuoteDetails, "gQuoteDetails")),
          currency_(currency),
          statements_(state, kToleratedByItem)
    {
    }

    void run()
    {
        std::string item;
        attempt("APItem", [&] { item = text("APItem"); });
        if (item.empty()) return;
        const std::string filter = "ITEMNO = " + filter_text(item);
        OpenedView view(state_, "IC0310");
        view.browse(filter);
        if (view.fetch()) complete(view, filter);
        attempt("deTaxClass1", [&] {
            if (text("deTaxClass1").empty()) Get_APItemTaxes(state_);
        });
    }

private:
    template <class Work>
    void attempt(std::string_view column, Work work)
    {
        statements_.attempt(column, work);
    }

    void complete(OpenedView& view, const std::string& filter)
    {
        attempt("deDesc", [&] {
            if (!text("deDesc").empty()) return;
            view.browse(filter);
            if (view.fetch()) line_.put("deDesc", view.text("DESC"));
        });
        attempt("deQuotedPrice", [&] { price_line_without_list(view); });
        attempt("dePriceList", [&] { fill("dePriceList", view, "DEFPRICLST"); });
        attempt("deCategory", [&] { fill("deCategory", view, "CATEGORY"); });
        replace_foreign_unit(view);
        attempt("deLocation", [&] {
            if (text("deLocation").empty()) line_.put("deLocation", Return_DefaultLocation(state_, text("APItem")));
        });
        attempt("deLocation", [&] {
            if (text("deLocation").empty()) line_.put("deLocation", trimmed(state_.gQuote.quLocation));
        });
        take_pricing_unit();
    }

    [[nodiscard]] std::string text(std::string_view column) const { return trimmed_text(line_.value(column)); }

    void fill(std::string_view column, const OpenedView& view, std::string_view field)
    {
        if (text(column).empty()) line_.put(column, view.text(field));
    }

    void price_line_without_list(const OpenedView& view)
    {
        if (!line_.value("dePriceList").is_null()) return;
        std::string price_list = view.text("DEFPRICLST");
        std::string currency = currency_;
        line_.put("deQuotedPrice", Return_BasePrice(state_, to_text(line_.value("APItem")), price_list, currency,
                                                    state_.gQuote.quCustomerType, to_single(line_.value("deQuantity")),
                                                    to_single(line_.value("deConvFactor"))));
    }

    void replace_foreign_unit(const OpenedView& view)
    {
        bool is_foreign = false;
        attempt("deUofM", [&] {
            is_foreign = !Check_ItemUofM(state_, to_text(line_.value("APItem")), to_text(line_.value("deUofM")), true);
        });
        if (!is_foreign) return;
        attempt("deUofM", [&] { line_.put("deUofM", view.text("STOCKUNIT")); });
        attempt("deConvFactor", [&] { take_factor(); });
    }

    /// Two statements: a line without a price list keeps its blank unit and still takes the factor of that.
    void take_pricing_unit()
    {
        bool is_blank = false;
        attempt("deUofM", [&] { is_blank = text("deUofM").empty(); });
        if (!is_blank) return;
        attempt("deUofM", [&] {
            line_.put("deUofM", Return_BaseUnit(state_, to_text(line_.value("APItem")),
                                                to_text(line_.value("dePriceList")), currency_));
        });
        attempt("deConvFactor", [&] { take_factor(); });
    }

    void take_factor()
    {
        line_.put("deConvFactor", Return_APFactor(state_, to_text(line_.value("APItem")), text("deUofM")));
    }

    SessionState& state_;
    Recordset& line_;
    std::string currency_;
    Statements statements_;
};

}  // namespace

void Get_DetailPrRecordset(SessionState& state, int32_t pQuoteID)
{
    with_failure_path(state, ErrorADO, "modPrint.Get_DetailPrRecordset", [&] { load_details(state, pQuoteID); });
}

/// The only caller passes false; a true truth value is -1 and would not ask for a price either.
void Fetch_PrItemDetails(SessionState& state, std::string_view pCurrency, bool)
{
    with_failure_path(state, ErrorACCPAC, "modPrint.Fetch_PrItemDetails",
                      [&] { LineCompletion(state, pCurrency).run(); });
}

Value Return_QuantityAvailable(SessionState& state, std::string_view pItem, std::string_view pLocation, float pFactor)
{
    const auto item = trimmed(pItem);
    if (item.empty()) return "0";
    return with_failure_path(state, ErrorACCPAC, "modPrint.Return_QuantityAvailable", [&] {
        OpenedView view(state, "IC0290");
        view.browse("ITEMNO = " + filter_text(item) + " AND LOCATION = " + std::string(trimmed(pLocation)));
        if (!view.fetch()) return Value();
        double quantity = view.number("AQTYONHAND") - view.number("QTYSALORDR");
        if (numeric_value(company_default(state, "mdLocDetail")) == 1) {
            if (pFactor == 0) throw fault::division_by_zero("Return_QuantityAvailable");
            quantity *= 1.0F / pFactor;
        }
        return Value(Format_Decimals(state, quantity, 2));
    });
}

}  // namespace velora
