#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "engine/definition/warning.h"

namespace velora::engine {

/// A parsed XML text that knows where everything in it stands, and collects the warnings about it.
class SourceText {
public:
    /// @throws DefinitionError for what is no XML, too large or nested too deeply
    SourceText(std::string_view xml, std::vector<Warning>& warnings);

    [[nodiscard]] pugi::xml_node root() const { return document_.document_element(); }
    /// Place of a character that lies in the parsed text; unknown for a text that was not in UTF-8.
    [[nodiscard]] Position place(const char* inside) const;
    void warn(Position place, std::string_view element, std::string text);

private:
    [[nodiscard]] Position place_of(size_t offset) const;
    [[nodiscard]] size_t characters_before(size_t offset) const;
    void check_depth() const;

    std::string written_;  ///< in UTF-8, unless it is in UTF-16
    std::string buffer_;   ///< a copy that the document points into and has changed
    pugi::xml_document document_;
    std::vector<size_t> lines_;       ///< where each line starts
    std::vector<size_t> characters_;  ///< before each block of bytes: a file may be a single line
    std::vector<Warning>& warnings_;
};

}  // namespace velora::engine
