#include "engine/export/xls_reading.h"

#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-infile.h>
#include <gsf/gsf-input-stdio.h>
#include <gsf/gsf-utils.h>

#include <cstring>
#include <memory>
#include <stdexcept>

namespace velora::engine {
namespace {

struct Unref {
    void operator()(void* object) const noexcept { g_object_unref(object); }
};

void require(bool holds, const char* what)
{
    if (!holds) throw std::runtime_error(what);
}

std::string workbook_bytes(const std::filesystem::path& path)
{
    gsf_init();
    const std::unique_ptr<GsfInput, Unref> file(gsf_input_stdio_new(path.c_str(), nullptr));
    require(file != nullptr, "no file");
    const std::unique_ptr<GsfInfile, Unref> container(gsf_infile_msole_new(file.get(), nullptr));
    require(container != nullptr, "no container");
    const std::unique_ptr<GsfInput, Unref> stream(gsf_infile_child_by_name(container.get(), "Workbook"));
    require(stream != nullptr, "no workbook in the container");
    std::string bytes(static_cast<size_t>(gsf_input_size(stream.get())), '\0');
    gsf_input_read(stream.get(), bytes.size(), reinterpret_cast<guint8*>(bytes.data()));
    return bytes;
}

template <class T>
T take(const std::string& bytes, size_t at)
{
    require(at + sizeof(T) <= bytes.size(), "a record is too short");
    T value;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

struct Record {
    uint16_t id;
    size_t position;
    std::string bytes;
};

std::vector<Record> records_of(const std::string& stream)
{
    std::vector<Record> records;
    for (size_t at = 0; at < stream.size();) {
        const auto length = take<uint16_t>(stream, at + 2);
        require(length <= 8224 && at + 4 + length <= stream.size(), "a record is too long");
        records.push_back({take<uint16_t>(stream, at), at, stream.substr(at + 4, length)});
        at += 4U + length;
    }
    return records;
}

/// Reads over record ends as a spreadsheet does: characters that go on in a CONTINUE record start with their width.
class SstReader {
public:
    SstReader(const std::vector<Record>& records, size_t first) : records_(records), record_(first) {}

    std::vector<std::u16string> read()
    {
        skip(4);
        const auto count = number(4);
        std::vector<std::u16string> texts;
        for (uint32_t i = 0; i < count; ++i) texts.push_back(text());
        return texts;
    }

private:
    [[nodiscard]] const std::string& bytes() const { return records_[record_].bytes; }
    void next_record()
    {
        ++record_;
        require(record_ < records_.size() && records_[record_].id == 0x003C, "a text goes on where nothing follows");
        at_ = 0;
    }
    uint32_t number(size_t size)
    {
        if (at_ == bytes().size()) next_record();
        require(at_ + size <= bytes().size(), "a number is split");
        uint32_t value = 0;
        std::memcpy(&value, bytes().data() + at_, size);
        at_ += size;
        return value;
    }
    void skip(size_t size) { number(size); }

    std::u16string text()
    {
        const uint32_t length = number(2);
        uint32_t flags = number(1);
        const uint32_t formats = (flags & 8) != 0 ? number(2) : 0;
        std::u16string result;
        while (result.size() < length) {
            if (at_ == bytes().size()) {
                next_record();
                flags = number(1);
            }
            result.push_back(static_cast<char16_t>(number((flags & 1) != 0 ? 2 : 1)));
        }
        for (uint32_t i = 0; i < formats; ++i) skip(4);
        return result;
    }

    const std::vector<Record>& records_;
    size_t record_;
    size_t at_ = 0;
};

void read_sheet_record(const Record& record, const std::vector<std::u16string>& texts, ReadWorkbook::Sheet& sheet)
{
    const auto u16 = [&](size_t at) { return take<uint16_t>(record.bytes, at); };
    switch (record.id) {
        case 0x0203:
            sheet.cells[{u16(0), u16(2)}] = {take<double>(record.bytes, 6), {}, u16(4)};
            return;
        case 0x00FD:
            sheet.cells[{u16(0), u16(2)}] = {{}, texts.at(take<uint32_t>(record.bytes, 6)), u16(4)};
            return;
        case 0x00E5:
            require(u16(0) <= 1026, "too many merged ranges in a record");
            for (size_t i = 0; i < u16(0); ++i) {
                sheet.merges.push_back({u16(2 + 8 * i), u16(4 + 8 * i), u16(6 + 8 * i), u16(8 + 8 * i)});
            }
            return;
        case 0x001B:
            for (size_t i = 0; i < u16(0); ++i) sheet.breaks.push_back(u16(2 + 6 * i));
            return;
        case 0x007D:
            sheet.columns = std::max(sheet.columns, u16(2) + 1);
            return;
        case 0x005D:
            ++sheet.pictures;
            return;
        default:
            return;
    }
}

}  // namespace

std::string ReadWorkbook::code_of(const Cell& cell) const
{
    const uint16_t number = cell_formats.at(cell.format);
    const auto code = codes.find(number);
    return code == codes.end() ? "#" + std::to_string(number) : code->second;
}

const ReadWorkbook::Cell* ReadWorkbook::find(const std::u16string& text) const
{
    for (const Sheet& sheet : sheets) {
        for (const auto& [place, cell] : sheet.cells) {
            if (cell.text == text) return &cell;
        }
    }
    return nullptr;
}

ReadWorkbook read_workbook(const std::filesystem::path& path)
{
    const auto records = records_of(workbook_bytes(path));
    ReadWorkbook book;
    std::vector<std::u16string> texts;
    std::vector<uint32_t> starts;
    int depth = 0;
    for (size_t i = 0; i < records.size(); ++i) {
        const Record& record = records[i];
        if (record.id == 0x0809) {
            ++depth;
            if (take<uint16_t>(record.bytes, 2) == 0x0010) {
                require(starts.at(book.sheets.size()) == record.position, "a sheet is not where the list says");
                book.sheets.emplace_back();
            }
        } else if (record.id == 0x000A) {
            --depth;
        } else if (record.id == 0x0085) {
            starts.push_back(take<uint32_t>(record.bytes, 0));
        } else if (record.id == 0x00FC) {
            texts = SstReader(records, i).read();
        } else if (record.id == 0x041E) {
            book.codes[take<uint16_t>(record.bytes, 0)] = record.bytes.substr(5);
        } else if (record.id == 0x00E0) {
            book.cell_formats.push_back(take<uint16_t>(record.bytes, 2));
        } else if (!book.sheets.empty()) {
            read_sheet_record(record, texts, book.sheets.back());
        }
    }
    require(depth == 0 && book.sheets.size() == starts.size(), "a stream has no end");
    return book;
}

}  // namespace velora::engine
