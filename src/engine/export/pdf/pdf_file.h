#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/page/page.h"
#include "values/atomic_file.h"
#include "values/deflate.h"

namespace velora::engine {

/// Number of an object in a PDF file.
using PdfId = uint32_t;

/// Writes the objects of a PDF file (ISO 32000) one after the other, and the table of their places at the end. In a
/// long file a second thread packs and writes them, in the same order, while the next pages are made; what goes wrong
/// there is thrown by a later call.
class PdfFile {
public:
    explicit PdfFile(std::unique_ptr<AtomicFile> file);
    ~PdfFile();
    PdfFile(const PdfFile&) = delete;
    PdfFile& operator=(const PdfFile&) = delete;

    /// Has the file encrypted when it is complete; until then it is held in memory. To be called before anything else.
    void protect(std::shared_ptr<const Protection> protection) { protection_ = std::move(protection); }
    /// A number for an object that is written later.
    PdfId reserve();
    void object(PdfId id, std::string_view body);
    /// A small object that is written together with others, deflated. It must be no stream.
    void packed_object(PdfId id, std::string_view body);
    /// The same for a body that is appended to what this answers with, until the next call of anything here.
    std::string& begin_packed_object(PdfId id);
    void end_packed_object();
    /// A stream, deflated. `entries` are further entries of its dictionary.
    void stream(PdfId id, std::string_view entries, std::string_view bytes);
    /// A stream whose bytes are already encoded as `entries` say.
    void raw_stream(PdfId id, std::string_view entries, std::string_view bytes);
    void finish(PdfId catalog, PdfId info);

private:
    class Background;
    enum class Kind : uint8_t { Object, PackedStream, RawStream };
    struct Piece {
        PdfId id;
        Kind kind;
        std::string_view entries, bytes;
    };

    void submit(const Piece& piece);
    void write(const Piece& piece);
    void write_stream(PdfId id, std::string_view entries, std::string_view bytes);
    void put(std::string_view bytes);
    void begin_object(PdfId id);
    void write_packed();
    [[nodiscard]] std::string trailer(PdfId catalog, PdfId info) const;
    void write_table(const std::string& trailer);
    void write_packed_table(const std::string& trailer);
    [[nodiscard]] std::string identity() const;

    PdfId last_id_ = 0;
    size_t submitted_ = 0;
    std::vector<std::pair<PdfId, size_t>> packed_;  ///< that wait to be written together, and where each begins
    std::string packed_bodies_;
    std::vector<std::pair<PdfId, uint64_t>> packed_places_;  ///< of those that were
    std::shared_ptr<const Protection> protection_;           ///< null for none

    // While a second thread is at work, these are its own.
    std::unique_ptr<AtomicFile> file_;
    std::string held_;              ///< what is to be encrypted
    std::vector<uint64_t> places_;  ///< by number; 0 while an object is not written; see `packed_place`
    uint64_t written_ = 0;
    uint64_t check_ = 0xCBF29CE484222325;  ///< of the streams
    Deflater deflater_;
    std::string head_;

    std::unique_ptr<Background> background_;  ///< goes first
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
void append_pdf_reference(std::string& out, PdfId id);

}  // namespace velora::engine
