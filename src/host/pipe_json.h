#pragma once

#include <functional>
#include <string_view>

#include "reports/data_pipe.h"

namespace velora {

/// Hands the finished data of a run to `write` as one JSON object on lines of its own, piece by piece.
void write_pipe_json(std::string_view kind, const DataPipeRecordset& pipe,
                     const std::function<void(std::string_view)>& write);

}  // namespace velora
