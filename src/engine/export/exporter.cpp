#include "engine/export/exporter.h"

#include <array>

#include "engine/export/output_file.h"
#include "values/text.h"

namespace velora::engine {
namespace {

using Maker = std::unique_ptr<PageSink> (*)(std::unique_ptr<OutputFile>, const ExportContext&);

struct FormatEntry {
    ExportFormat format;
    std::string_view name;
    Maker make;
};

// clang-format off
constexpr std::array kFormats = {
    FormatEntry{ExportFormat::Pdf,  "pdf",  make_pdf_exporter},
    FormatEntry{ExportFormat::Html, "html", make_html_exporter},
    FormatEntry{ExportFormat::Html, "htm",  make_html_exporter},
    FormatEntry{ExportFormat::Xls,  "xls",  make_xls_exporter},
    FormatEntry{ExportFormat::Rtf,  "rtf",  make_rtf_exporter},
    FormatEntry{ExportFormat::Doc,  "doc",  make_rtf_exporter},  // word processors open rich text under this name
    FormatEntry{ExportFormat::Txt,  "txt",  make_txt_exporter},
    FormatEntry{ExportFormat::Xml,  "xml",  make_xml_exporter},
};
// clang-format on

}  // namespace

std::optional<ExportFormat> export_format(std::string_view name)
{
    const std::string_view extension = name.substr(name.rfind('.') + 1);
    for (const FormatEntry& entry : kFormats) {
        if (same_name(entry.name, extension)) return entry.format;
    }
    return std::nullopt;
}

std::unique_ptr<PageSink> make_exporter(ExportFormat format, const std::filesystem::path& target,
                                        const ExportContext& context)
{
    const auto* entry = std::ranges::find(kFormats, format, &FormatEntry::format);
    return entry->make(std::make_unique<OutputFile>(target), context);
}

}  // namespace velora::engine
