#include "support/word_check.h"

#include <algorithm>
#include <sstream>
#include <vector>

#include "engine/export/common/drawing_words.h"
#include "engine/export/common/page_walk.h"
#include "support/print_xml_reader.h"
#include "support/readers.h"

namespace velora::readers {
namespace {

using engine::Place;

/// Words apart are words however many blanks and line breaks stand between them.
std::vector<std::string> words_of(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

/// A line may break within a word, at a hyphen.
std::string letters_of(const std::string& text)
{
    std::string letters;
    for (const std::string& word : words_of(text)) letters += word;
    return letters;
}

struct Said {
    size_t page;
    Place place;
    std::vector<std::string> lines;
    bool drawn;  ///< by a drawing

    [[nodiscard]] std::string text() const
    {
        std::string all;
        for (const std::string& line : lines) all += (all.empty() ? "" : "\n") + line;
        return all;
    }
};

/// What the pages say, text by text, from their own XML.
std::vector<Said> said_in(const engine::PageList& pages)
{
    std::vector<Said> said;
    for (size_t page = 0; page < pages.pages.size(); ++page) {
        engine::walk_elements(pages.pages[page].elements, [&](const engine::Element& element, const Place& place) {
            if (const auto* graphic = std::get_if<engine::Graphic>(&element.content)) {
                said.push_back({page, place, {engine::drawing_words(*graphic->drawing)}, true});
            }
            const auto* text = std::get_if<engine::Text>(&element.content);
            if (text == nullptr || text->shown().empty()) return;
            Said& one = said.emplace_back(Said{page, place, {}, false});
            if (!text->detail || text->detail->lines.empty()) one.lines.emplace_back(text->shown());
            if (!text->detail) return;
            for (const auto& line : text->detail->lines) {
                one.lines.emplace_back(text->text.substr(line.begin, line.end - line.begin));
            }
        });
    }
    return said;
}

/// The first place where two lists differ.
std::string first_difference(const std::string& what, const std::vector<std::string>& expected,
                             const std::vector<std::string>& found)
{
    const auto [left, right] = std::ranges::mismatch(expected, found);
    if (left == expected.end() && right == found.end()) return {};
    return what + ": '" + (right == found.end() ? "nothing" : *right) + "' in place of '" +
           (left == expected.end() ? "nothing" : *left) + "'\n";
}

std::string difference(const std::string& what, const std::string& expected, const std::string& found)
{
    if (expected == found) return {};
    const auto at = static_cast<size_t>(std::ranges::mismatch(expected, found).in1 - expected.begin());
    const size_t from = at < 20 ? 0 : at - 20;
    return what + ": '" + found.substr(from, 60) + "' in place of '" + expected.substr(from, 60) + "'\n";
}

/// Formats that write element after element have the letters of all in one order.
std::string sequences(const Formats& files, const std::vector<Said>& said)
{
    std::string expected, html, rtf, pdf;
    for (const Said& one : said) expected += letters_of(one.text());
    for (const std::string& page : pdf_pages(files.at("pdf"))) pdf += letters_of(page);
    for (const HtmlBox& box : html_boxes(files.at("html"))) html += letters_of(box.text);
    for (const RtfShape& shape : rtf_shapes(files.at("rtf"))) {
        rtf += letters_of(shape.text);
        if (const auto words = shape.properties.find("wzDescription"); words != shape.properties.end()) {
            rtf += letters_of(words->second);
        }
    }
    std::string differences =
        difference("xml", pdf, expected) + difference("html", pdf, html) + difference("rtf", pdf, rtf);
    if (bytes_of(files.at("doc")) != bytes_of(files.at("rtf"))) differences += "doc is not the same rich text as rtf\n";
    return differences;
}

/// A place in rows and columns, of something that stands once on its page.
struct Seen {
    int row = 0, column = 0, times = 0;
};

/// Things keep their order: what is above stays above, what is beside stays beside.
std::string order(const std::string& what, const std::vector<Said>& said,
                  const std::map<std::pair<size_t, std::string>, Seen>& seen)
{
    std::vector<std::pair<const Said*, const Seen*>> places;
    for (const Said& one : said) {
        const auto found = seen.find({one.page, letters_of(one.text())});
        if (found != seen.end() && found->second.times == 1) places.emplace_back(&one, &found->second);
    }
    for (const auto& [above, first] : places) {
        for (const auto& [below, second] : places) {
            if (above->page != below->page) continue;
            const Place &a = above->place, &b = below->place;
            if (a.y + a.height <= b.y && first->row >= second->row + (first->column == second->column ? 0 : 1)) {
                return what + ": '" + below->text() + "' stands before '" + above->text() + "'\n";
            }
            if (a.y == b.y && a.x + a.width <= b.x && first->row == second->row && first->column >= second->column) {
                return what + ": '" + below->text() + "' stands in front of '" + above->text() + "'\n";
            }
        }
    }
    return {};
}

/// Where the words stand in a row, with blanks around them.
std::vector<size_t> places_of(const std::string& words, const std::string& row)
{
    const std::string padded = " " + row + " ", wanted = " " + words + " ";
    std::vector<size_t> places;
    for (size_t at = padded.find(wanted); at != std::string::npos; at = padded.find(wanted, at + 1))
        places.push_back(at);
    return places;
}

std::string text_file(const Formats& files, const std::vector<Said>& said)
{
    std::vector<std::string> expected, found;
    for (const Said& one : said) {
        for (const std::string& word : words_of(one.text())) expected.push_back(word);
    }
    const std::string text = bytes_of(files.at("txt"));
    found = words_of(text);
    std::ranges::sort(expected);
    std::ranges::sort(found);
    std::string differences = first_difference("txt", expected, found);

    std::map<std::pair<size_t, std::string>, Seen> seen;
    std::istringstream pages(text);
    size_t number = 0;
    for (std::string page; std::getline(pages, page, '\f'); ++number) {
        for (const Said& one : said) {
            if (one.page != number || one.drawn) continue;
            int row = 0;
            bool whole = one.lines[0].empty();
            std::istringstream rows(page);
            for (std::string line; std::getline(rows, line); ++row) {
                for (const size_t at : places_of(one.lines[0], line)) {
                    whole = true;
                    Seen& place = seen[{number, letters_of(one.text())}];
                    place = {row, static_cast<int>(at), place.times + 1};
                }
            }
            if (!whole) differences += "txt: no row has '" + one.lines[0] + "'\n";
        }
    }
    return differences + order("txt", said, seen);
}

std::string workbook(const XlsBook& book, const std::vector<Said>& said)
{
    std::vector<std::string> expected, found;
    for (const Said& one : said) {
        if (!letters_of(one.text()).empty()) expected.push_back(letters_of(one.text()));
    }
    const auto breaks = book.line("breaks");
    std::map<std::pair<size_t, std::string>, Seen> seen;
    for (const XlsCell& cell : book.filled()) {
        found.push_back(letters_of(cell.shown));
        const auto page = static_cast<size_t>(
            std::ranges::count_if(breaks, [&](const std::string& row) { return std::stoi(row) <= cell.row; }));
        Seen& place = seen[{page, letters_of(cell.shown)}];
        place = {cell.row, cell.column, place.times + 1};
    }
    for (const auto& parts : book.lines) {
        if (parts[0] == "picture" && parts.size() > 2) found.push_back(letters_of(parts[2]));
    }
    std::ranges::sort(expected);
    std::ranges::sort(found);
    return first_difference("xls", expected, found) + order("xls", said, seen);
}

}  // namespace

std::string difference_of_words(const std::vector<Formats>& documents)
{
    std::vector<std::filesystem::path> workbooks;
    for (const Formats& files : documents) workbooks.push_back(files.at("xls"));
    const std::vector<XlsBook> books = xls_books(workbooks);
    std::string differences;
    for (size_t i = 0; i < documents.size(); ++i) {
        const Formats& files = documents[i];
        engine::PageList pages;
        engine::read_print_xml(bytes_of(files.at("xml")), pages);
        const std::vector<Said> said = said_in(pages);
        const std::string different =
            said.empty() ? "it says nothing\n"
                         : sequences(files, said) + text_file(files, said) + workbook(books.at(i), said);
        if (!different.empty()) differences += files.at("xml").stem().string() + ": " + different;
    }
    return differences;
}

}  // namespace velora::readers
