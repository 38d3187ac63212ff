#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/page/style.h"

namespace velora::engine {

class Face;

/// Finds the faces for fonts by name: the shipped ones in a folder, others with the system's help.
class FontStore {
public:
    using Warn = std::function<void(const std::string&)>;

    /// @param folder  holds the shipped faces; they are opened when first needed
    /// @param warn    told once for each font that is missing, with its name; may be empty
    explicit FontStore(std::filesystem::path folder, Warn warn = {});
    ~FontStore();
    FontStore(const FontStore&) = delete;
    FontStore& operator=(const FontStore&) = delete;

    /// The face for a font. One that is missing gives the shipped sans serif face.
    /// @throws Fault 53 when not even the shipped face can be read
    const Face& face(const Font& font);
    /// A face that has the character, or null.
    const Face* fallback(char32_t character, const Font& font);

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace velora::engine
