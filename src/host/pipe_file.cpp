#include "host/pipe_file.h"

#include "host/host_error.h"
#include "host/pipe_json.h"
#include "values/fault.h"

namespace velora {
PipeFile::PipeFile(const std::filesystem::path& target) : target_(target)
{
    attempt([&] { file_.emplace(target); });
}

void PipeFile::add(std::string_view kind, const DataPipeRecordset& pipe)
{
    write_pipe_json(kind, pipe, [this](std::string_view text) { write(text); });
}

void PipeFile::finish()
{
    if (file_) attempt([&] { file_->finish(); });
}

void PipeFile::write(std::string_view text)
{
    if (taker_) return taker_(text);
    attempt([&] { file_->write(text); });
}

template <class Action>
void PipeFile::attempt(Action action) const
{
    try {
        action();
    } catch (const Fault& caught) {
        throw HostError("Data Pipe", "The file of --pipe is not written. " + caught.description());
    }
}

}  // namespace velora
