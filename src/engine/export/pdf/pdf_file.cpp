#include "engine/export/pdf/pdf_file.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "values/fault.h"
#include "values/hex.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr int kFast = 1;  // zlib's first level: pages are many, and the higher ones save little

}  // namespace

/// One deflate state for all streams.
struct PdfFile::Deflater {
    z_stream stream{};
    std::string packed;

    Deflater() { deflateInit(&stream, kFast); }
    ~Deflater() { deflateEnd(&stream); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    std::string_view pack(std::string_view bytes)
    {
        deflateReset(&stream);
        packed.resize(deflateBound(&stream, bytes.size()));
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));  // zlib only reads it
        stream.avail_in = static_cast<uInt>(bytes.size());
        stream.next_out = reinterpret_cast<Bytef*>(packed.data());
        stream.avail_out = static_cast<uInt>(packed.size());
        if (deflate(&stream, Z_FINISH) != Z_STREAM_END) throw Fault(fault::kOverflow, "A part of the PDF is too big.");
        return std::string_view(packed).substr(0, packed.size() - stream.avail_out);
    }
};

PdfFile::PdfFile(std::unique_ptr<AtomicFile> file)
    : file_(std::move(file)), places_(1), deflater_(std::make_unique<Deflater>())
{
    put("%PDF-1.6\n%\xE2\xE3\xCF\xD3\n");
}

PdfFile::~PdfFile() = default;

void PdfFile::put(std::string_view bytes)
{
    file_->write(bytes);
    written_ += bytes.size();
}

PdfId PdfFile::reserve()
{
    places_.push_back(0);
    return static_cast<PdfId>(places_.size() - 1);
}

void PdfFile::begin_object(PdfId id)
{
    places_.at(id) = written_;
    put(std::to_string(id) + " 0 obj\n");
}

void PdfFile::object(PdfId id, std::string_view body)
{
    begin_object(id);
    put(body);
    put("\nendobj\n");
}

void PdfFile::stream(PdfId id, std::string_view entries, std::string_view bytes)
{
    head_ = "/Filter/FlateDecode";
    head_ += entries;
    raw_stream(id, head_, deflater_->pack(bytes));
}

void PdfFile::raw_stream(PdfId id, std::string_view entries, std::string_view bytes)
{
    begin_object(id);
    // the ends tell packed streams of one size apart
    for (const char c : bytes.substr(bytes.size() - std::min<size_t>(bytes.size(), 8))) {
        check_ = (check_ ^ static_cast<uint8_t>(c)) * 0x100000001B3;
    }
    put("<</Length " + std::to_string(bytes.size()));
    put(entries);
    put(">>\nstream\n");
    put(bytes);
    put("\nendstream\nendobj\n");
}

/// Sixteen bytes in hex digits that tell this file from others: of where its objects stand and of its pages' bytes.
std::string PdfFile::identity() const
{
    constexpr uint64_t kPrime = 0x100000001B3;
    std::string out = "<";
    for (uint64_t hash : {check_, check_ ^ 0x9E3779B97F4A7C15}) {
        for (const uint64_t place : places_) hash = (hash ^ place) * kPrime;
        append_hex(out, hash, 16);
    }
    return out + ">";
}

void PdfFile::finish(PdfId catalog, PdfId info)
{
    const uint64_t start = written_;
    put("xref\n0 " + std::to_string(places_.size()) + "\n0000000000 65535 f \n");
    for (size_t id = 1; id < places_.size(); ++id) {
        std::array<char, 24> row{};
        std::snprintf(row.data(), row.size(), "%010llu 00000 n \n", static_cast<unsigned long long>(places_[id]));
        put({row.data(), 20});
    }
    put("trailer\n<</Size " + std::to_string(places_.size()) + "/Root " + pdf_reference(catalog) + "/Info " +
        pdf_reference(info) + "/ID[" + identity() + identity() + "]>>\nstartxref\n" + std::to_string(start) +
        "\n%%EOF\n");
    file_->finish();
}

std::string pdf_literal(std::string_view bytes)
{
    std::string literal = "(";
    for (const char c : bytes) {
        if (c == '(' || c == ')' || c == '\\') literal += '\\';
        if (c == '\r') {
            literal += "\\r";
        } else {
            literal += c;
        }
    }
    return literal + ")";
}

std::string pdf_text(std::string_view text)
{
    if (std::ranges::all_of(text, [](char c) { return c >= ' ' && c < 127; })) return pdf_literal(text);
    return pdf_utf16(text);
}

std::string pdf_utf16(std::string_view text)
{
    std::string hex = "<FEFF";
    append_pdf_utf16(hex, text);
    return hex + ">";
}

void append_pdf_utf16(std::string& out, std::string_view text)
{
    for (const auto [character, size, at] : Utf8Characters(text)) {
        if (character < ' ') continue;  // shows nothing
        each_utf16_unit(character, [&](char16_t unit) { append_hex(out, unit, 4); });
    }
}

std::string pdf_reference(PdfId id)
{
    return std::to_string(id) + " 0 R";
}

}  // namespace velora::engine
