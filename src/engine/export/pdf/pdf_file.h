#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "values/atomic_file.h"

namespace velora::engine {

/// Number of an object in a PDF file.
using PdfId = uint32_t;

/// Writes the objects of a PDF file (ISO 32000) one after the other, and the table of their places at the end.
class PdfFile {
public:
    explicit PdfFile(std::unique_ptr<AtomicFile> file);
    ~PdfFile();
    PdfFile(const PdfFile&) = delete;
    PdfFile& operator=(const PdfFile&) = delete;

    /// A number for an object that is written later.
    PdfId reserve();
    void object(PdfId id, std::string_view body);
    /// A stream, deflated. `entries` are further entries of its dictionary.
    void stream(PdfId id, std::string_view entries, std::string_view bytes);
    /// A stream whose bytes are already encoded as `entries` say.
    void raw_stream(PdfId id, std::string_view entries, std::string_view bytes);
    void finish(PdfId catalog, PdfId info);

private:
    struct Deflater;
    void put(std::string_view bytes);
    void begin_object(PdfId id);
    [[nodiscard]] std::string identity() const;

    std::unique_ptr<AtomicFile> file_;
    std::vector<uint64_t> places_;  ///< by number; 0 while an object is not written
    uint64_t written_ = 0;
    uint64_t check_ = 0xCBF29CE484222325;  ///< of the streams
    std::unique_ptr<Deflater> deflater_;
    std::string head_;
};

/// A text for titles and the like: a literal for ASCII, else UTF-16.
std::string pdf_text(std::string_view text);
/// A text in hex digits of UTF-16, with its mark.
std::string pdf_utf16(std::string_view text);
/// The hex digits of the text's UTF-16 units; control characters are left out.
void append_pdf_utf16(std::string& out, std::string_view text);
/// A literal string in parentheses.
std::string pdf_literal(std::string_view bytes);
std::string pdf_reference(PdfId id);

}  // namespace velora::engine
