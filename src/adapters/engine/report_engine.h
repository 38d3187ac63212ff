#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/database.h"
#include "platform/printers.h"
#include "platform/report_engine.h"
#include "values/date_time.h"

namespace velora {

/// What the engine asks of the machine. Each may be left out; what needs it is then a fault.
struct EngineServices {
    std::function<DateTime()> now;  ///< date of the run: what `new Date()` gives and what the files carry
    std::string locale = "en_US";
    std::string time_zone = "GMT";
    /// What every report may say of this host, for definitions that declare such a parameter.
    std::map<std::string, Value, std::less<>> parameters;
    /// Runs the query of a definition that brings its own data. The connection is the definition's own; empty for the
    /// product's database.
    std::function<std::shared_ptr<TableSource>(const std::string& connection, const Command& command)> run_query;
    std::function<void(const PrintJob& job)> print;
    /// Asked before a file is exported; a fault of its own keeps the file as it is.
    std::function<void(const std::filesystem::path& target)> before_export;
    /// Told the pages for a window as soon as the first is finished, then of each further one, and of the end: all are
    /// there, or the run failed. Without the first nobody is told.
    std::function<void(const std::shared_ptr<PageView>& pages)> on_first_page;
    std::function<void()> on_page;
    std::function<void(bool all_there)> on_pages_end;
    /// Told how many rows the report has read, every thousand.
    std::function<void(size_t rows)> on_rows;
    /// Told path and reason of a definition that cannot be opened: the fault's box names neither.
    std::function<void(const std::string& path, const std::string& reason)> on_refused;
};

/// The engine behind the port.
///
/// @param fonts  folder of the shipped faces
std::unique_ptr<ReportEngine> make_report_engine(std::filesystem::path fonts, EngineServices services = {});

/// The statement of a definition with its parameters bound: each `$P{name}` becomes a mark.
/// @param value_of  the parameter's value
Command bound_query(std::string_view statement, const std::function<Value(const std::string& name)>& value_of);

}  // namespace velora
