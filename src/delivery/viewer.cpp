#include "delivery/viewer.h"

#include "session/error_messengers.h"

namespace velora {

namespace {

bool show_in_window(SessionState& state, const std::shared_ptr<OpenedReport>& report, const std::string& caption,
                    std::string_view procedure)
{
    return with_failure_path(state, ErrorMessenger, procedure, [&] {
        if (!report) throw fault::object_not_set("report");
        if (state.ports.user == nullptr) throw fault::of(fault::kCannotCreate, "frmViewer");
        state.ports.user->show_pages(report->View(), caption);
        return true;
    });
}

}  // namespace

bool InitializeTTX(SessionState& state, const std::shared_ptr<OpenedReport>& report, const std::string& caption)
{
    return show_in_window(state, report, caption, "frmViewer.InitializeTTX");
}

bool InitializeCustom(SessionState& state, const std::shared_ptr<OpenedReport>& report, const std::string& caption)
{
    return show_in_window(state, report, caption, "frmViewer.InitializeCustom");
}

}  // namespace velora
