#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "engine/page/style.h"

namespace velora::engine {

class Face;

/// Finds the faces for fonts by name: the shipped ones in a folder, others with the system's help.
/// Opens files when they are first needed. Not for several threads at once.
class FontStore {
public:
    using Warn = std::function<void(const std::string&)>;

    /// @param folder  holds the shipped faces
    /// @param warn    see `tell`
    explicit FontStore(std::filesystem::path folder, Warn warn = {});
    ~FontStore();
    FontStore(const FontStore&) = delete;
    FontStore& operator=(const FontStore&) = delete;

    /// From now on `warn` is told once of each font and character that is missing, also of those met before. It may be
    /// empty.
    void tell(Warn warn);

    /// The face for family, bold and italic of a font; it lives as long as the store. A missing family gives a
    /// shipped one that comes near. @throws Fault 53 when not even that file can be read
    const Face& face(const Font& font);
    /// A face that has the character where the font's own lacks it, or null when none has.
    const Face* fallback(char32_t character, const Font& font);

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace velora::engine
