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
        open_query(state, rows,
                   {Command::procedure(std::string(all ? list.all_procedure : list.active_procedure)),
                    Command::statement(std::string(all ? list.all_text : list.active_text))});
        move_to_first(*rows);
        rows->Disconnect();
    });
}

/// None for a kind that no list has; its rows are walked all the same.
const ListColumns* columns_of(int16_t kind)
{
    return kind >= 0 && kind <= kListConfidence ? &kColumns[static_cast<size_t>(kind)] : nullptr;
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

void Load_Options(SessionState& state, const std::shared_ptr<Recordset>& list, int16_t pKind,
                  const std::function<void(const std::string& text, int32_t key)>& add)
{
    with_failure_path(state, ErrorMessenger, "modGeneral.Load_Options", [&] {
        auto& rows = opened(list, "list");
        if (!move_to_first(rows)) return;
        for (const auto* columns = columns_of(pKind); !rows.at_eof(); rows.MoveNext()) {
            if (columns != nullptr) add(shown_text(rows, *columns), to_int32(rows.value(columns->key)));
        }
    });
}

std::string Return_ListValue(SessionState& state, const std::shared_ptr<Recordset>& list, int16_t pID, int16_t pKind)
{
    return with_failure_path(state, ErrorMessenger, "modGeneral.Return_ListValue", [&] {
        auto& rows = opened(list, "list");
        if (!move_to_first(rows)) return std::string();
        for (const auto* columns = columns_of(pKind); !rows.at_eof(); rows.MoveNext()) {
            if (columns == nullptr) continue;
            if (equals_number(rows.value(columns->key), pID)) return shown_text(rows, *columns);
        }
        return std::string();
    });
}

}  // namespace velora
