#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "reports/data_pipe.h"
#include "session/enumerations.h"

namespace velora {

/// A report kind as a person names it, with the numbers under which the product knows it.
struct ReportKind {
    std::string_view name;  ///< as on the command line: "quote", "customers"
    WhichReport which;
    int16_t type;                        ///< ReportType of its list entries
    std::string_view title;              ///< as messages name it
    std::vector<PipeField> (*fields)();  ///< none: the kind has no pipe, or its builder is not part of this build
};

std::span<const ReportKind> report_kinds();
const ReportKind* find_report_kind(std::string_view name);

}  // namespace velora
