#pragma once

#include <string>
#include <variant>

#include "engine/page/drawing.h"

namespace velora::engine {

/// What a drawing says, label by label: it goes with the picture where a format shows the drawing as one.
inline std::string drawing_words(const Drawing& drawing)
{
    std::string words;
    for (const auto& item : drawing.items) {
        const auto* label = std::get_if<Label>(&item);
        if (label == nullptr || label->text.empty()) continue;
        if (!words.empty()) words += ' ';
        words += label->text;
    }
    return words;
}

}  // namespace velora::engine
