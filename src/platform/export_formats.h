#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace velora {

enum class ExportFormat : uint8_t { Pdf, Html, Xls, Doc, Rtf, Txt, Xml, Xlsx, Docx, Csv };

/// One format of files. Adding one is a line here and a writer in the engine, which finds it by the extension.
struct ExportFormatRecord {
    ExportFormat format;
    std::string_view name;       ///< as a person types it
    std::string_view list_text;  ///< as the product's list shows it
    std::string_view extension;  ///< of the files that the product names
};

/// In the order of their numbers, which the setting "Format" holds.
// clang-format off
inline constexpr auto kExportFormats = std::to_array<ExportFormatRecord>({
    {ExportFormat::Pdf,  "pdf",  "Acrobat Format (PDF)", ".pdf"},
    {ExportFormat::Html, "html", "HTML 4.0",             ".htm"},
    {ExportFormat::Xls,  "xls",  "MS Excel 97-2000",     ".xls"},
    {ExportFormat::Doc,  "doc",  "MS Word",              ".doc"},
    {ExportFormat::Rtf,  "rtf",  "Rich Text Format",     ".rtf"},
    {ExportFormat::Txt,  "txt",  "Text",                 ".txt"},
    {ExportFormat::Xml,  "xml",  "XML",                  ".xml"},
    {ExportFormat::Xlsx, "xlsx", "Excel Workbook (XLSX)", ".xlsx"},
    {ExportFormat::Docx, "docx", "Word Document (DOCX)", ".docx"},
    {ExportFormat::Csv,  "csv",  "Rows (CSV)",           ".csv"},
});
// clang-format on

/// The options offer the first ones; the others are chosen by name or by the ending of a file.
inline constexpr size_t kOfferedFormats = 7;

/// The format that the setting "Format" means: one that the options offer by its number, another by its name. Null for
/// what is neither.
constexpr const ExportFormatRecord* format_of_setting(std::string_view text)
{
    for (size_t at = 0; at < kExportFormats.size(); ++at) {
        const char digit = static_cast<char>('0' + at);
        if (text == (at < kOfferedFormats ? std::string_view(&digit, 1) : kExportFormats[at].name)) {
            return &kExportFormats[at];
        }
    }
    return nullptr;
}

constexpr const ExportFormatRecord& record_of(ExportFormat format)
{
    for (const auto& record : kExportFormats) {
        if (record.format == format) return record;
    }
    return kExportFormats.front();
}

}  // namespace velora
