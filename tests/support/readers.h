#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// What programs of others, or a reader by the rules of the format, find in an exported file.
namespace velora::readers {

std::string bytes_of(const std::filesystem::path& file);

/// The words of a PDF file in the order in which they were written, a page a text.
std::vector<std::string> pdf_pages(const std::filesystem::path& file);

/// A box of an HTML file with what it says. Lengths are points from the page's corner.
struct HtmlBox {
    size_t page = 0;
    std::string style;  ///< declarations of its own
    std::string text;   ///< of this box alone
};
/// @throws std::runtime_error when an element is not closed
std::vector<HtmlBox> html_boxes(const std::filesystem::path& file);

/// A drawing object of a rich text file.
struct RtfShape {
    size_t page = 0;
    int left = 0, top = 0, right = 0, bottom = 0;   ///< twips
    std::map<std::string, std::string> properties;  ///< of the object, by name
    std::string words;                              ///< control words inside its text, in order
    std::string text;                               ///< a line feed for every break
};
/// @throws std::runtime_error when the groups do not close
std::vector<RtfShape> rtf_shapes(const std::filesystem::path& file);

struct XlsCell {
    int row = 0, column = 0;
    std::string kind;    ///< "text", "number", "date", "blank"
    std::string shown;   ///< as a spreadsheet shows it, with the marks of an English one
    std::string value;   ///< of numbers and dates
    std::string format;  ///< code
    std::string looks;   ///< font, alignment, ground, borders
};
struct XlsBook {
    std::vector<std::vector<XlsCell>> sheets;
    std::vector<std::vector<std::string>> lines;  ///< all that the reader tells, line by line and part by part

    /// The parts of the first line of that name, its name left out.
    [[nodiscard]] std::vector<std::string> line(const std::string& name) const;
    /// All cells that are not blank.
    [[nodiscard]] std::vector<XlsCell> filled() const;
};
XlsBook xls_book(const std::filesystem::path& file);
std::vector<XlsBook> xls_books(const std::vector<std::filesystem::path>& files);
/// The same of workbooks in today's form.
std::vector<XlsBook> xlsx_books(const std::vector<std::filesystem::path>& files);
/// What documents in today's form hold, line by line and part by part: "frame" with page, place, alignment and text,
/// "picture" with page and description.
std::vector<std::vector<std::vector<std::string>>> docx_lines(const std::vector<std::filesystem::path>& files);

}  // namespace velora::readers
