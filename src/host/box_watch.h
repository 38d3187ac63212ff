#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/user_interface.h"

namespace velora {

/// Passes everything on to the user and remembers what was shown, from which the program's exit status follows.
class BoxWatch final : public UserInterface {
public:
    explicit BoxWatch(UserInterface& user) : user_(user) {}

    void show(const MessageBox& box) override
    {
        boxes_.push_back(box);
        if (taker_) {
            taker_(box);
            return;
        }
        user_.show(box);
        if (windows_ != nullptr) windows_->show(box);
    }
    void show_pages(std::shared_ptr<PageView> pages, const std::string& caption) override
    {
        (windows_ != nullptr ? *windows_ : user_).show_pages(std::move(pages), caption);
        pages_shown_ = true;
    }
    std::optional<std::vector<std::string>> choose_files(const FileQuestion& question) override
    {
        return (windows_ != nullptr ? *windows_ : user_).choose_files(question);
    }
    std::optional<std::string> choose_folder(const FolderQuestion& question) override
    {
        return (windows_ != nullptr ? *windows_ : user_).choose_folder(question);
    }
    std::optional<std::string> choose_target(const FileQuestion& question) override
    {
        return (windows_ != nullptr ? *windows_ : user_).choose_target(question);
    }
    void copy_text(const std::string& text) override { (windows_ != nullptr ? *windows_ : user_).copy_text(text); }
    void open_web_site() override { (windows_ != nullptr ? *windows_ : user_).open_web_site(); }

    void note(const std::string& text) override
    {
        if (on_note_) on_note_(text);
        (windows_ != nullptr ? *windows_ : user_).note(text);
    }

    void progress(size_t done, size_t total) override
    {
        if (on_progress_) on_progress_(done, total);
        if (windows_ != nullptr) windows_->progress(done, total);
    }

    /// From now on boxes come up in windows too, and pages and dialogs there; null for no more.
    void show_in(UserInterface* windows) { windows_ = windows; }

    /// Told how far a builder is with its rows; empty for nobody.
    void watch_progress(std::function<void(size_t, size_t)> watcher) { on_progress_ = std::move(watcher); }

    /// Boxes go to `taker` in place of the user.
    void divert(std::function<void(const MessageBox&)> taker) { taker_ = std::move(taker); }
    /// Told what went well; empty for nobody.
    void watch_notes(std::function<void(const std::string&)> watcher) { on_note_ = std::move(watcher); }

    void forget()
    {
        boxes_.clear();
        pages_shown_ = false;
    }
    [[nodiscard]] const std::vector<MessageBox>& boxes() const { return boxes_; }
    [[nodiscard]] bool pages_shown() const { return pages_shown_; }

private:
    UserInterface& user_;
    UserInterface* windows_ = nullptr;
    std::function<void(const MessageBox&)> taker_;
    std::vector<MessageBox> boxes_;
    bool pages_shown_ = false;
    std::function<void(size_t, size_t)> on_progress_;
    std::function<void(const std::string&)> on_note_;
};

}  // namespace velora
