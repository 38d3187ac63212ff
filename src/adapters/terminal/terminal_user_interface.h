#pragma once

#include <cstddef>
#include <fstream>
#include <iosfwd>
#include <string>

#include "platform/user_interface.h"

namespace velora {

/// Message boxes as text: title and text on a stream, and when a file is given one JSON line for each box:
/// {"title","text","icon"} with the icon "information", "exclamation" or "critical".
class TerminalUserInterface final : public UserInterface {
public:
    /// @param messages  path of the file, which begins anew; empty for none
    /// @throws Fault 75 when the file cannot be written
    explicit TerminalUserInterface(std::ostream& out, const std::string& messages = {});

    void show(const MessageBox& box) override;
    /// A terminal has no windows. @throws Fault 429
    void show_pages(std::shared_ptr<PageView> pages, const std::string& caption) override;

    [[nodiscard]] size_t boxes_shown() const { return boxes_shown_; }

private:
    std::ostream& out_;
    std::string path_;
    std::ofstream messages_;
    size_t boxes_shown_ = 0;
};

}  // namespace velora
