#include "engine/export/xls/xls_strings.h"

namespace velora::engine {
namespace {

constexpr uint16_t kSst = 0x00FC;
constexpr uint16_t kExtSst = 0x00FF;
constexpr size_t kFormatSize = 4;  ///< position and font of a marked part

/// Where a bucket of texts starts, for the index that lets a reader find one without reading all before it.
struct Bucket {
    uint32_t in_stream;
    uint16_t in_record;
};

/// Splits the table into records: a text's head stays whole, and characters that go on in the next record repeat
/// the flag of their width there.
class SstWriter {
public:
    SstWriter(XlsRecords& stream, uint32_t references, size_t texts) : stream_(stream)
    {
        payload_.u32(references).u32(static_cast<uint32_t>(texts));
    }

    void add(std::u16string_view text, std::string_view formats)
    {
        const bool compressed = xls_fits_bytes(text);
        const size_t width = compressed ? 1 : 2;
        if (room() < 5 + (text.empty() ? 0 : width)) next_record();
        payload_.u16(static_cast<uint32_t>(text.size())).u8((compressed ? 0U : 1U) | (formats.empty() ? 0U : 8U));
        if (!formats.empty()) payload_.u16(static_cast<uint32_t>(formats.size() / kFormatSize));
        while (!text.empty()) {
            if (room() < width) {
                next_record();
                payload_.u8(compressed ? 0 : 1);
            }
            const auto part = text.substr(0, room() / width);
            for (const char16_t unit : part) compressed ? payload_.u8(unit) : payload_.u16(unit);
            text.remove_prefix(part.size());
        }
        for (; !formats.empty(); formats.remove_prefix(kFormatSize)) {
            if (room() < kFormatSize) next_record();
            payload_.raw(formats.substr(0, kFormatSize));
        }
    }

    void finish() { next_record(); }

    /// Where the next text would start. A text that does not fit there opens a record, so room is made first.
    Bucket position()
    {
        if (room() < 7) next_record();
        const size_t in_record = 4 + payload_.bytes().size();
        return {static_cast<uint32_t>(stream_.size() + in_record), static_cast<uint16_t>(in_record)};
    }

private:
    [[nodiscard]] size_t room() const { return XlsRecords::kMaxPayload - payload_.bytes().size(); }

    void next_record()
    {
        stream_.add(id_, payload_);
        payload_ = {};
        id_ = XlsRecords::kContinue;
    }

    XlsRecords& stream_;
    XlsPayload payload_;
    uint16_t id_ = kSst;
};

}  // namespace

uint32_t XlsStrings::add(std::string_view utf8, const std::vector<XlsTextPart>& parts)
{
    std::string key(utf8);
    for (const XlsTextPart& part : parts) {
        key += '\0';
        key += std::to_string(part.begin) + ' ' + std::to_string(part.font);
    }
    const auto [place, is_new] = numbers_.try_emplace(std::move(key), static_cast<uint32_t>(texts_.size()));
    if (is_new) {
        texts_.push_back(&place->first);
        if (!parts.empty()) marked_.emplace(place->second, Marked{utf8.size(), parts});
    }
    return place->second;
}

std::string_view XlsStrings::text(uint32_t number) const
{
    const std::string_view key = *texts_[number];
    const auto marked = marked_.find(number);
    return marked == marked_.end() ? key : key.substr(0, marked->second.length);
}

void XlsStrings::write(XlsRecords& stream, uint32_t references) const
{
    const size_t bucket_size = std::max<size_t>(8, texts_.size() / 128 + 1);
    std::vector<Bucket> buckets;
    SstWriter writer(stream, references, texts_.size());
    for (size_t i = 0; i < texts_.size(); ++i) {
        if (i % bucket_size == 0) buckets.push_back(writer.position());
        const std::string_view text = this->text(static_cast<uint32_t>(i));
        XlsPayload formats;
        if (const auto marked = marked_.find(static_cast<uint32_t>(i)); marked != marked_.end()) {
            for (const XlsTextPart& part : marked->second.parts) {
                const size_t at = xls_utf16(text.substr(0, part.begin)).size();
                if (at < kMaxCharacters) formats.u16(static_cast<uint32_t>(at)).u16(part.font);
            }
        }
        std::u16string units = xls_utf16(text);
        if (units.size() > kMaxCharacters) units.resize(kMaxCharacters);
        writer.add(units, formats.bytes());
    }
    writer.finish();

    XlsPayload index;
    index.u16(static_cast<uint32_t>(bucket_size));
    for (const Bucket& bucket : buckets) index.u32(bucket.in_stream).u16(bucket.in_record).u16(0);
    stream.add(kExtSst, index);
}

}  // namespace velora::engine
