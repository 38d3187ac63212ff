#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "engine/page/page.h"

namespace velora::engine {

class FontStore;
class OutputFile;

enum class ExportFormat : uint8_t { Pdf, Html, Xls, Rtf, Doc, Txt, Xml };

/// Reads "pdf", "HTML", ... or the extension of a file name. None for what no exporter writes.
std::optional<ExportFormat> export_format(std::string_view name);

/// What an exporter is given besides the pages.
struct ExportContext {
    FontStore& fonts;
    std::function<void(const std::string&)> warn;  ///< may be empty
};

/// A sink that writes the pages to `target`.
///
/// The pages go to a temporary file beside the target, which takes the target's name in `end`. A sink that is
/// destroyed before leaves the earlier file as it was.
/// @throws Fault 75 with file name and reason, here and from the sink, when the file cannot be written
std::unique_ptr<PageSink> make_exporter(ExportFormat format, const std::filesystem::path& target,
                                        const ExportContext& context);

// Each format's own sink; used by make_exporter and by tests. The sink finishes the file in `end`.
std::unique_ptr<PageSink> make_pdf_exporter(std::unique_ptr<OutputFile> file, const ExportContext& context);
std::unique_ptr<PageSink> make_xml_exporter(std::unique_ptr<OutputFile> file, const ExportContext& context);
std::unique_ptr<PageSink> make_txt_exporter(std::unique_ptr<OutputFile> file, const ExportContext& context);
std::unique_ptr<PageSink> make_html_exporter(std::unique_ptr<OutputFile> file, const ExportContext& context);
std::unique_ptr<PageSink> make_xls_exporter(std::unique_ptr<OutputFile> file, const ExportContext& context);
std::unique_ptr<PageSink> make_rtf_exporter(std::unique_ptr<OutputFile> file, const ExportContext& context);

}  // namespace velora::engine
