#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/export/xls/xls_records.h"

namespace velora::engine {

/// From the byte `begin` on a text has the font; it lasts to the next part.
struct XlsTextPart {
    uint32_t begin = 0;
    uint16_t font = 0;
};

/// The shared string table of a workbook: each text once, cells refer to it by number.
class XlsStrings {
public:
    /// A cell holds at most this many characters.
    static constexpr size_t kMaxCharacters = 32767;

    /// Number of the text, which is cut to what a cell holds.
    uint32_t add(std::string_view utf8, const std::vector<XlsTextPart>& parts = {});
    [[nodiscard]] std::string_view text(uint32_t number) const;
    [[nodiscard]] size_t size() const { return texts_.size(); }
    /// The marked parts of the text; empty for most.
    [[nodiscard]] std::vector<XlsTextPart> parts(uint32_t number) const
    {
        const auto marked = marked_.find(number);
        return marked == marked_.end() ? std::vector<XlsTextPart>() : marked->second.parts;
    }

    /// Writes SST and its index EXTSST; `references` is the number of cells that refer to the table.
    void write(XlsRecords& stream, uint32_t references) const;

private:
    struct Marked {
        size_t length;  ///< of the text, which the key holds together with its parts
        std::vector<XlsTextPart> parts;
    };

    std::unordered_map<std::string, uint32_t> numbers_;
    std::vector<const std::string*> texts_;  ///< keys of `numbers_`, whose nodes stay where they are
    std::unordered_map<uint32_t, Marked> marked_;
};

}  // namespace velora::engine
