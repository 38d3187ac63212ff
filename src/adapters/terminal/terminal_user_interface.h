#pragma once

#include <fstream>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "platform/user_interface.h"

namespace velora {

/// Message boxes as text: title and text on a stream, each one once, and when a file is given one JSON line for each
/// box:
/// {"title","text","icon"} with the icon "information", "exclamation" or "critical".
class TerminalUserInterface final : public UserInterface {
public:
    /// @param messages  path of the file, which begins anew; empty for none
    /// @throws Fault 75 when the file cannot be written
    explicit TerminalUserInterface(std::ostream& out, const std::string& messages = {});

    /// A box that was shown before is only counted on the stream; the file takes every one.
    void show(const MessageBox& box) override;
    /// One line for each box that was shown more than once, with its count.
    void tell_repeats();
    /// A terminal has no windows. @throws Fault 429
    void show_pages(std::shared_ptr<PageView> pages, const std::string& caption) override;

private:
    std::ostream& out_;
    std::string path_;
    std::ofstream messages_;
    std::map<std::string, size_t> times_;    ///< by the text on the stream
    std::vector<const std::string*> texts_;  ///< the keys of `times_` as they came up
};

}  // namespace velora
