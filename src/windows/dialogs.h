#pragma once

#include "platform/user_interface.h"
#include "windows/shown_windows.h"

namespace velora::windows {

/// Message boxes and file dialogs of the toolkit, over the window in front.
class Dialogs final : public UserInterface {
public:
    explicit Dialogs(ShownWindows& windows) : windows_(windows) {}

    void show(const MessageBox& box) override;
    void show_pages(std::shared_ptr<PageView> pages, const std::string& caption) override;
    std::optional<std::vector<std::string>> choose_files(const FileQuestion& question) override;
    std::optional<std::string> choose_folder(const FolderQuestion& question) override;
    std::optional<std::string> choose_target(const FileQuestion& question) override;
    void copy_text(const std::string& text) override;
    void progress(size_t done, size_t total) override;

private:
    ShownWindows& windows_;
};

}  // namespace velora::windows
