#pragma once

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
};

}  // namespace velora
