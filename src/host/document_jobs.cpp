#include "host/document_jobs.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <map>
#include <ostream>

#include "host/job_frames.h"

namespace velora {
namespace {

using Kind = JobFrame::Kind;

std::string box_text(const MessageBox& box)
{
    return std::to_string(static_cast<int>(box.icon)) + ' ' + std::to_string(box.title.size()) + ' ' + box.title +
           box.text;
}

MessageBox box_of(const std::string& text)
{
    size_t at = 0, used = 0;
    const auto icon = static_cast<Icon>(std::stoi(text, &used));
    at = used + 1;
    const size_t title = std::stoul(text.substr(at), &used);
    at += used + 1;
    return {text.substr(at, title), text.substr(at + title), icon};
}

/// Which process works out which task: the tasks go round, and those of one key stay together.
std::vector<size_t> workers_of(const std::vector<DocumentTask>& tasks, size_t count)
{
    std::map<std::string, size_t> by_key;
    std::vector<size_t> workers;
    for (const DocumentTask& task : tasks) {
        workers.push_back(by_key.try_emplace(task.key, by_key.size() % count).first->second);
    }
    return workers;
}

/// What runs in a process of its own: a host over the same stores whose words go to the parent.
void work(const Host& parent, const DocumentJobs& jobs, const std::vector<size_t>& own, FrameOutbox& outbox)
{
    FrameBuffer out_buffer(outbox, Kind::Out), err_buffer(outbox, Kind::Err);
    std::ostream out(&out_buffer), err(&err_buffer);
    const Surroundings& around = parent.around();
    const Surroundings inner{out, err, around.environment, around.program, false, around.adapt};
    CommonOptions options = parent.options();
    options.messages.clear();
    Host host(options, inner);
    host.user().divert([&](const MessageBox& box) { outbox.put(Kind::Box, box_text(box)); });
    auto pipe = jobs.pipe ? std::make_unique<PipeFile>([&](auto text) { outbox.put(Kind::Pipe, text); })
                          : std::unique_ptr<PipeFile>();
    SessionState& state = host.company();
    state.ports.marks_as_printed = jobs.marks;
    Documents documents(host, jobs.options, jobs.kind, jobs.tasks.size(), std::move(pipe));
    for (const size_t task : own) {
        const ExitStatus status = documents.deliver(jobs.tasks[task].label, [&] { return jobs.select(state, task); });
        outbox.put(Kind::Done, std::to_string(static_cast<int>(status)));
        outbox.send();
    }
}

/// A process that works, and the end of the pipe on which it tells what comes of it.
class Worker {
public:
    Worker(const Host& parent, const DocumentJobs& jobs, const std::vector<size_t>& own)
    {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) cannot_start();
        const pid_t starter = ::getpid();
        process_ = ::fork();
        if (process_ < 0) cannot_start();
        if (process_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGTERM);
            if (::getppid() != starter) ::_exit(1);
            ::close(ends[0]);
            run(parent, jobs, own, ends[1]);
        }
        ::close(ends[1]);
        handle_ = ends[0];
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker()
    {
        ::close(handle_);
        ::waitpid(process_, nullptr, 0);
    }

    [[nodiscard]] int handle() const { return handle_; }

private:
    /// Leaves without the parent's own endings: its unfinished files are not this process's to remove.
    [[noreturn]] static void run(const Host& parent, const DocumentJobs& jobs, const std::vector<size_t>& own,
                                 int handle)
    {
        int status = 0;
        FrameOutbox outbox(handle);
        try {
            work(parent, jobs, own, outbox);
        } catch (const HostError& error) {
            status = 1;
            try {
                outbox.put(Kind::Box, box_text({error.title(), error.what(), Icon::Critical}));
                outbox.send();
            } catch (...) {  // nobody listens any more
            }
        } catch (...) {
            status = 1;
        }
        ::_exit(status);
    }
    [[noreturn]] static void cannot_start()
    {
        throw HostError("Several Documents", std::string("No further process can be started: ") + std::strerror(errno) +
                                                 ". Take fewer with --jobs.");
    }

    pid_t process_ = -1;
    int handle_ = -1;
};

/// Repeats what a process tells of one document, up to its end.
class Retelling {
public:
    Retelling(Host& host, PipeFile* pipe) : host_(host), pipe_(pipe) {}

    ExitStatus document(const std::string& label, int handle)
    {
        host_.user().forget();
        JobFrame frame;
        while (read_frame(handle, frame)) {
            if (frame.kind == Kind::Done) return static_cast<ExitStatus>(std::stoi(frame.text));
            repeat(frame);
        }
        host_.tell("Several Documents", "The process that was to work out \"" + label +
                                            "\" has ended before its time. The document was not delivered.");
        return ExitStatus::Told;
    }
    [[nodiscard]] bool filled_pipe() const { return filled_pipe_; }

private:
    void repeat(const JobFrame& frame)
    {
        switch (frame.kind) {
            case Kind::Out:
                host_.around().out << frame.text;
                break;
            case Kind::Err:
                host_.around().err << frame.text;
                break;
            case Kind::Box:
                host_.user().show(box_of(frame.text));
                break;
            case Kind::Pipe:
                if (pipe_ != nullptr) pipe_->write(frame.text);
                filled_pipe_ = true;
                break;
            case Kind::Done:
                break;
        }
    }

    Host& host_;
    PipeFile* pipe_;
    bool filled_pipe_ = false;
};

}  // namespace

ExitStatus run_jobs(Host& host, DocumentJobs& jobs)
{
    const size_t count = std::min(jobs.count, jobs.tasks.size());
    const std::vector<size_t> worker_of = workers_of(jobs.tasks, count);
    std::vector<std::vector<size_t>> own(count);
    for (size_t task = 0; task < jobs.tasks.size(); ++task) own[worker_of[task]].push_back(task);
    host.around().out.flush();
    std::vector<std::unique_ptr<Worker>> workers;
    for (const auto& tasks : own) workers.push_back(std::make_unique<Worker>(host, jobs, tasks));

    RunProgress progress(host.around().err, host.is_watched(), jobs.tasks.size());
    Retelling retelling(host, jobs.pipe.get());
    RunSummary summary;
    for (size_t task = 0; task < jobs.tasks.size(); ++task) {
        progress.document_begins();
        const std::string& label = jobs.tasks[task].label;
        const ExitStatus status = host.guard([&] {
            progress.clear();
            return retelling.document(label, workers[worker_of[task]]->handle());
        });
        summary.add(label, status, host.user().boxes().size());
        progress.document_ends();
    }
    if (retelling.filled_pipe()) jobs.pipe->finish();
    return summary.tell(host.around().err);
}

}  // namespace velora
