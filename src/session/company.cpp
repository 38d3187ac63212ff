#include "session/company.h"

#include "session/error_messengers.h"
#include "session/query.h"
#include "values/fault.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora {

void Get_Defaults(SessionState& state)
{
    with_failure_path(state, ErrorADO, "modGeneral.Get_Defaults", [&] {
        state.gDefaults = unopened_recordset();
        const std::string company = company_id(state);
        open_query(
            state, state.gDefaults,
            {Command::procedure("sprQuoteDefaults",
                                {Command::Parameter::varchar("Comp", 10, std::string(cut_to_characters(company, 10)))}),
             Command::statement("SELECT * FROM Defaults WHERE (Company = '" + doubled_quotes(company) + "')")});
        if (move_to_first(*state.gDefaults)) state.gDefaults->Disconnect();
    });
}

std::string AP_ModuleVersion(SessionState& state, std::string_view module)
{
    return with_failure_path(state, ErrorACCPAC, "modGeneral.AP_ModuleVersion", [&] {
        for (const auto& application : accounting(state).ActiveApplications()) {
            if (trimmed(application.AppID) == trimmed(module)) return application.AppVersion;
        }
        return std::string();
    });
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
    const auto& defaults = opened(state.gDefaults, "gDefaults");
    const bool is_open = defaults.column_count() > 0;  // one that is not has no such column
    if (is_open && defaults.at_eof()) throw fault::no_current_row("gDefaults");
    return defaults.value(column);
}

std::string company_id(SessionState& state)
{
    return std::string(trimmed(accounting(state).Company().CompanyID));
}

}  // namespace velora
