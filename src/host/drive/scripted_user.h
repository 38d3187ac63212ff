#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "forms/desk.h"
#include "host/drive/form_state.h"
#include "platform/user_interface.h"

namespace velora::drive {

/// The person whom the script plays: presses OK in every box, and tells the dialogs what the script had it told before.
/// A dialog without an answer is cancelled.
class ScriptedUser final : public UserInterface {
public:
    explicit ScriptedUser(UserInterface& below) : below_(below) {}

    /// From now on boxes come up in windows too.
    void show_in(UserInterface& windows) { windows_ = &windows; }

    /// False for a sort of dialog that there is not.
    bool queue(const std::string& sort, const Json& value);

    void show(const MessageBox& box) override;
    void show_pages(std::shared_ptr<PageView> pages, const std::string& caption) override;
    std::optional<std::vector<std::string>> choose_files(const FileQuestion& question) override;
    std::optional<std::string> choose_folder(const FolderQuestion& question) override;
    std::optional<std::string> choose_target(const FileQuestion& question) override;
    void progress(size_t done, size_t total) override { below_.progress(done, total); }
    /// False when no answer is queued for the finder.
    bool answer_finder(forms::FinderSort sort, std::string& answer);

    std::function<void(const MessageBox&)> on_box;
    std::function<void(std::shared_ptr<PageView>, const std::string&)> on_pages;

private:
    /// The next answer of the sort; none when there is none.
    std::optional<Json> next(const std::string& sort);

    UserInterface& below_;
    UserInterface* windows_ = nullptr;
    std::map<std::string, std::deque<Json>, std::less<>> answers_;
};

}  // namespace velora::drive
