#include "delivery/viewer.h"

#include "session/error_messengers.h"

namespace velora {

namespace {

void show_in_window(SessionState& state, const std::shared_ptr<OpenedReport>& report, const std::string& caption,
                    std::string_view procedure)
{
    with_failure_path(state, ErrorMessenger, procedure, [&] {
        if (!report) throw fault::object_not_set("report");
        if (state.ports.user == nullptr) throw fault::of(fault::kCannotCreate, "frmViewer");
        state.ports.user->show_pages(report->View(), caption);
    });
}

}  // namespace

void InitializeTTX(SessionState& state, const std::shared_ptr<OpenedReport>& report, const std::string& caption)
{
    show_in_window(state, report, caption, "frmViewer.InitializeTTX");
}

void InitializeCustom(SessionState& state, const std::shared_ptr<OpenedReport>& report, const std::string& caption)
{
    show_in_window(state, report, caption, "frmViewer.InitializeCustom");
}

}  // namespace velora
