#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "reports/data_pipe.h"
#include "values/atomic_file.h"

namespace velora {

/// A file of the finished data of a run as JSON, one object on a line of its own for each document. It takes its name
/// in `finish`. Every function throws HostError when it cannot be written.
class PipeFile {
public:
    explicit PipeFile(const std::filesystem::path& target);
    /// No file at all: the text goes to who takes it.
    explicit PipeFile(std::function<void(std::string_view)> taker) : taker_(std::move(taker)) {}

    void add(std::string_view kind, const DataPipeRecordset& pipe);
    /// Text of objects that were made elsewhere.
    void write(std::string_view text);
    void finish();

private:
    template <class Action>
    void attempt(Action action) const;

    std::function<void(std::string_view)> taker_;
    std::filesystem::path target_;
    std::optional<AtomicFile> file_;
};

}  // namespace velora
