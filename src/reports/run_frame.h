#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "reports/data_pipe.h"
#include "reports/statement.h"
#include "session/session_state.h"
#include "values/fault.h"

namespace velora {

/// Where a run's result goes: an export wins over a preview, and with neither it goes to the printer.
struct Delivery {
    std::string report_string;  ///< full path of the definition
    bool preview = false;
    bool export_it = false;
};

// The fault numbers after which a builder goes on with its next statement. They differ on purpose.
inline constexpr std::array<int32_t, 2> kToleratedByLists{fault::kSubscript, fault::kNull};
inline constexpr std::array<int32_t, 3> kToleratedByOrders{fault::kOverflow, fault::kSubscript, fault::kNull};
inline constexpr std::array<int32_t, 4> kToleratedByQuotes{fault::kOverflow, fault::kSubscript, fault::kDivisionByZero,
                                                           fault::kNull};

/// A builder, by the name that its messages give it.
struct Builder {
    std::string_view procedure;
    std::span<const int32_t> tolerated;
    bool reads_between_outputs = false;  ///< it delivers several reports in one run, out of one state of the data
};

/// What says that a quote was printed as a document: the statements that write it, up to the id of the quote.
struct Mark {
    std::string_view sql_server;
    std::string_view pervasive;
};

/// The steps that all builders share, each a statement of the run: a fault that the builder tolerates drops it.
class ReportRun {
public:
    /// From here to the output the run reads one state of the data.
    ReportRun(SessionState& state, const Builder& builder, const Delivery& delivery);

    [[nodiscard]] SessionState& state() { return state_; }
    [[nodiscard]] const Delivery& delivery() const { return delivery_; }
    [[nodiscard]] Statements& statements() { return statements_; }

    /// @throws Fault 20507 when the definition is missing or none
    void open_definition();
    /// Hands the finished pipe to the first table of the definition.
    void attach(const DataPipeRecordset& pipe);

    using Text = std::function<std::string()>;
    /// The first printer whose name holds `name`, which may carry wildcards, prints the report; a blank name leaves the
    /// definition's own. @throws Fault 91 when no printer fits
    void choose_printer(const Text& name);
    /// The printer of the user's settings.
    void choose_printer();
    /// The device of exactly that name prints the report, whether this machine has it or not.
    void select_device(const std::string& name);
    /// Sends the report on its way. @param export_name  without folder and extension
    RunEnd route(const Text& export_name);
    /// Whether the host wants each of several reports in a file of its own.
    [[nodiscard]] bool numbers_files() const
    {
        return reads_between_outputs_ && delivery_.export_it && state_.ports.numbers_outputs;
    }
    /// Marks the quote as printed, whichever way its document went; not one that went nowhere, and not where the host
    /// prints without marks. A database that refuses is told, and the document stays delivered.
    void mark(const Mark& as, int32_t quote, RunEnd end);

private:
    void select_printer(std::string_view name);
    [[nodiscard]] std::string file_name(const Text& export_name);
    void name_print_job(const Text& export_name);

    SessionState& state_;
    const Delivery& delivery_;
    Statements statements_;
    std::string_view procedure_;
    bool reads_between_outputs_;
    size_t files_ = 0;

    /// One state of each of the two stores.
    struct Snapshots {
        std::unique_ptr<Snapshot> product, accounting;
        void end() { *this = {}; }
    } snapshot_;
};

/// Runs a builder with the lookups of the run cached. A fault that the builder did not tolerate ends in
/// `Show_ReportError` under the procedure's name. The answer also stays in the state, for hosts of the public class.
RunEnd run_report(SessionState& state, const Builder& builder, const Delivery& delivery,
                  const std::function<RunEnd(ReportRun&)>& build);

/// Tells the user why a run ended; a user who cancelled it is told nothing.
RunEnd Show_ReportError(SessionState& state, const Fault& caught, std::string_view procedure);

/// Tells that there is nothing to put on a list.
RunEnd no_data(SessionState& state, std::string_view text);

/// "quote number - name": how the exports of order documents are called. @throws Fault 3021 for a pipe without rows
std::string document_name(const DataPipeRecordset& pipe, std::string_view name);

/// "quote number - name", as the parts of an order are described; without blanks at its ends.
std::string part_of(std::string_view quote_number, std::string_view name);

/// "yyyymmdd - name": how the exports of list reports are called.
std::string dated_name(SessionState& state, std::string_view name);

}  // namespace velora
