#pragma once

#include <functional>
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
        user_.show(box);
    }
    void show_pages(std::shared_ptr<PageView> pages, const std::string& caption) override
    {
        user_.show_pages(std::move(pages), caption);
        pages_shown_ = true;
    }

    void progress(size_t done, size_t total) override
    {
        if (on_progress_) on_progress_(done, total);
    }

    /// Told how far a builder is with its rows; empty for nobody.
    void watch_progress(std::function<void(size_t, size_t)> watcher) { on_progress_ = std::move(watcher); }

    void forget()
    {
        boxes_.clear();
        pages_shown_ = false;
    }
    [[nodiscard]] const std::vector<MessageBox>& boxes() const { return boxes_; }
    [[nodiscard]] bool pages_shown() const { return pages_shown_; }

private:
    UserInterface& user_;
    std::vector<MessageBox> boxes_;
    bool pages_shown_ = false;
    std::function<void(size_t, size_t)> on_progress_;
};

}  // namespace velora
