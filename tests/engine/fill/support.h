#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/definition/reader.h"
#include "engine/fill/fill.h"
#include "engine/text/font_store.h"
#include "engine/text/measurer.h"

namespace velora::engine {

/// Rows of a test: a field is read by its place in the list.
class TestTable : public TableSource {
public:
    TestTable() = default;
    explicit TestTable(size_t empty_rows) : rows_(empty_rows) {}
    TestTable(std::vector<Field> fields, std::vector<std::vector<Value>> rows)
        : fields_(std::move(fields)), rows_(std::move(rows))
    {
    }

    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override { return at_ < rows_.size() && ++at_; }
    void rewind() override { at_ = 0; }
    [[nodiscard]] const Value& cell(size_t field) const override { return rows_[at_ - 1][field]; }
    [[nodiscard]] size_t read() const { return at_; }

private:
    std::vector<Field> fields_;
    std::vector<std::vector<Value>> rows_;
    size_t at_ = 0;
};

inline Measurer& test_measurer()
{
    static FontStore fonts(std::string(VELORA_SOURCE_DIR) + "/fonts");
    static Measurer measurer(fonts);
    return measurer;
}

/// A report of 200 by 200 points with margins of 10, filled with these bands; `attributes` go into its first tag.
struct TestReport {
    std::string bands;
    std::string attributes = {};
    std::string head = {};  ///< styles, parameters, fields, variables, groups

    [[nodiscard]] std::string xml() const
    {
        return "<jasperReport name=\"test\" pageWidth=\"200\" pageHeight=\"200\" columnWidth=\"180\" leftMargin=\"10\" "
               "rightMargin=\"10\" topMargin=\"10\" bottomMargin=\"10\" " +
               attributes + ">" + head + bands + "</jasperReport>";
    }
};

struct Filled {
    std::vector<Page> pages;
    Document document;
    std::vector<std::string> warnings;
};

inline Filled filled(const std::string& xml, TableSource& table, const FillOptions& given = {})
{
    std::vector<Warning> met;
    Filled result;
    FillOptions options = given;
    options.warn = [&](const std::string& text) { result.warnings.push_back(text); };
    const CompiledReport report(std::make_shared<model::Definition>(read_definition(xml, met)));
    PageList pages;
    fill(report, table, test_measurer(), options, pages);
    result.pages = std::move(pages.pages);
    result.document = std::move(pages.document);
    return result;
}

inline Filled filled(const TestReport& report, size_t rows)
{
    TestTable table(rows);
    return filled(report.xml(), table);
}

inline void list_elements(const std::vector<Element>& elements, std::string& list)
{
    for (const auto& element : elements) {
        const auto* text = std::get_if<Text>(&element.content);
        const auto* frame = std::get_if<Frame>(&element.content);
        list += text ? std::string(text->shown()) : (frame ? "[" : "-");
        if (frame) list_elements(frame->children, list += ' ');
        list += frame ? "]" : "@" + std::to_string(element.place.y) + "+" + std::to_string(element.place.height);
        list += ' ';
    }
}

/// Each page on a line: what its elements show, where they begin and how high they are.
inline std::string listed(const std::vector<Page>& pages)
{
    std::string list;
    for (const auto& page : pages) {
        list_elements(page.elements, list);
        if (list.ends_with(' ')) list.pop_back();
        list += '\n';
    }
    return list;
}

inline std::string text_field(std::string_view expression, int y, int height, std::string_view attributes = {})
{
    return "<element kind=\"textField\" x=\"0\" y=\"" + std::to_string(y) + "\" width=\"100\" height=\"" +
           std::to_string(height) + "\" " + std::string(attributes) + "><expression><![CDATA[" +
           std::string(expression) + "]]></expression></element>";
}

inline std::string band(std::string_view name, int height, std::string_view content, std::string_view attributes = {})
{
    return "<" + std::string(name) + " height=\"" + std::to_string(height) + "\" " + std::string(attributes) + ">" +
           std::string(content) + "</" + std::string(name) + ">";
}

inline std::string detail(int height, std::string_view content, std::string_view attributes = {})
{
    return "<detail>" + band("band", height, content, attributes) + "</detail>";
}

}  // namespace velora::engine
