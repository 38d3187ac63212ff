#include "support/readers.h"

#include <charconv>
#include <fstream>
#include <iterator>
#include <pugixml.hpp>
#include <sstream>
#include <stdexcept>

#include "support/tool_run.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora::readers {
namespace {

namespace fs = std::filesystem;

std::string run(const std::string& command)
{
    const engine::ToolRun ran = engine::run_tool(command);
    if (ran.status != 0) throw std::runtime_error(command + ": " + ran.output.substr(0, 2000));
    return ran.output;
}

std::vector<std::string> split(const std::string& text, char at)
{
    std::vector<std::string> parts;
    std::stringstream stream(text);
    for (std::string part; std::getline(stream, part, at);) parts.push_back(part);
    return parts;
}

void add_boxes(pugi::xml_node node, size_t page, std::vector<HtmlBox>& boxes)
{
    const bool is_box = std::string_view(node.name()) == "div" && node.attribute("style");
    const size_t own = boxes.size();
    if (is_box) boxes.push_back({page, node.attribute("style").value(), {}});
    for (const pugi::xml_node child : node.children()) {
        if (child.type() == pugi::node_pcdata && !boxes.empty())
            boxes[is_box ? own : boxes.size() - 1].text += child.value();
        add_boxes(child, page, boxes);
    }
}

/// Walks over the groups and control words of a rich text.
class RtfReader {
public:
    explicit RtfReader(const std::string& rtf) : rtf_(rtf) {}

    std::vector<RtfShape> read()
    {
        while (at_ < rtf_.size()) step();
        if (!open_.empty()) throw std::runtime_error("a group does not close");
        return std::move(shapes_);
    }

private:
    void step()
    {
        const char c = rtf_[at_++];
        if (c == '{') {
            open_.push_back(open_.empty() ? std::string() : open_.back());
        } else if (c == '}') {
            if (open_.empty()) throw std::runtime_error("a group closes that never began");
            open_.pop_back();
        } else if (c == '\\') {
            control();
        } else if (c != '\n') {
            put(std::string(1, c));
        }
    }
    void control()
    {
        const char c = rtf_[at_];
        if (c < 'a' || c > 'z') {
            ++at_;
            if (c != '*') return put(std::string(1, c));
            open_.back() = "*";  // a group that readers may pass over
            return;
        }
        const size_t begin = at_;
        while (rtf_[at_] >= 'a' && rtf_[at_] <= 'z') ++at_;
        const std::string word = rtf_.substr(begin, at_ - begin);
        const size_t digits = at_;
        if (rtf_[at_] == '-') ++at_;
        while (rtf_[at_] >= '0' && rtf_[at_] <= '9') ++at_;
        int number = 0;
        std::from_chars(rtf_.data() + digits, rtf_.data() + at_, number);
        const std::string whole = rtf_.substr(begin, at_ - begin);
        if (rtf_[at_] == ' ') ++at_;
        take(word, number, whole);
    }
    void take(const std::string& word, int number, const std::string& whole)
    {
        if (word == "pagebb") ++page_;
        if (word == "u") {
            ++at_;  // what stands for the letter where it is not known
            return put_unit(static_cast<uint16_t>(number));
        }
        if (word == "shp") shapes_.push_back({page_, 0, 0, 0, 0, {}, {}, {}});
        if (word == "sn" || word == "sv" || word == "shptxt" || word == "shpinst" || word == "pict" ||
            word == "fldinst") {
            open_.back() = word;
        }
        if (word == "sn") name_.clear();
        if (shapes_.empty()) return;
        RtfShape& shape = shapes_.back();
        if (word == "shpleft") shape.left = number;
        if (word == "shptop") shape.top = number;
        if (word == "shpright") shape.right = number;
        if (word == "shpbottom") shape.bottom = number;
        if (open_.back() == "shptxt") shape.words += "\\" + whole;
        if (open_.back() == "pict") shape.properties["pict"] += "\\" + whole;
        if (word == "line" || word == "par") put("\n");
        if (word == "tab") put("\t");
    }
    void put_unit(uint16_t unit)
    {
        if (unit >= 0xD800 && unit < 0xDC00) {
            lead_ = unit;
            return;
        }
        const char32_t character = lead_ != 0 ? 0x10000 + ((lead_ & 0x3FFU) << 10 | (unit & 0x3FFU)) : unit;
        lead_ = 0;
        std::string utf8;
        append_utf8(utf8, character);
        put(utf8);
    }
    void put(const std::string& text)
    {
        if (shapes_.empty() || open_.empty()) return;
        const std::string& where = open_.back();
        if (where == "sn") name_ += text;
        if (where == "sv") shapes_.back().properties[name_] += text;
        if (where == "pict") shapes_.back().properties["data"] += text;
        if (where == "fldinst") shapes_.back().properties["field"] += text;
        if (where == "shptxt") shapes_.back().text += text;
    }

    const std::string& rtf_;
    size_t at_ = 0, page_ = 0;
    uint32_t lead_ = 0;
    std::vector<std::string> open_;  ///< what each open group holds
    std::string name_;               ///< of the property at hand
    std::vector<RtfShape> shapes_;
};

}  // namespace

std::string bytes_of(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::string> pdf_pages(const fs::path& file)
{
    return split(run("pdftotext -raw " + engine::word(file) + " -"), '\f');
}

std::vector<HtmlBox> html_boxes(const fs::path& file)
{
    const std::string html = bytes_of(file);
    const size_t begin = html.find("<body>"), end = html.find("</body>");
    pugi::xml_document body;
    const std::string part = html.substr(begin, end + 7 - begin);
    const auto read = body.load_buffer(part.data(), part.size(), pugi::parse_default | pugi::parse_ws_pcdata);
    if (begin == html.npos || end == html.npos || !read)
        throw std::runtime_error(file.string() + ": " + read.description());
    std::vector<HtmlBox> boxes;
    size_t page = 0;
    for (const pugi::xml_node section : body.child("body").children("section")) {
        for (const pugi::xml_node child : section.children()) add_boxes(child, page, boxes);
        ++page;
    }
    return boxes;
}

std::vector<RtfShape> rtf_shapes(const fs::path& file)
{
    const std::string rtf = bytes_of(file);
    return RtfReader(rtf).read();
}

XlsBook xls_book(const fs::path& file)
{
    return xls_books({file}).at(0);
}

namespace {

/// What a script tells of files, line by line.
std::vector<std::vector<std::string>> told(const std::string& script, const std::vector<fs::path>& files)
{
    std::string command = "/usr/bin/python3 '" VELORA_SOURCE_DIR "/tests/support/" + script + "'";
    for (const fs::path& file : files) command += " " + engine::word(file);
    std::vector<std::vector<std::string>> lines;
    for (const std::string& line : split(run(command), '\n')) lines.push_back(split(line, '\t'));
    return lines;
}

std::vector<XlsBook> books_of(const std::string& script, const std::vector<fs::path>& files)
{
    std::vector<XlsBook> books;
    for (const auto& parts : told(script, files)) {
        if (parts[0] == "workbook") books.emplace_back();
        XlsBook& book = books.back();
        book.lines.push_back(parts);
        if (parts[0] == "sheet") book.sheets.emplace_back();
        if (parts[0] != "cell") continue;
        book.sheets.back().push_back({std::stoi(parts[1]), std::stoi(parts[2]), parts[3],
                                      replaced(parts[4], "\\n", "\n"), parts[5], parts[6], parts[7]});
    }
    return books;
}

}  // namespace

std::vector<XlsBook> xls_books(const std::vector<fs::path>& files)
{
    return books_of("xls_dump.py", files);
}

std::vector<XlsBook> xlsx_books(const std::vector<fs::path>& files)
{
    return books_of("office_dump.py", files);
}

std::vector<std::vector<std::vector<std::string>>> docx_lines(const std::vector<fs::path>& files)
{
    std::vector<std::vector<std::vector<std::string>>> documents;
    for (const auto& parts : told("office_dump.py", files)) {
        if (parts[0] == "document") documents.emplace_back();
        documents.back().push_back(parts);
    }
    return documents;
}

std::vector<std::string> XlsBook::line(const std::string& name) const
{
    for (const auto& parts : lines) {
        if (parts[0] == name) return {parts.begin() + 1, parts.end()};
    }
    return {};
}

std::vector<XlsCell> XlsBook::filled() const
{
    std::vector<XlsCell> cells;
    for (const auto& sheet : sheets) {
        for (const XlsCell& cell : sheet) {
            if (cell.kind != "blank") cells.push_back(cell);
        }
    }
    return cells;
}

}  // namespace velora::readers
