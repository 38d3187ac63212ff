#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/export_formats.h"
#include "platform/printers.h"
#include "values/fault.h"
#include "values/table_source.h"

namespace velora {

/// A heading of a report, for a tree to find one's way by.
struct OutlineEntry {
    std::string text;
    size_t page = 0;  ///< from 0
    int level = 1;    ///< 1 at the root
};

/// Finished pages of a report, kept for a window.
class PageView {
public:
    virtual ~PageView() = default;

    [[nodiscard]] virtual size_t page_count() const = 0;
    /// The page as a PNG picture at so many pixels an inch.
    [[nodiscard]] virtual std::string page_png(size_t page, double pixels_per_inch) const = 0;
    /// The texts of the page, line by line, those of a line apart by tabs.
    [[nodiscard]] virtual std::string page_text(size_t page) const = 0;

    struct Size {
        double width = 595, height = 842;  ///< points
    };
    [[nodiscard]] virtual Size page_size() const { return {}; }
    /// The bookmarks of the report, else the headings of its groups.
    [[nodiscard]] virtual std::vector<OutlineEntry> outline() const { return {}; }
    /// Writes the pages as they are. @throws Fault; an earlier file then stays as it was
    virtual void Export(ExportFormat format, const std::string& path) const = 0;
    /// The pages on paper. @throws Fault 429 where there is no way to print, else as the printer
    virtual void PrintOut(const PrintWish&) const
    {
        throw Fault(fault::kCannotCreate, "This machine has no way to print.");
    }
};

/// A definition that has been opened, its data and its printer.
class OpenedReport {
public:
    virtual ~OpenedReport() = default;

    /// The fields that the definition declares, in its order.
    [[nodiscard]] virtual const std::vector<TableSource::Field>& fields() const = 0;
    [[nodiscard]] virtual bool brings_its_own_data() const = 0;

    /// The one table of the report. It is read when the report is printed, exported or shown.
    virtual void SetDataSource(std::shared_ptr<TableSource> data) = 0;
    /// A value for the run, over the default of the definition; one that declares no such parameter does not notice.
    virtual void SetParameter(const std::string& name, Value value) = 0;
    virtual void SelectPrinter(const std::string& driver, const std::string& device, const std::string& port) = 0;
    virtual void PaperOrientation(int orientation) = 0;
    virtual void PaperSource(int source) = 0;

    /// What the document is called in a printer's queue; without it by its definition.
    virtual void Title(const std::string&) {}
    virtual void PrintOut() = 0;
    /// Writes beside the target first and renames at the end. @throws Fault; the earlier file then stays as it was
    virtual void Export(ExportFormat format, const std::string& path) = 0;
    /// Takes the data at once, so that the source may be closed afterwards.
    virtual std::shared_ptr<PageView> View() = 0;

    /// What the definition or its run met that a designer should know; line and column where known.
    [[nodiscard]] virtual const std::vector<std::string>& warnings() const = 0;
};

/// What a person asks of the definitions that are opened.
struct OpeningWishes {
    bool lenient = false;  ///< an expression outside the language gives nothing, with a warning, and refuses nothing
    std::vector<std::pair<std::string, std::string>> parameters;  ///< name and value as typed
};

class ReportEngine {
public:
    virtual ~ReportEngine() = default;

    /// Holds for every report that is opened from now on.
    virtual void Wish(const OpeningWishes&) {}

    /// @throws Fault 20507 when the file is missing or is no definition, with the reason in `where`
    virtual std::shared_ptr<OpenedReport> OpenReport(const std::string& path) = 0;
};

}  // namespace velora
