#include "adapters/terminal/terminal_user_interface.h"

#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <ostream>

#include "values/fault.h"

namespace velora {

namespace {

Fault unwritable(const std::string& path)
{
    return {fault::kPathAccess, "The message file " + path + " cannot be written: " + std::strerror(errno), path};
}

std::string json_line(const MessageBox& box)
{
    const nlohmann::ordered_json line{{"title", box.title}, {"text", box.text}, {"icon", icon_name(box.icon)}};
    return line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

/// Line ends as a terminal has them, and none of the control characters that a value may carry.
std::string printable(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\r') continue;
        const bool is_control = (static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t') || c == '\x7f';
        result += is_control ? '?' : c;
    }
    return result;
}

}  // namespace

TerminalUserInterface::TerminalUserInterface(std::ostream& out, const std::string& messages)
    : out_(out), path_(messages)
{
    if (path_.empty()) return;
    messages_.open(path_, std::ios::binary | std::ios::trunc);
    if (!messages_) throw unwritable(path_);
}

void TerminalUserInterface::show(const MessageBox& box)
{
    const std::string text = printable(box.title) + '\n' + printable(box.text);
    const auto [shown, is_new] = times_.try_emplace(text, 0);
    ++shown->second;
    if (is_new) {
        texts_.push_back(&shown->first);
        out_ << text << std::endl;
    }
    if (path_.empty()) return;
    messages_ << json_line(box) << std::flush;
    if (!messages_) throw unwritable(path_);
}

void TerminalUserInterface::tell_repeats()
{
    for (const std::string* shown : texts_) {
        const std::string& text = *shown;
        const size_t times = times_[text];
        if (times == 1) continue;
        const size_t title = text.find('\n');
        const size_t first_line = text.find('\n', title + 1);
        out_ << "Shown " << times << " times: " << text.substr(0, title) << ", "
             << text.substr(title + 1, first_line - title - 1) << '\n';
    }
    texts_.clear();
    times_.clear();
    out_ << std::flush;
}

void TerminalUserInterface::show_pages(std::shared_ptr<PageView>, const std::string& caption)
{
    throw Fault(fault::kCannotCreate, "There is no window to show " + caption + " in: this program runs in a terminal",
                caption);
}

}  // namespace velora
