#pragma once

#include <filesystem>
#include <fstream>
#include <string_view>

#include "reports/data_pipe.h"

namespace velora {

/// The finished data of a run as JSON, one object on a line of its own for each document.
void write_pipe(std::ostream& out, std::string_view kind, const DataPipeRecordset& pipe);

/// A file of such objects. It is written beside its place and takes its name in `finish`.
class PipeFile {
public:
    /// @throws HostError when it cannot be written
    explicit PipeFile(const std::filesystem::path& target);
    ~PipeFile();
    PipeFile(const PipeFile&) = delete;
    PipeFile& operator=(const PipeFile&) = delete;

    void add(std::string_view kind, const DataPipeRecordset& pipe) { write_pipe(file_, kind, pipe); }
    void finish();

private:
    [[noreturn]] void fail() const;

    std::filesystem::path target_;
    std::filesystem::path making_;
    bool renamed_ = true;  ///< whether `making_` takes the target's name at the end
    std::ofstream file_;
};

}  // namespace velora
