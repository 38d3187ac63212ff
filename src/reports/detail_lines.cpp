#include "reports/detail_lines.h"

#include <array>

#include "gateway/accounting_lookups.h"
#include "gateway/view_reading.h"
#include "pricing/amount_display.h"
#include "pricing/base_price.h"
#include "pricing/taxes.h"
#include "pricing/units.h"
#include "reports/statement.h"
#include "session/error_messengers.h"
#include "session/lists.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr std::array<int32_t, 3> kToleratedByFetch{10, fault::kNull, 30009};
constexpr std::array<int32_t, 1> kToleratedByItem{fault::kNull};

void load_details(SessionState& state, int32_t quote)
{
    state.gQuoteDetails.reset();
    const auto rows =
        open_query(state,
                   {Command::procedure("sprDetailsCommInsAll", {{"QID", quote}}),
                    Command::statement("SELECT Details.*,CommIns.CoInType,CommIns.CommIns FROM Details LEFT OUTER JOIN "
                                       "CommIns ON Details.QuoteID = CommIns.QuoteID AND Details.Line = CommIns.Line "
                                       "WHERE (Details.QuoteID =" +
                                       std::to_string(quote) + ") ORDER BY Details.QuoteID, Details.Line")},
                   Cursor::Client);
    if (rows->is_empty()) return rows->Close();
    rows->Disconnect();
    state.gQuoteDetails = rows;
}

/// The current line and the steps that complete it; each step is one statement.
class LineCompletion {
public:
    LineCompletion(SessionState& state, std::string_view currency)
        : state_(state), line_(opened(state.gQuoteDetails, "gQuoteDetails")), currency_(currency)
    {
    }

    void run()
    {
        Statements statements(state_, kToleratedByItem);
        std::string item;
        statements.attempt("APItem", [&] { item = text("APItem"); });
        if (item.empty()) return;
        OpenedView view(state_, "IC0310");
        view.browse("ITEMNO = " + quoted(item));
        if (view.fetch()) {
            complete(statements, view);
            view.close();
        }
        statements.attempt("deTaxClass1", [&] {
            if (text("deTaxClass1").empty()) Get_APItemTaxes(state_);
        });
    }

private:
    void complete(Statements& statements, OpenedView& view)
    {
        statements.attempt("deDesc", [&] { fill("deDesc", view, "DESC"); });
        statements.attempt("deQuotedPrice", [&] { price_line_without_list(view); });
        statements.attempt("dePriceList", [&] { fill("dePriceList", view, "DEFPRICLST"); });
        statements.attempt("deCategory", [&] { fill("deCategory", view, "CATEGORY"); });
        statements.attempt("deUofM", [&] { replace_foreign_unit(view); });
        statements.attempt("deLocation", [&] {
            if (text("deLocation").empty()) line_.put("deLocation", Return_DefaultLocation(state_, text("APItem")));
        });
        statements.attempt("deLocation", [&] {
            if (text("deLocation").empty()) line_.put("deLocation", trimmed(state_.gQuote.quLocation));
        });
        statements.attempt("deUofM", [&] { take_pricing_unit(); });
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
                                                    state_.gQuote.quCustomerType,
                                                    static_cast<float>(to_number(line_.value("deQuantity"))),
                                                    static_cast<float>(to_number(line_.value("deConvFactor")))));
    }

    void replace_foreign_unit(const OpenedView& view)
    {
        const std::string item = to_text(line_.value("APItem"));
        if (Check_ItemUofM(state_, item, to_text(line_.value("deUofM")), true)) return;
        line_.put("deUofM", view.text("STOCKUNIT"));
        line_.put("deConvFactor", Return_APFactor(state_, item, text("deUofM")));
    }

    void take_pricing_unit()
    {
        if (!text("deUofM").empty()) return;
        const std::string item = to_text(line_.value("APItem"));
        line_.put("deUofM", Return_BaseUnit(state_, item, to_text(line_.value("dePriceList")), currency_));
        line_.put("deConvFactor", Return_APFactor(state_, item, text("deUofM")));
    }

    SessionState& state_;
    Recordset& line_;
    std::string currency_;
};

}  // namespace

void Get_DetailPrRecordset(SessionState& state, int32_t pQuoteID)
{
    with_failure_path(state, ErrorADO, "modPrint.Get_DetailPrRecordset", [&] {
        Statements(state, kToleratedByFetch).attempt("gQuoteDetails", [&] { load_details(state, pQuoteID); });
    });
}

/// The only caller passes false; a true truth value is -1 and would not ask for a price either.
void Fetch_PrItemDetails(SessionState& state, std::string_view pCurrency, bool)
{
    with_failure_path(state, ErrorACCPAC, "modPrint.Fetch_PrItemDetails",
                      [&] { LineCompletion(state, pCurrency).run(); });
}

Value Return_QuantityAvailable(SessionState& state, std::string_view pItem, std::string_view pLocation, float pFactor)
{
    Value result;
    const auto item = trimmed(pItem);
    if (item.empty()) return "0";
    with_failure_path(state, ErrorACCPAC, "modPrint.Return_QuantityAvailable", [&] {
        OpenedView view(state, "IC0290");
        view.browse("ITEMNO = " + quoted(item) + " AND LOCATION = " + std::string(trimmed(pLocation)));
        if (!view.fetch()) return view.close();
        double quantity = view.number("AQTYONHAND") - view.number("QTYSALORDR");
        if (numeric_value(company_default(state, "mdLocDetail")) == 1) {
            if (pFactor == 0) throw fault::division_by_zero("Return_QuantityAvailable");
            quantity *= 1.0F / pFactor;
        }
        result = Format_Decimals(state, quantity, 2);
        view.close();
    });
    return result;
}

}  // namespace velora
