#include "engine/export/exporter.h"

#include <algorithm>
#include <array>

#include "engine/export/csv/csv_exporter.h"
#include "engine/export/docx/docx_exporter.h"
#include "engine/export/html/html_exporter.h"
#include "engine/export/pdf/pdf_exporter.h"
#include "engine/export/print_xml/xml_exporter.h"
#include "engine/export/rtf/rtf_exporter.h"
#include "engine/export/text/txt_exporter.h"
#include "engine/export/xls/xls_exporter.h"
#include "engine/export/xlsx/xlsx_exporter.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora::engine {
namespace {

/// All that the engine knows of a format.
struct Format {
    std::string_view extension;
    std::unique_ptr<PageSink> (*make)(std::unique_ptr<AtomicFile>, const ExportContext&);
};

// clang-format off
constexpr std::array kFormats = {
    Format{"pdf",  make_pdf_exporter},
    Format{"html", make_html_exporter},
    Format{"htm",  make_html_exporter},
    Format{"xls",  make_xls_exporter},
    Format{"rtf",  make_rtf_exporter},
    Format{"doc",  make_rtf_exporter},  // word processors open rich text under this name
    Format{"txt",  make_txt_exporter},
    Format{"xml",  make_xml_exporter},
    Format{"xlsx", make_xlsx_exporter},
    Format{"docx", make_docx_exporter},
    Format{"csv",  make_csv_exporter},
};
// clang-format on

}  // namespace

std::unique_ptr<PageSink> make_exporter(std::string_view extension, const std::filesystem::path& target,
                                        const ExportContext& context)
{
    const auto* format =
        std::ranges::find_if(kFormats, [&](const Format& each) { return same_name(each.extension, extension); });
    if (format == kFormats.end()) {
        throw Fault(fault::kCannotCreate, "No format has the extension '" + std::string(extension) + "'.");
    }
    return format->make(std::make_unique<AtomicFile>(target), context);
}

}  // namespace velora::engine
