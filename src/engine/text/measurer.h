#pragma once

#include <memory>
#include <string_view>

#include "engine/text/text_layout.h"

namespace velora::engine {

class FontStore;

/// Lays texts out. Holds caches: not for several threads at once.
class Measurer {
public:
    explicit Measurer(FontStore& fonts);
    ~Measurer();
    Measurer(const Measurer&) = delete;
    Measurer& operator=(const Measurer&) = delete;

    void measure(const TextRequest& request, TextLayout& layout);

    /// Width of a text on one line.
    float width(std::string_view text, const Font& font);
    /// Distance from one base line to the next at single spacing.
    float line_height(const Font& font);

private:
    struct Caches;
    void fill_last_line(const TextRequest& request, TextLayout& layout);

    FontStore& fonts_;
    std::unique_ptr<Caches> caches_;
};

}  // namespace velora::engine
