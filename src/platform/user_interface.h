#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/report_engine.h"

namespace velora {

enum class Icon : uint8_t { Information, Exclamation, Critical };

struct MessageBox {
    std::string title;
    std::string text;
    Icon icon = Icon::Exclamation;
};

/// What a person sees: message boxes and windows.
class UserInterface {
public:
    virtual ~UserInterface() = default;

    virtual void show(const MessageBox& box) = 0;

    /// Shows finished pages in a window of their own and returns at once.
    virtual void show_pages(std::shared_ptr<PageView> pages, const std::string& caption) = 0;

    /// Long work tells how far it is; `total` is 0 where it is not known.
    virtual void progress(size_t /*done*/, size_t /*total*/) {}
};

}  // namespace velora
