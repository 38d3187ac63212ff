#pragma once

#include <velora/report.h>

#include <functional>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>

#include "host/host.h"
#include "service/report.h"

namespace velora {

/// Who is shown boxes: the program that called.
class CallingUser final : public UserInterface {
public:
    explicit CallingUser(const velora_options& options) : options_(options) {}

    void show(const MessageBox& box) override;
    void show_pages(std::shared_ptr<PageView> pages, const std::string& caption) override;

private:
    const velora_options& options_;
};

/// What went wrong last.
struct LastError {
    std::string text;
    int32_t fault = 0;
};

/// Of this thread, where no handle can keep it.
LastError& thread_error();

/// A handle: a session on a company with everything behind its ports.
class Handle {
public:
    /// @throws HostError, UsageError
    explicit Handle(const velora_options& options);

    /// One operation, with the program's own way to say how it ended. Nothing is thrown.
    /// @param kind  of the pipe that it fills; blank for none
    velora_status operate(std::string_view kind, const std::function<void(Report&)>& work) noexcept;
    /// Other work on the session. @return what it answers
    velora_status attempt(const std::function<velora_status(Host&)>& work) noexcept;

    /// Where exports go. @throws HostError, UsageError
    void set_export(const char* format, const char* target);
    /// By a part of its name; blank for that of the settings.
    void set_printer(const std::string& name);
    /// The definition of the kind that is named, or the usual one.
    [[nodiscard]] std::string definition(std::string_view kind, const char* named);

    /// Whether a call is running on it, which may be the caller's own.
    [[nodiscard]] bool is_in_use() noexcept { return !std::unique_lock(in_use_, std::try_to_lock); }
    [[nodiscard]] const LastError& error() const { return error_; }
    /// As the company was opened with, whatever an operation was given since.
    [[nodiscard]] WhichEngine engine() const { return engine_; }
    [[nodiscard]] bool multi_curr() const { return multi_curr_; }
    /// What the tax slots that were handed out point to.
    TaxSlots handed_slots;
    std::string handed_file;

private:
    template <class Work>
    velora_status guarded(Work work) noexcept;
    [[nodiscard]] std::string chosen_format(const char* format, const std::filesystem::path& file);
    velora_status shown();
    velora_status ended();
    void tell_pipe(std::string_view kind);

    velora_options options_;  // of its texts none is kept
    std::ostringstream silence_;
    Surroundings around_;
    CallingUser user_;
    Host host_;
    WhichEngine engine_ = eDBNone;
    bool multi_curr_ = false;
    std::mutex in_use_;
    LastError error_;
};

}  // namespace velora

/// What the C interface shows of a handle.
struct velora_report {
    velora::Handle handle;
};
