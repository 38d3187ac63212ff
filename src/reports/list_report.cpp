#include "reports/list_report.h"

#include "session/query.h"

namespace velora {

RunEnd run_list(SessionState& state, const ListReport& list, const Delivery& delivery,
                const std::vector<PipeField>& fields, const std::function<std::unique_ptr<Rows>(SessionState&)>& query,
                const std::function<void(ReportRun&, Rows&, DataPipeRecordset&)>& write)
{
    return run_report(state, {list.procedure, kToleratedByLists}, delivery, [&](ReportRun& run) {
        run.open_definition();
        DataPipeRecordset pipe(fields, state.log);
        const auto rows = query(state);
        if (!move_to_first(*rows)) return no_data(state, list.nothing);
        write(run, *rows, pipe);
        rows->Close();
        run.attach(pipe);
        list.choose_printer(run);
        return run.route([&] { return dated_name(state, list.export_name); });
    });
}

}  // namespace velora
