#include "session/lists.h"

#include <array>

#include "session/error_messengers.h"
#include "session/query.h"
#include "values/text.h"

namespace velora {

namespace {

/// One lookup list: what fills it and which columns a kind of it shows.
struct List {
    std::string_view procedure_name;
    std::shared_ptr<Recordset> SessionState::*rows;
    std::string_view all_procedure, all_text;
    std::string_view active_procedure, active_text;
};

// clang-format off
constexpr List kStatusList{"modGeneral.Get_QuoteStatus", &SessionState::gQuoteStatus,
    "sprQuoteStatus",           "SELECT * FROM QuoteStatus ORDER BY QuoteStatusID",
    "sprQuoteStatusActive",     "SELECT * FROM QuoteStatus WHERE (qsActive=1) ORDER BY QuoteStatusID"};
constexpr List kTypeList{"modGeneral.Get_QuoteType", &SessionState::gQuoteType,
    "sprQuoteType",             "SELECT * FROM QuoteType ORDER BY QuoteTypeID",
    "sprQuoteTypeActive",       "SELECT * FROM QuoteType WHERE (qtActive=1) ORDER BY QuoteTypeID"};
constexpr List kConfidenceList{"modGeneral.Get_QuoteConfid", &SessionState::gQuoteConfid,
    "sprQuoteConfidence",       "SELECT * FROM QuoteConfidence ORDER BY QuoteConfidID",
    "sprQuoteConfidenceActive", "SELECT * FROM QuoteConfidence WHERE (qcActive=1) ORDER BY QuoteConfidID"};
constexpr List kReasonList{"modGeneral.Get_Reasons", &SessionState::gReasons,
    "sprReasons",               "SELECT * FROM Reason ORDER BY ReasonID",
    "sprReasonsActive",         "SELECT * FROM Reason WHERE (reActive=1) ORDER BY ReasonID"};

struct ListColumns {
    std::string_view key, name, code;  // no name: the code is always shown
};
constexpr auto kColumns = std::to_array<ListColumns>({
    {"QuoteStatusID", "qsName", "qsCode"},
    {"ReasonID",      "",       "reCode"},
    {"QuoteTypeID",   "qtName", "qtCode"},
    {"QuoteConfidID", "qcName", "qcCode"},
});
// clang-format on

void load(SessionState& state, const List& list, bool all)
{
    with_failure_path(state, ErrorADO, list.procedure_name, [&] {
        auto& rows = state.*list.rows;
        rows = open_query(state,
                          {Command::procedure(std::string(all ? list.all_procedure : list.active_procedure)),
                           Command::statement(std::string(all ? list.all_text : list.active_text))},
                          Cursor::Client);
        move_to_first(*rows);
        rows->Disconnect();
    });
}

std::string shown_text(const Recordset& list, const ListColumns& columns)
{
    if (!columns.name.empty()) {
        std::string name = to_text(list.value(columns.name));
        if (!trimmed(name).empty()) return name;
    }
    return to_text(list.value(columns.code));
}

}  // namespace

void Get_QuoteStatus(SessionState& state, bool pAll)
{
    load(state, kStatusList, pAll);
}
void Get_QuoteType(SessionState& state, bool pAll)
{
    load(state, kTypeList, pAll);
}
void Get_QuoteConfid(SessionState& state, bool pAll)
{
    load(state, kConfidenceList, pAll);
}
void Get_Reasons(SessionState& state, bool pAll)
{
    load(state, kReasonList, pAll);
}

void Get_Defaults(SessionState& state)
{
    with_failure_path(state, ErrorADO, "modGeneral.Get_Defaults", [&] {
        const std::string company = company_id(state);
        state.gDefaults = open_query(
            state,
            {Command::procedure("sprQuoteDefaults", {{"Comp", std::string(cut_to_characters(company, 10))}}),
             Command::statement("SELECT * FROM Defaults WHERE (Company = '" + doubled_quotes(company) + "')")},
            Cursor::Client);
        if (move_to_first(*state.gDefaults)) state.gDefaults->Disconnect();
    });
}

void Load_Options(SessionState& state, const std::shared_ptr<Recordset>& list, int16_t pKind,
                  const std::function<void(const std::string& text, int32_t key)>& add)
{
    with_failure_path(state, ErrorMessenger, "modGeneral.Load_Options", [&] {
        auto& rows = opened(list, "list");
        if (!move_to_first(rows) || pKind < 0 || pKind > kListConfidence) return;
        const auto& columns = kColumns.at(static_cast<size_t>(pKind));
        for (; !rows.at_eof(); rows.MoveNext()) add(shown_text(rows, columns), to_int32(rows.value(columns.key)));
    });
}

std::string Return_ListValue(SessionState& state, const std::shared_ptr<Recordset>& list, int16_t pID, int16_t pKind)
{
    std::string result;
    with_failure_path(state, ErrorMessenger, "modGeneral.Return_ListValue", [&] {
        auto& rows = opened(list, "list");
        if (!move_to_first(rows) || pKind < 0 || pKind > kListConfidence) return;
        const auto& columns = kColumns.at(static_cast<size_t>(pKind));
        for (; !rows.at_eof(); rows.MoveNext()) {
            const Value& key = rows.value(columns.key);
            if (key.is_null() || to_number(key) != pID) continue;
            result = shown_text(rows, columns);
            return;
        }
    });
    return result;
}

std::string AP_ModuleVersion(SessionState& state, std::string_view module)
{
    std::string version;
    with_failure_path(state, ErrorACCPAC, "modGeneral.AP_ModuleVersion", [&] {
        for (const auto& application : accounting(state).ActiveApplications()) {
            if (trimmed(application.AppID) != trimmed(module)) continue;
            version = application.AppVersion;
            return;
        }
    });
    return version;
}

void Get_ModuleVersions(SessionState& state)
{
    struct Version {
        std::string SessionState::*variable;
        std::string_view module;
    };
    for (const auto& [variable, module] : {Version{&SessionState::gVerAR, "AR"}, Version{&SessionState::gVerAP, "AP"},
                                           Version{&SessionState::gVerIC, "IC"}, Version{&SessionState::gVerGL, "GL"},
                                           Version{&SessionState::gVerOE, "OE"}}) {
        auto& version = state.*variable;
        if (trimmed(version).empty()) version = trimmed(AP_ModuleVersion(state, module));
    }
}

const Value& company_default(SessionState& state, std::string_view column)
{
    return opened(state.gDefaults, "gDefaults").value(column);
}

std::string company_id(SessionState& state)
{
    return std::string(trimmed(accounting(state).Company().CompanyID));
}

}  // namespace velora
