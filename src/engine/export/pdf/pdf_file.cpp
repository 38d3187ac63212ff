#include "engine/export/pdf/pdf_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

#include "engine/export/common/xml_text.h"
#include "engine/export/pdf/pdf_protection.h"
#include "values/fault.h"
#include "values/hex.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr size_t kMostPacked = 200;  // objects in one stream: a reader unpacks all of them for one
constexpr uint64_t kPacked = uint64_t{1} << 63;

/// Where an object is that stands in the stream of another one.
uint64_t packed_place(PdfId stream, size_t index)
{
    return kPacked | uint64_t{stream} << 16 | index;
}

}  // namespace

/// Takes pieces over and writes them in a thread of its own.
class PdfFile::Background {
public:
    explicit Background(PdfFile& file) : file_(file), thread_([this] { run(); }) {}
    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;
    ~Background() { stop(false); }

    void take(const Piece& piece)
    {
        std::unique_lock lock(guard_);
        changed_.wait(lock, [&] { return waiting_bytes_ < kMostWaiting || error_; });
        if (error_) std::rethrow_exception(error_);
        waiting_bytes_ += piece.bytes.size();
        waiting_.push_back({piece.id, piece.kind, std::string(piece.entries), std::string(piece.bytes)});
        changed_.notify_all();
    }
    /// Returns when everything is written.
    void finish()
    {
        stop(true);
        if (error_) std::rethrow_exception(error_);
    }

private:
    struct Owned {
        PdfId id;
        Kind kind;
        std::string entries, bytes;
    };
    static constexpr size_t kMostWaiting = size_t{4} << 20;  // bytes; keeps memory flat when the disk is slow

    void stop(bool all_written)
    {
        {
            const std::lock_guard lock(guard_);
            if (!all_written) waiting_.clear();
            ends_ = true;
            changed_.notify_all();
        }
        if (thread_.joinable()) thread_.join();
    }

    void run()
    {
        std::unique_lock lock(guard_);
        for (;;) {
            changed_.wait(lock, [&] { return !waiting_.empty() || ends_; });
            if (waiting_.empty()) return;
            const Owned piece = std::move(waiting_.front());
            waiting_.pop_front();
            lock.unlock();
            const std::exception_ptr error = attempt(piece);
            lock.lock();
            waiting_bytes_ -= piece.bytes.size();
            if (error) {
                error_ = error;
                waiting_.clear();
                ends_ = true;
            }
            changed_.notify_all();
        }
    }

    std::exception_ptr attempt(const Owned& piece)
    {
        try {
            file_.write({piece.id, piece.kind, piece.entries, piece.bytes});
        } catch (...) {
            return std::current_exception();
        }
        return nullptr;
    }

    PdfFile& file_;
    std::mutex guard_;
    std::condition_variable changed_;
    std::deque<Owned> waiting_;
    size_t waiting_bytes_ = 0;
    bool ends_ = false;
    std::exception_ptr error_;
    std::thread thread_;  ///< last: it uses all the others
};

PdfFile::PdfFile(std::unique_ptr<AtomicFile> file) : file_(std::move(file)), places_(1), deflater_(Deflater::kFast) {}

PdfFile::~PdfFile() = default;

void PdfFile::put(std::string_view bytes)
{
    written_ += bytes.size();
    if (protection_) {
        held_ += bytes;
    } else {
        file_->write(bytes);
    }
}

PdfId PdfFile::reserve()
{
    return ++last_id_;
}

void PdfFile::submit(const Piece& piece)
{
    constexpr size_t kShortFile = 200;  // pieces; a thread takes longer to start than those to write
    if (!background_ && ++submitted_ > kShortFile && std::thread::hardware_concurrency() > 1) {
        background_ = std::make_unique<Background>(*this);
    }
    if (background_) {
        background_->take(piece);
    } else {
        write(piece);
    }
}

void PdfFile::write(const Piece& piece)
{
    switch (piece.kind) {
        case Kind::Object:
            begin_object(piece.id);
            put(piece.bytes);
            put("\nendobj\n");
            return;
        case Kind::PackedStream:
            head_ = "/Filter/FlateDecode";
            head_ += piece.entries;
            return write_stream(piece.id, head_, deflater_.with_check(piece.bytes));
        case Kind::RawStream:
            return write_stream(piece.id, piece.entries, piece.bytes);
    }
}

void PdfFile::begin_object(PdfId id)
{
    if (written_ == 0) put("%PDF-1.6\n%\xE2\xE3\xCF\xD3\n");
    if (places_.size() <= id) places_.resize(size_t{id} + 1);
    places_[id] = written_;
    put(std::to_string(id) + " 0 obj\n");
}

void PdfFile::object(PdfId id, std::string_view body)
{
    submit({id, Kind::Object, {}, body});
}

void PdfFile::packed_object(PdfId id, std::string_view body)
{
    begin_packed_object(id) += body;
    end_packed_object();
}

std::string& PdfFile::begin_packed_object(PdfId id)
{
    packed_.emplace_back(id, packed_bodies_.size());
    return packed_bodies_;
}

void PdfFile::end_packed_object()
{
    packed_bodies_ += '\n';
    if (packed_.size() == kMostPacked) write_packed();
}

void PdfFile::write_packed()
{
    if (packed_.empty()) return;
    const PdfId id = reserve();
    std::string content;
    for (size_t index = 0; index < packed_.size(); ++index) {
        const auto& [object, begin] = packed_[index];
        append_number(content, object);
        content += ' ';
        append_number(content, begin);
        content += ' ';
        packed_places_.emplace_back(object, packed_place(id, index));
    }
    const std::string entries =
        "/Type/ObjStm/N " + std::to_string(packed_.size()) + "/First " + std::to_string(content.size());
    stream(id, entries, content + packed_bodies_);
    packed_.clear();
    packed_bodies_.clear();
}

void PdfFile::stream(PdfId id, std::string_view entries, std::string_view bytes)
{
    submit({id, Kind::PackedStream, entries, bytes});
}

void PdfFile::raw_stream(PdfId id, std::string_view entries, std::string_view bytes)
{
    submit({id, Kind::RawStream, entries, bytes});
}

void PdfFile::write_stream(PdfId id, std::string_view entries, std::string_view bytes)
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

std::string PdfFile::trailer(PdfId catalog, PdfId info) const
{
    return "/Size " + std::to_string(places_.size()) + "/Root " + pdf_reference(catalog) + "/Info " +
           pdf_reference(info) + "/ID[" + identity() + identity() + "]";
}

void PdfFile::write_table(const std::string& trailer)
{
    put("xref\n0 " + std::to_string(places_.size()) + "\n0000000000 65535 f \n");
    for (size_t id = 1; id < places_.size(); ++id) {
        std::array<char, 24> row{};
        std::snprintf(row.data(), row.size(), "%010llu 00000 n \n", static_cast<unsigned long long>(places_[id]));
        put({row.data(), 20});
    }
    put("trailer\n<<" + trailer + ">>");
}

/// The table as a stream, which alone can say that an object stands in another one: kind, place, index.
void PdfFile::write_packed_table(const std::string& trailer)
{
    std::string rows;
    const auto number = [&](uint64_t value, int bytes) {
        for (int at = bytes - 1; at >= 0; --at) rows += static_cast<char>(value >> (8 * at) & 0xFF);
    };
    rows.reserve(places_.size() * 8);
    for (size_t id = 0; id < places_.size(); ++id) {
        const uint64_t place = places_[id];
        const bool packed = (place & kPacked) != 0;
        number(id == 0 ? 0 : packed ? 2 : 1, 1);
        number(packed ? (place & ~kPacked) >> 16 : place, 5);
        number(id == 0 ? 0xFFFF : packed ? place & 0xFFFF : 0, 2);
    }
    write({last_id_, Kind::PackedStream, "/Type/XRef/W[1 5 2]" + trailer, rows});
}

void PdfFile::finish(PdfId catalog, PdfId info)
{
    write_packed();
    if (background_) background_->finish();
    background_.reset();
    const bool any_packed = !packed_places_.empty();
    if (any_packed) reserve();
    places_.resize(last_id_ + size_t{1});
    for (const auto& [id, place] : packed_places_) places_[id] = place;
    if (any_packed) places_.back() = written_;
    const uint64_t start = written_;
    if (any_packed) {
        write_packed_table(trailer(catalog, info));
    } else {
        write_table(trailer(catalog, info));
    }
    put("\nstartxref\n" + std::to_string(start) + "\n%%EOF\n");
    if (protection_) file_->write(protected_pdf(held_, *protection_));
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

void append_pdf_reference(std::string& out, PdfId id)
{
    append_number(out, id);
    out += " 0 R";
}

}  // namespace velora::engine
