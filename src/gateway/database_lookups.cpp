#include "gateway/database_lookups.h"

#include "gateway/accounting_lookups.h"
#include "session/error_messengers.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

Query texts(std::string sql_server, std::string pervasive)
{
    return {Command::statement(std::move(sql_server)), Command::statement(std::move(pervasive))};
}

/// The date order of the server's default language; none when it does not list its languages at all.
std::optional<std::string> server_date_order(SessionState& state)
{
    const auto ask = [&](std::string_view batch) {
        state.log.query(batch);
        return connection(state).Execute(batch);
    };
    int32_t language = 0;
    const auto configured = ask("sp_configure 'default language'");
    if (move_to_first(*configured)) language = to_int32(configured->value("config_value"));
    configured->Close();

    const auto languages = ask("sp_helplanguage");
    if (!move_to_first(*languages)) return std::nullopt;
    std::string order;
    for (; !languages->at_eof(); languages->MoveNext()) {
        if (to_int32(languages->value("langid")) != language) continue;
        order = to_text(languages->value("dateformat"));
        break;
    }
    languages->Close();
    return order;
}

std::string in_order(SessionState& state, const DateTime& date, const std::optional<std::string>& order)
{
    const auto p = date.parts();
    const auto day = std::to_string(p.day);
    const auto month = std::to_string(p.month);
    const auto year = std::to_string(p.year);
    if (order && order->empty()) return {};
    if (order == "dmy") return day + "/" + month + "/" + year;
    if (order == "mdy") return month + "/" + day + "/" + year;
    if (order == "ymd") return year + "/" + month + "/" + day;
    return state.ports.region != nullptr ? state.ports.region->short_date(date) : date.iso();
}

}  // namespace

std::string Return_VLCustomerName(SessionState& state, int32_t pCustomerID)
{
    std::string result;
    with_failure_path(state, ErrorADO, "modGeneral.Return_VLCustomerName", [&] {
        const auto id = std::to_string(pCustomerID);
        const auto rows =
            open_query(state,
                       texts("SELECT [CustomerID],[cuFullName] FROM [Customer] WHERE ([CustomerID]=" + id + ");",
                             "SELECT CustomerID,cuFullName FROM Customer WHERE CustomerID=" + id),
                       Cursor::Forward);
        if (move_to_first(*rows)) result = trimmed_text(rows->value("cuFullName"));
        rows->Close();
    });
    return result;
}

bool Check_VLCustNumber(SessionState& state, std::string_view pNumber)
{
    bool found = false;
    const auto number = doubled_quotes(trimmed(pNumber));
    if (number.empty()) return found;
    with_failure_path(state, ErrorADO, "modGeneral.Check_VLCustNumber", [&] {
        const auto rows = open_query(
            state,
            texts("SELECT [CustomerID],[CustomerNumber] FROM [Customer] WHERE ([CustomerNumber] = '" + number + "');",
                  "SELECT CustomerID, CustomerNumber FROM Customer WHERE (CustomerNumber = '" + number + "')"),
            Cursor::Forward);
        found = !rows->is_empty();
        rows->Close();
    });
    return found;
}

std::string Return_VLCustCurCode(SessionState& state, int32_t pCustomerID)
{
    std::string result;
    with_failure_path(state, ErrorADO, "modGeneral.Return_VLCustCurCode", [&] {
        const auto id = std::to_string(pCustomerID);
        const auto rows = open_query(
            state,
            texts("SELECT [CustomerID],[cuAccountSet],[cuCurCode] FROM [Customer] WHERE ([CustomerID]=" + id + ");",
                  "SELECT CustomerID,cuAccountSet,cuCurCode FROM Customer WHERE (CustomerID=" + id + ")"),
            Cursor::Forward);
        if (move_to_first(*rows)) {
            result = trimmed_text(rows->value("cuCurCode"));
            if (result.empty()) result = Check_CustCurrencyCode(state, to_text(rows->value("cuAccountSet")));
        }
        rows->Close();
    });
    return result;
}

std::string Return_VLCustomer(SessionState& state, int32_t pCustomerID)
{
    std::string result;
    with_failure_path(state, ErrorADO, "modPrint.Return_VLCustomer", [&] {
        const auto rows = open_query(
            state,
            {Command::procedure("sprCustomerOneID", {{"CID", pCustomerID}}),
             Command::statement("SELECT * FROM Customer WHERE (CustomerID=" + std::to_string(pCustomerID) + ")")},
            Cursor::Forward);
        if (move_to_first(*rows)) result = trimmed_text(rows->value("CustomerNumber"));
        rows->Close();
    });
    return result;
}

bool Use_VLNumber(SessionState& state)
{
    bool result = false;
    with_failure_path(state, ErrorADO, "modPrint.Use_VLNumber", [&] {
        const auto rows = open_query(state,
                                     texts("SELECT [anUseQuoteNum] FROM [Defaults] WHERE ([DefaultID]=1);",
                                           "SELECT anUseQuoteNum FROM Defaults WHERE (DefaultID=1)"),
                                     Cursor::Forward);
        if (move_to_first(*rows)) result = to_number(rows->value("anUseQuoteNum")) == 1;
        rows->Close();
    });
    return result;
}

void Get_LocationRange(SessionState& state, std::shared_ptr<Recordset>& ranges, int16_t pRType)
{
    with_failure_path(state, ErrorADO, "modGeneral.Get_LocationRange", [&] {
        const auto kind = std::to_string(pRType);
        ranges = open_query(state,
                            texts("SELECT * FROM [DLocRange] WHERE ([RType]=" + kind + ") ORDER BY [DLRID];",
                                  "SELECT * FROM DLocRange WHERE (RType=" + kind + ") ORDER BY DLRID"),
                            Cursor::Client);
        if (move_to_first(*ranges)) ranges->Disconnect();
    });
}

std::string SQLServer_DateFormat(SessionState& state, const Value& pDate, bool pEndOfDay)
{
    std::string result;
    with_failure_path(state, ErrorADO, "modGeneral.SQLServer_DateFormat", [&] {
        const auto date = date_in(pDate);
        if (!date) return;
        result = in_order(state, *date, server_date_order(state));
        if (pEndOfDay) result += " 23:59:59.999";
    });
    return result;
}

}  // namespace velora
