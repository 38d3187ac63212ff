#include "engine/export/xls/xls_records.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <bit>

namespace velora::engine {

XlsPayload& XlsPayload::u8(uint32_t value)
{
    bytes_.push_back(static_cast<char>(value & 0xFF));
    return *this;
}

XlsPayload& XlsPayload::u16(uint32_t value)
{
    return u8(value).u8(value >> 8);
}

XlsPayload& XlsPayload::u32(uint32_t value)
{
    return u16(value).u16(value >> 16);
}

XlsPayload& XlsPayload::f64(double value)
{
    const auto bits = std::bit_cast<uint64_t>(value);
    return u32(static_cast<uint32_t>(bits)).u32(static_cast<uint32_t>(bits >> 32));
}

XlsPayload& XlsPayload::raw(std::string_view bytes)
{
    bytes_ += bytes;
    return *this;
}

XlsPayload& XlsPayload::zeros(size_t count)
{
    bytes_.append(count, '\0');
    return *this;
}

XlsPayload& XlsPayload::characters(std::u16string_view text)
{
    const bool compressed = xls_fits_bytes(text);
    u8(compressed ? 0 : 1);
    for (const char16_t unit : text) compressed ? u8(unit) : u16(unit);
    return *this;
}

XlsPayload& XlsPayload::short_text(std::u16string_view text)
{
    u8(static_cast<uint32_t>(text.size()));
    return characters(text);
}

XlsPayload& XlsPayload::text(std::u16string_view text)
{
    u16(static_cast<uint32_t>(text.size()));
    return characters(text);
}

void XlsRecords::add(uint16_t id, std::string_view payload)
{
    do {
        const std::string_view part = payload.substr(0, kMaxPayload);
        XlsPayload head;
        head.u16(id).u16(static_cast<uint32_t>(part.size()));
        bytes_ += head.bytes();
        bytes_ += part;
        payload.remove_prefix(part.size());
        id = kContinue;
    } while (!payload.empty());
}

void XlsRecords::patch_u32(size_t offset, uint32_t value)
{
    XlsPayload patch;
    patch.u32(value);
    bytes_.replace(offset, 4, patch.bytes());
}

std::u16string xls_utf16(std::string_view utf8)
{
    const auto unicode = icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
    std::u16string result;
    result.reserve(static_cast<size_t>(unicode.length()));
    for (int32_t i = 0; i < unicode.length(); ++i) {
        const char16_t unit = unicode.charAt(i);
        if (unit == u'\t') {
            result.push_back(u' ');
        } else if (unit >= 0x20 || unit == u'\n') {
            result.push_back(unit);
        }
    }
    return result;
}

bool xls_fits_bytes(std::u16string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x100; });
}

}  // namespace velora::engine
