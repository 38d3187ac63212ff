#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "reports/data_pipe.h"
#include "reports/quote_criteria.h"
#include "reports/run_frame.h"
#include "session/enumerations.h"
#include "session/session_state.h"

namespace velora {

/// What one run is about. A builder reads what the criteria of its kind name.
struct Selection {
    int32_t quote_id = 0;
    bool whole_quantities = false;

    bool all_dates = true;
    DateTime from, to;
    CustomerFrom customer_from = CustomerFrom::Anybody;
    std::string accounting_customer;
    int32_t customer_id = 0;
    int32_t status_id = 0;
    int32_t reason_id = 0;

    std::string report_name;  ///< of a custom report
};

/// By what the data of a kind are selected.
struct Criteria {
    bool quote = false;
    bool whole_quantities = false;
    bool period = false;  ///< dates from and to, and one customer
    bool status = false;  ///< one status, and of the lost quotes one reason
    bool file = false;    ///< a definition that brings its own data
};

/// A user's choice of a definition: it holds where the flag is "True", or always where there is no flag.
struct DefaultSetting {
    std::string_view flag;
    std::string_view location;
};

/// Everything that the program knows of a report kind. Adding one is a line of the table in `kinds.cpp` and a file
/// with its builder.
struct ReportKind {
    std::string_view name;  ///< as a person types it: "quote", "customers"
    WhichReport which;
    int16_t type;              ///< ReportType of its list entries
    std::string_view title;    ///< of one such report
    std::string_view about;    ///< what the command prints, as its help says it
    std::string_view builder;  ///< the procedure that prints it
    std::string_view caption;  ///< of the selection form
    std::string_view criteria_caption = {};
    std::string_view list_text = {};  ///< of its row in the dialog that adds a report; empty where there is none
    std::string_view list_file;       ///< name of its list file behind the company id; the order kinds share one
    std::array<std::string_view, 2> shipped = {};  ///< names of its definitions in the list; each file is "NAME.rpt"
    std::array<DefaultSetting, 2> defaults = {};
    Criteria criteria = {};
    bool splits = false;  ///< one quote may come in several reports
    bool marks = false;   ///< a quote that was printed so is marked as printed
    std::vector<PipeField> (*fields)() =
        nullptr;  ///< none: the kind has no pipe, or its builder is not part of this build
    std::vector<PipeField> (*whole_quantity_fields)() = nullptr;  ///< of runs with whole quantities, where they differ
    RunEnd (*print)(SessionState&, const Selection&, const Delivery&) = nullptr;  ///< none: not part of this build
};

/// In the order of their types.
std::span<const ReportKind> report_kinds();
const ReportKind* find_report_kind(std::string_view name);
/// The order menu's own number and all others that are none of a report are the custom kind's.
const ReportKind& report_kind(WhichReport which);

}  // namespace velora
