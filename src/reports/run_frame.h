#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "reports/data_pipe.h"
#include "session/session_state.h"
#include "values/fault.h"

namespace velora {

/// Where a run's result goes: an export wins over a preview, and with neither it goes to the printer.
struct Delivery {
    std::string report_string;  ///< full path of the definition
    bool preview = false;
    bool export_it = false;
};

/// Runs a builder with the lookups of the run cached. A fault that the builder did not tolerate ends in
/// `Show_ReportError` under the procedure's name. The answer also stays in the state, for hosts of the public class.
RunEnd run_report(SessionState& state, std::string_view procedure, const std::function<RunEnd()>& builder);

/// Tells the user why a run ended; a user who cancelled it is told nothing.
RunEnd Show_ReportError(SessionState& state, const Fault& caught, std::string_view procedure);

/// Opens the definition. @throws Fault 20507 when it is missing or none
void open_definition(SessionState& state, const std::string& report_string);

/// Hands the finished pipe to the first table of the definition.
void attach_pipe(SessionState& state, const DataPipeRecordset& pipe);

/// The first printer whose name holds `name`, which may carry wildcards, prints the report; a blank name leaves the
/// definition's own. @throws Fault 91 when no printer fits
void choose_printer(SessionState& state, std::string_view name);

/// The printer of the user's settings.
std::string printer_setting(SessionState& state);

/// Sends the report on its way. @param export_name  without folder and extension
RunEnd route_output(SessionState& state, const Delivery& delivery, std::string_view export_name);

/// "yyyymmdd - name": how the exports of list reports are called.
std::string dated_name(SessionState& state, std::string_view name);

}  // namespace velora
