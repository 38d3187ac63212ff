#include "host/open_windows.h"

#include "forms/frm_viewer.h"
#include "host/windows_module.h"
#include "service/report.h"

namespace velora {

drive::HostCalls host_calls(SessionState& state)
{
    const auto session = state.gSess;
    const auto database = state.gConn;
    const WhichEngine engine = state.gEngine;
    const bool multi_currency = state.gMultiCurr;
    const std::string user = state.gSessUser;
    return {
        [=, &state](WhichReport kind, int32_t quote_id) {
            Report(state).Open_Reports(session, database, true, engine, kind, multi_currency, user, quote_id);
        },
        [=, &state](WhichFrame pane) { Report(state).Show_Printers(session, database, true, engine, pane); },
        [=, &state] { Report(state).Show_Emailer(session, true, engine); },
    };
}

OpenWindows::OpenWindows(SessionState& state, const std::filesystem::path& module, const std::string& places)
    : state_(state), desk_(state_), toolkit_(open_toolkit(module, desk_, {.places = places, .is_scripted = false}))
{
    state_.ports.windows = &desk_;
}

void OpenWindows::begin_pages(const std::shared_ptr<PageView>& pages)
{
    growing_ = &desk_.begin_viewer(pages);
    toolkit_->stay_alive(*growing_);
    painted_ = std::chrono::steady_clock::now();
}

void OpenWindows::more_pages()
{
    constexpr auto kOften = std::chrono::milliseconds(40);
    const auto now = std::chrono::steady_clock::now();
    if (growing_ == nullptr || now - painted_ < kOften) return;
    growing_->pages_grew(false);
    toolkit_->stay_alive(*growing_);
    painted_ = std::chrono::steady_clock::now();
}

void OpenWindows::end_pages(bool all_there)
{
    if (growing_ == nullptr) return;
    if (all_there) {
        growing_->pages_grew(true);
    } else {
        growing_->unload();
    }
    growing_ = nullptr;
}

OpenWindows::~OpenWindows()
{
    state_.ports.windows = nullptr;
    desk_.close_all();
}

}  // namespace velora
