#include "engine/export/common/zip_file.h"

#include "values/fault.h"

namespace velora::engine {
namespace {

constexpr uint64_t kMost = 0xFFFFFFF0;  ///< bytes and parts beyond need another form of the format
constexpr size_t kMostParts = 0xFFFE;

void append_number(std::string& out, uint64_t number, int bytes)
{
    for (int at = 0; at < bytes; ++at) out += static_cast<char>(number >> (8 * at) & 0xFF);
}

/// Day and time with two seconds a step; years begin with 1980.
uint32_t packed_date(const std::optional<DateTime>& date)
{
    constexpr uint32_t kFirst = 1U << 21 | 1U << 16;
    if (!date) return kFirst;
    const auto parts = date->parts();
    if (parts.year < 1980 || parts.year > 2107) return kFirst;
    const auto number = [](int part) { return static_cast<uint32_t>(part); };
    return number(parts.year - 1980) << 25 | number(parts.month) << 21 | number(parts.day) << 16 |
           number(parts.hour) << 11 | number(parts.minute) << 5 | number(parts.second) / 2;
}

[[noreturn]] void fail()
{
    throw Fault(fault::kOverflow, "The document is too big.");
}

}  // namespace

ZipFile::ZipFile(AtomicFile& file, const std::optional<DateTime>& date) : file_(file), date_(packed_date(date)) {}

/// What the head of a part and its entry in the list have in common.
std::string ZipFile::head_of(const Part& part) const
{
    constexpr uint32_t kVersion = 20, kUtf8 = 1U << 11, kDeflated = 8;
    std::string out;
    append_number(out, kVersion, 2);
    append_number(out, kUtf8, 2);
    append_number(out, kDeflated, 2);
    append_number(out, date_, 4);
    append_number(out, part.check, 4);
    append_number(out, part.packed, 4);
    append_number(out, part.size, 4);
    append_number(out, part.name.size(), 2);
    append_number(out, 0, 2);
    return out;
}

void ZipFile::add(std::string name, std::string_view bytes)
{
    if (bytes.size() > kMost / 2 || parts_.size() >= kMostParts) fail();
    const std::string_view packed = deflater_.bare(bytes);
    if (written_ + packed.size() > kMost / 2) fail();
    parts_.push_back({std::move(name), archive_check(bytes), static_cast<uint32_t>(packed.size()),
                      static_cast<uint32_t>(bytes.size()), static_cast<uint32_t>(written_)});
    const std::string head = "PK\x03\x04" + head_of(parts_.back()) + parts_.back().name;
    file_.write(head);
    file_.write(packed);
    written_ += head.size() + packed.size();
}

void ZipFile::finish()
{
    std::string list;
    for (const Part& part : parts_) {
        list += "PK\x01\x02";
        append_number(list, 20, 2);
        list += head_of(part);
        append_number(list, 0, 2 + 2 + 2 + 4);  // no comment, first disk, plain attributes
        append_number(list, part.position, 4);
        list += part.name;
    }
    const size_t size = list.size();
    list += "PK\x05\x06";
    append_number(list, 0, 4);
    append_number(list, parts_.size(), 2);
    append_number(list, parts_.size(), 2);
    append_number(list, size, 4);
    append_number(list, written_, 4);
    append_number(list, 0, 2);
    file_.write(list);
}

}  // namespace velora::engine
