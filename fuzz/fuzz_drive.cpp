#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "host/adapters.h"
#include "host/command_line.h"
#include "host/drive_command.h"
#include "host/host.h"
#include "platform/mail_transport.h"
#include "platform/printers.h"

namespace {

namespace fs = std::filesystem;
using namespace velora;

class NoPrinters final : public Printers {
    [[nodiscard]] std::vector<Printer> list() const override { return {}; }
};

class NoMail final : public MailTransport {
    void Send(const MailProperties&, MailEvents& events) override { events.SendFailed("Nobody answers."); }
};

void leave_the_machine_alone(Adapters& made)
{
    made.printers = std::make_unique<NoPrinters>();
    made.mail_by = [](const Clock&, const MailServerRules&) { return std::make_unique<NoMail>(); };
}

/// Whether every file that a script could name lies below the current folder: nobody's own files are to be written.
bool stays_inside(std::string_view script)
{
    for (const std::string_view way_out : {"\"/", "..", "~", "\\"}) {
        if (script.find(way_out) != std::string_view::npos) return false;
    }
    return true;
}

/// A sample company in a folder from which names count, gone at the end.
class Company {
public:
    Company()
    {
        fs::create_directories(folder_);
        fs::current_path(folder_);
        const std::vector<std::string> make{"--quiet", "init", "acme"};
        if (run_command_line(make, around_) != ExitStatus::Delivered) std::abort();
        CommonOptions options;
        options.folder = "acme";
        options.settings = (folder_ / "settings.ini").string();
        options.today = DateTime::from_iso("2026-06-15");
        options.region = "en-US";
        host_ = std::make_unique<Host>(options, around_);
    }
    Company(const Company&) = delete;
    Company& operator=(const Company&) = delete;
    ~Company()
    {
        host_.reset();
        fs::current_path("/");
        fs::remove_all(folder_);
    }

    void obey(const std::string& script)
    {
        std::istringstream in(script);
        out_.str("");
        try {
            drive_forms(*host_, in);
        } catch (const UsageError&) {
            // a line that is no JSON
        }
    }

private:
    fs::path folder_ = fs::temp_directory_path() / ("fuzz-drive-" + std::to_string(getpid()));
    std::ostringstream out_, err_;
    const Surroundings around_{out_,
                               err_,
                               [](const char*) { return std::string(); },
                               fs::path(VELORA_SOURCE_DIR) / "velora-report",
                               false,
                               leave_the_machine_alone};
    std::unique_ptr<Host> host_;
};

}  // namespace

/// Any bytes as commands for the forms: refused in words, or obeyed; the next input meets the same host.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Company company;
    const std::string script(reinterpret_cast<const char*>(data), size);
    if (stays_inside(script)) company.obey(script);
    return 0;
}
