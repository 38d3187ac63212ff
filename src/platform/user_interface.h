#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/report_engine.h"

namespace velora {

enum class Icon : uint8_t { Information, Exclamation, Critical };

/// As messages in files and answers name it.
constexpr const char* icon_name(Icon icon)
{
    switch (icon) {
        case Icon::Information:
            return "information";
        case Icon::Critical:
            return "critical";
        default:
            return "exclamation";
    }
}

struct MessageBox {
    std::string title;
    std::string text;
    Icon icon = Icon::Exclamation;
};

/// What a file dialog shows.
struct FileQuestion {
    std::string title;
    std::string folder;  ///< where it begins
    std::string filter;  ///< texts and patterns in turn, separated by "|"; the first pair counts at first
    bool several = false;
};

/// What a folder dialog shows.
struct FolderQuestion {
    std::string title;
    std::string root;
};

/// What a person sees: message boxes, windows and dialogs.
class UserInterface {
public:
    virtual ~UserInterface() = default;

    virtual void show(const MessageBox& box) = 0;

    /// Shows finished pages in a window of their own and returns at once.
    virtual void show_pages(std::shared_ptr<PageView> pages, const std::string& caption) = 0;

    // A user interface without dialogs answers as a person who cancels them.
    /// The full paths of the chosen files; none when the person cancels.
    virtual std::optional<std::vector<std::string>> choose_files(const FileQuestion&) { return std::nullopt; }
    virtual std::optional<std::string> choose_folder(const FolderQuestion&) { return std::nullopt; }
    /// The file to write; its ending says in which format.
    virtual std::optional<std::string> choose_target(const FileQuestion&) { return std::nullopt; }
    virtual void copy_text(const std::string& /*text*/) {}
    /// The web site of the maker.
    virtual void open_web_site() {}

    /// Something that went well and that a person may want to know, for a line at the edge of a window.
    virtual void note(const std::string& /*text*/) {}
    /// Long work tells how far it is; `total` is 0 where it is not known.
    virtual void progress(size_t /*done*/, size_t /*total*/) {}
};

}  // namespace velora
