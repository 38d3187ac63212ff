#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velora::engine {

/// Little-endian payload of one record.
class XlsPayload {
public:
    XlsPayload& u8(uint32_t value);
    XlsPayload& u16(uint32_t value);
    XlsPayload& u32(uint32_t value);
    XlsPayload& f64(double value);
    XlsPayload& raw(std::string_view bytes);
    XlsPayload& zeros(size_t count);
    /// Text with a length of one byte in front (sheet and font names).
    XlsPayload& short_text(std::u16string_view text);
    /// Text with a length of two bytes in front.
    XlsPayload& text(std::u16string_view text);

    [[nodiscard]] const std::string& bytes() const { return bytes_; }

private:
    XlsPayload& characters(std::u16string_view text);
    std::string bytes_;
};

/// A stream of BIFF8 records: id, length, payload. What exceeds a record goes on in CONTINUE records.
class XlsRecords {
public:
    static constexpr size_t kMaxPayload = 8224;
    static constexpr uint16_t kContinue = 0x003C;

    void add(uint16_t id, const XlsPayload& payload) { add(id, payload.bytes()); }
    void add(uint16_t id, std::string_view payload = {});
    void append(const XlsRecords& other) { bytes_ += other.bytes_; }
    /// Overwrites four bytes written earlier.
    void patch_u32(size_t offset, uint32_t value);

    [[nodiscard]] size_t size() const { return bytes_.size(); }
    [[nodiscard]] const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
};

/// UTF-8 as UTF-16. Control characters other than the line feed fall away: a workbook with them is reported as damaged.
std::u16string xls_utf16(std::string_view utf8);

/// True when every character fits one byte, so that the text is stored compressed.
bool xls_fits_bytes(std::u16string_view text);

}  // namespace velora::engine
