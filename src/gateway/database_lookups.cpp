#include "gateway/database_lookups.h"

#include "gateway/accounting_lookups.h"
#include "session/error_messengers.h"
#include "session/query.h"
#include "session/value_helpers.h"
#include "values/text.h"

namespace velora {

namespace {

Query texts(std::string sql_server, std::string pervasive)
{
    return {Command::statement(std::move(sql_server)), Command::statement(std::move(pervasive))};
}

std::unique_ptr<Rows> ask_server(SessionState& state, std::string_view batch)
{
    state.log.query(batch);
    return connection(state).Execute(batch);
}

/// The id of the server's default language, 0 where it does not say.
Value default_language(SessionState& state)
{
    const auto configured = ask_server(state, "sp_configure 'default language'");
    Value language = move_to_first(*configured) ? configured->value("config_value") : Value(0);
    configured->Close();
    return language;
}

std::string in_order(SessionState& state, const DateTime& date, const Value& order)
{
    const auto p = date.parts();
    const auto day = std::to_string(p.day);
    const auto month = std::to_string(p.month);
    const auto year = std::to_string(p.year);
    const std::string name = order.is_null() ? std::string() : to_text(order);
    if (name == "dmy") return day + "/" + month + "/" + year;
    if (name == "mdy") return month + "/" + day + "/" + year;
    if (name == "ymd") return year + "/" + month + "/" + day;
    return plain_date(state, date);
}

/// In the order of the server's default language; blank when it does not list that language.
std::string server_literal(SessionState& state, const DateTime& date)
{
    const Value language = default_language(state);
    const auto languages = ask_server(state, "sp_helplanguage");
    if (!move_to_first(*languages)) return plain_date(state, date);
    std::string literal;
    for (; !languages->at_eof(); languages->MoveNext()) {
        if (language.is_null() || !equals_number(languages->value("langid"), to_number(language))) continue;
        literal = in_order(state, date, languages->value("dateformat"));
        break;
    }
    languages->Close();
    return literal;
}

/// The first row of a query that is walked once, as `read` makes of it; a missing row answers blank or false.
template <class Read>
auto first_row(SessionState& state, const Query& query, Read read)
{
    const auto rows = stream_query(state, query);
    auto answer = move_to_first(*rows) ? read(*rows) : decltype(read(*rows))();
    rows->Close();
    return answer;
}

}  // namespace

std::string Return_VLCustomerName(SessionState& state, int32_t pCustomerID)
{
    return with_failure_path(state, ErrorADO, "modGeneral.Return_VLCustomerName", [&] {
        const auto id = std::to_string(pCustomerID);
        return first_row(state,
                         texts("SELECT [CustomerID],[cuFullName] FROM [Customer] WHERE ([CustomerID]=" + id + ");",
                               "SELECT CustomerID,cuFullName FROM Customer WHERE CustomerID=" + id),
                         [](const Rows& row) { return trimmed_text(row.value("cuFullName")); });
    });
}

bool Check_VLCustNumber(SessionState& state, std::string_view pNumber)
{
    const auto number = doubled_quotes(trimmed(pNumber));
    if (number.empty()) return false;
    return with_failure_path(state, ErrorADO, "modGeneral.Check_VLCustNumber", [&] {
        return first_row(
            state,
            texts("SELECT [CustomerID],[CustomerNumber] FROM [Customer] WHERE ([CustomerNumber] = '" + number + "');",
                  "SELECT CustomerID, CustomerNumber FROM Customer WHERE (CustomerNumber = '" + number + "')"),
            [](const Rows&) { return true; });
    });
}

std::string Return_VLCustCurCode(SessionState& state, int32_t pCustomerID)
{
    return with_failure_path(state, ErrorADO, "modGeneral.Return_VLCustCurCode", [&] {
        const auto id = std::to_string(pCustomerID);
        return first_row(
            state,
            texts("SELECT [CustomerID],[cuAccountSet],[cuCurCode] FROM [Customer] WHERE ([CustomerID]=" + id + ");",
                  "SELECT CustomerID,cuAccountSet,cuCurCode FROM Customer WHERE (CustomerID=" + id + ")"),
            [&](const Rows& row) {
                std::string currency = trimmed_text(row.value("cuCurCode"));
                return currency.empty() ? Check_CustCurrencyCode(state, to_text(row.value("cuAccountSet"))) : currency;
            });
    });
}

std::string Return_VLCustomer(SessionState& state, int32_t pCustomerID)
{
    return with_failure_path(state, ErrorADO, "modPrint.Return_VLCustomer", [&] {
        return first_row(
            state,
            {Command::procedure("sprCustomerOneID", {Command::Parameter::integer("CID", pCustomerID)}),
             Command::statement("SELECT * FROM Customer WHERE (CustomerID=" + std::to_string(pCustomerID) + ")")},
            [](const Rows& row) { return trimmed_text(row.value("CustomerNumber")); });
    });
}

bool Use_VLNumber(SessionState& state)
{
    return with_failure_path(state, ErrorADO, "modPrint.Use_VLNumber", [&] {
        return first_row(state,
                         texts("SELECT [anUseQuoteNum] FROM [Defaults] WHERE ([DefaultID]=1);",
                               "SELECT anUseQuoteNum FROM Defaults WHERE (DefaultID=1)"),
                         [](const Rows& row) { return equals_number(row.value("anUseQuoteNum"), 1); });
    });
}

void Get_LocationRange(SessionState& state, std::shared_ptr<Recordset>& ranges, int16_t pRType)
{
    with_failure_path(state, ErrorADO, "modGeneral.Get_LocationRange", [&] {
        const auto kind = std::to_string(pRType);
        open_query(state, ranges,
                   texts("SELECT * FROM [DLocRange] WHERE ([RType]=" + kind + ") ORDER BY [DLRID];",
                         "SELECT * FROM DLocRange WHERE (RType=" + kind + ") ORDER BY DLRID"));
        if (move_to_first(*ranges)) ranges->Disconnect();
    });
}

std::string SQLServer_DateFormat(SessionState& state, const Value& pDate, bool pEndOfDay)
{
    return with_failure_path(state, ErrorADO, "modGeneral.SQLServer_DateFormat", [&] {
        const auto date = date_of(state, pDate);
        if (!date) return std::string();
        return server_literal(state, *date) + (pEndOfDay ? " 23:59:59.999" : "");
    });
}

}  // namespace velora
