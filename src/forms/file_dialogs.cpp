#include "forms/file_dialogs.h"

#include "session/settings.h"
#include "values/fault.h"

namespace velora::forms {

namespace {

constexpr int32_t kDialogCancelled = 32755;

std::vector<std::string> ask(SessionState& state, const FileQuestion& question)
{
    if (state.ports.user != nullptr) {
        if (auto files = state.ports.user->choose_files(question); files && !files->empty()) return *files;
    }
    throw Fault(kDialogCancelled, "Cancel was selected.");
}

}  // namespace

std::string ask_for_definition(SessionState& state, std::string_view title)
{
    return ask(state, {std::string(title), application_path(state, "Reports"),
                       "Crystal Report Files (*.rpt)|*.rpt|All Files(*.*)|*.*", false})
        .front();
}

std::vector<std::string> ask_for_files(SessionState& state, std::string_view title, const std::string& folder)
{
    return ask(state, {std::string(title), folder, "All Files(*.*)|*.*", true});
}

std::string Browse_Folder(SessionState& state, std::string_view title, std::string_view root)
{
    if (state.ports.user == nullptr) return {};
    return state.ports.user->choose_folder({std::string(title), std::string(root)}).value_or("");
}

}  // namespace velora::forms
