#include "engine/export/xls/xls_workbook.h"

#include <gsf/gsf-meta-names.h>

#include "engine/export/xls/gsf_library.h"
#include "engine/export/xls/xls_pictures.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

const GsfLibrary& gsf()
{
    return GsfLibrary::loaded();
}

struct Unref {
    void operator()(void* object) const noexcept { gsf().object_unref(object); }
};
template <class T>
using Object = std::unique_ptr<T, Unref>;

/// Where the position of a sheet is entered once it is known.
struct SheetEntry {
    size_t position;
};

void write_opening(XlsRecords& stream, size_t sheets)
{
    stream.add(0x0809, XlsPayload().u16(0x0600).u16(0x0005).u16(0x0DBB).u16(0x07CC).u32(0x41).u32(0x0006));
    stream.add(0x00E1, XlsPayload().u16(0x04B0));
    stream.add(0x00C1, XlsPayload().u16(0));
    stream.add(0x00E2);
    XlsPayload writer;
    writer.text(u"Velora");
    stream.add(0x005C, writer.raw(std::string(112 - writer.bytes().size(), ' ')));
    stream.add(0x0042, XlsPayload().u16(0x04B0));  // texts are Unicode
    stream.add(0x0161, XlsPayload().u16(0));
    XlsPayload tabs;
    for (size_t i = 1; i <= sheets; ++i) tabs.u16(static_cast<uint32_t>(i));
    stream.add(0x013D, tabs);
    stream.add(0x009C, XlsPayload().u16(0x000E));
    for (const uint16_t no_protection : {0x0019, 0x0012, 0x0013, 0x01AF, 0x01BC}) {
        stream.add(no_protection, XlsPayload().u16(0));
    }
    stream.add(0x003D, XlsPayload().u16(360).u16(270).u16(14940).u16(9150).u16(0x38).u16(0).u16(0).u16(1).u16(600));
    stream.add(0x0040, XlsPayload().u16(0));  // no backup copy
    stream.add(0x008D, XlsPayload().u16(0));  // objects are shown
    stream.add(0x0022, XlsPayload().u16(0));  // days count from 1900
    stream.add(0x000E, XlsPayload().u16(1));  // full precision
    stream.add(0x01B7, XlsPayload().u16(0));
    stream.add(0x00DA, XlsPayload().u16(0));
}

std::vector<SheetEntry> write_sheet_list(XlsRecords& stream, const std::string& title, size_t count)
{
    std::vector<SheetEntry> entries;
    for (size_t i = 0; i < count; ++i) {
        entries.push_back({stream.size() + 4});
        stream.add(0x0085, XlsPayload().u32(0).u8(0).u8(0).short_text(xls_sheet_name(title, i, count)));
    }
    return entries;
}

std::string workbook_stream(const std::string& title, const XlsStyles& styles, const XlsStrings& strings,
                            const std::vector<XlsSheet>& sheets)
{
    XlsRecords stream;
    write_opening(stream, sheets.size());
    styles.write_fonts(stream);
    styles.write_formats(stream);
    styles.write_cells(stream);
    styles.write_palette(stream);
    stream.add(0x0160, XlsPayload().u16(0));
    const auto entries = write_sheet_list(stream, title, sheets.size());
    stream.add(0x008C, XlsPayload().u16(1).u16(1));
    const XlsPictures pictures(sheets);
    pictures.write_store(stream);
    uint32_t references = 0;
    for (const XlsSheet& sheet : sheets) references += sheet.references();
    strings.write(stream, references);
    stream.add(0x000A);
    for (size_t i = 0; i < sheets.size(); ++i) {
        stream.patch_u32(entries[i].position, static_cast<uint32_t>(stream.size()));
        sheets[i].write(stream, i == 0, pictures.drawing(i));
    }
    return stream.bytes();
}

[[noreturn]] void fail()
{
    throw Fault(fault::kOverflow, "The workbook is too big.");
}

void write_child(GsfOutfile* container, const char* name, const std::string& bytes)
{
    const Object<GsfOutput> child(gsf().outfile_new_child(container, name, FALSE));
    const auto* data = reinterpret_cast<const guint8*>(bytes.data());
    const bool written = child && gsf().output_write(child.get(), bytes.size(), data) == TRUE;
    if (!written || gsf().output_close(child.get()) != TRUE) fail();
}

void write_properties(GsfOutfile* container, const XlsProperties& properties)
{
    const Object<GsfDocMetaData> meta(gsf().meta_data_new());
    const auto set = [&](const char* name, const std::string& text) {
        if (text.empty()) return;
        auto* value = g_new0(GValue, 1);
        gsf().value_init(value, G_TYPE_STRING);
        gsf().value_take_string(value, g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
        gsf().meta_data_insert(meta.get(), g_strdup(name), value);
    };
    set(GSF_META_NAME_TITLE, properties.title);
    set(GSF_META_NAME_CREATOR, properties.author);
    set(GSF_META_NAME_SUBJECT, properties.subject);
    set(GSF_META_NAME_KEYWORDS, properties.keywords);
    const Object<GsfOutput> child(gsf().outfile_new_child(container, "\005SummaryInformation", FALSE));
    gsf().meta_data_write_to_msole(meta.get(), child.get(), FALSE);
    gsf().output_close(child.get());
}

/// The library's own casts would ask its type system, which is not linked.
template <class To, class From>
To* as(From* object)
{
    return reinterpret_cast<To*>(object);
}

}  // namespace

void write_xls_workbook(AtomicFile& file, const XlsProperties& properties, const XlsStyles& styles,
                        const XlsStrings& strings, const std::vector<XlsSheet>& sheets)
{
    const Object<GsfOutput> output(gsf().output_memory_new());
    const Object<GsfOutfile> container(gsf().outfile_msole_new(output.get()));
    write_child(container.get(), "Workbook", workbook_stream(properties.title, styles, strings, sheets));
    write_properties(container.get(), properties);
    if (gsf().output_close(as<GsfOutput>(container.get())) != TRUE) fail();
    const guint8* bytes = gsf().output_memory_get_bytes(as<GsfOutputMemory>(output.get()));
    file.write({reinterpret_cast<const char*>(bytes), static_cast<size_t>(gsf().output_size(output.get()))});
}

}  // namespace velora::engine
