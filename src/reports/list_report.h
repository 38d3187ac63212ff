#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/rows.h"
#include "reports/data_pipe.h"
#include "reports/run_frame.h"

namespace velora {

/// What a list report is to all others: a query, a row of the pipe for each of its rows, and where it goes.
struct ListReport {
    std::string_view procedure;    ///< as messages name it
    std::string_view nothing;      ///< told where the query finds no row
    std::string_view export_name;  ///< of the file, behind the date
    /// Most lists go to the printer of the user's settings.
    std::function<void(ReportRun&)> choose_printer = [](ReportRun& run) { run.choose_printer(); };
};

/// Runs a list from its definition to where it goes.
/// @param query  opens the rows, for each dialect its own text
/// @param write  fills the pipe; the rows stand on the first, and there is one
RunEnd run_list(SessionState& state, const ListReport& list, const Delivery& delivery,
                const std::vector<PipeField>& fields, const std::function<std::unique_ptr<Rows>(SessionState&)>& query,
                const std::function<void(ReportRun&, Rows&, DataPipeRecordset&)>& write);

}  // namespace velora
