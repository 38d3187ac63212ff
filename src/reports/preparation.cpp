#include "reports/preparation.h"

#include "session/company.h"
#include "session/lists.h"

namespace velora {

void load_lists(SessionState& state)
{
    Get_QuoteStatus(state, false);
    Get_QuoteType(state, false);
    Get_QuoteConfid(state, false);
    Get_Reasons(state, false);
}

void load_company(SessionState& state)
{
    Get_Defaults(state);
    build_report_section(state);
    Get_ModuleVersions(state);
}

void build_report_section(SessionState& state)
{
    state.gReportSection = company_id(state) + "_Report";
}

}  // namespace velora
