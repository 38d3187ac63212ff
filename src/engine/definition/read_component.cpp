#include <algorithm>

#include "engine/definition/parts.h"
#include "values/text.h"

namespace velora::engine {

namespace {

using namespace model;

constexpr auto kBarcodes = std::to_array<std::string_view>(
    {"Code128", "Code39", "EAN13", "EAN8", "EAN128", "UPCA", "UPCE", "QRCode", "DataMatrix", "PDF417", "Codabar",
     "Interleaved2Of5", "Int2of5", "Code39 (Extended)", "POSTNET", "RoyalMailCustomer", "USPSIntelligentMail"});

void set_text_position(Barcode& barcode, const Attribute& attribute)
{
    barcode.show_text = attribute.text() != "none";
}

void set_module_width(Barcode& barcode, const Attribute& attribute)
{
    if (const auto width = attribute.number()) barcode.module_width = static_cast<double>(*width);
}

void set_orientation(Barcode&, const Attribute& attribute)
{
    if (attribute.text() != "up" && attribute.text() != "0") attribute.warn("barcodes are drawn upright");
}

constexpr auto kCorrections = std::to_array<Choice<ErrorCorrection>>(
    {{"L", ErrorCorrection::L}, {"M", ErrorCorrection::M}, {"Q", ErrorCorrection::Q}, {"H", ErrorCorrection::H}});
constexpr auto kNoRows = std::to_array<Choice<bool>>({{"Blank", false}, {"AllSectionsNoDetail", true}});

// clang-format off
constexpr auto kBarcodeRules = std::to_array<AttributeRule<Barcode>>({
    {"kind",                 set_nothing<Barcode>},
    {"type",                 set_nothing<Barcode>},
    {"evaluationTime",       set_choice<&Barcode::evaluation, kEvaluationTimes>},
    {"evaluationGroup",      set_text<&Barcode::evaluation_group>},
    {"textPosition",         set_text_position},
    {"drawText",             set_flag<&Barcode::show_text>},
    {"moduleWidth",          set_module_width},
    {"barWidth",             set_module_width},
    {"errorCorrectionLevel", set_choice<&Barcode::error_correction, kCorrections>},
    {"margin",               set_nothing<Barcode>},
    {"orientation",          set_orientation},
    {"quietZone",            set_nothing<Barcode>},
    {"verticalQuietZone",    set_nothing<Barcode>},
    {"checksumRequired",     set_nothing<Barcode>},
    {"checksumMode",         set_nothing<Barcode>},
    {"barHeight",            set_nothing<Barcode>},
    {"wideFactor",           set_nothing<Barcode>},
});

constexpr auto kListRules = std::to_array<AttributeRule<ListComponent>>({
    {"kind",        set_nothing<ListComponent>},
    {"printOrder",  [](ListComponent& l, const Attribute& a) { l.horizontal = a.text() == "Horizontal"; }},
    {"ignoreWidth", set_flag<&ListComponent::ignore_width>},
});
constexpr auto kContentRules = std::to_array<AttributeRule<ListComponent>>({
    {"height", set_length<&ListComponent::content_height>},
    {"width",  set_length<&ListComponent::content_width>},
});

constexpr auto kTableRules = std::to_array<AttributeRule<TableComponent>>({
    {"kind",           set_nothing<TableComponent>},
    {"whenNoDataType", set_choice<&TableComponent::heads_without_rows, kNoRows>},
});
constexpr auto kColumnRules = std::to_array<AttributeRule<TableColumn>>({
    {"kind",  set_nothing<TableColumn>},
    {"width", set_length<&TableColumn::width>},
});
constexpr auto kCellRules = std::to_array<AttributeRule<TableCell>>({
    {"height",  set_length<&TableCell::height>},
    {"rowSpan", set_whole<&TableCell::row_span, 1, 1000>},
    {"colSpan", set_whole<&TableCell::column_span, 1, 1000>},
    {"style",   set_text<&TableCell::style>},
});
// clang-format on

Barcode read_barcode(Tag& tag, std::string_view type, bool shows_text)
{
    Barcode out;
    out.type = type;
    // the sets of Code 128 are chosen by what is to be written
    if (type == "Code128A" || type == "Code128B" || type == "Code128C") out.type = "Code128";
    out.show_text = shows_text;
    tag.read<Barcode>(kBarcodeRules, out);
    tag.each_child([&](Tag& child) {
        if (child.name() == "codeExpression") {
            out.code = child.expression();
            return true;
        }
        child.ignore_all();
        return child.name() == "patternExpression" || child.name() == "applicationIdentifierExpression";
    });
    return out;
}

ListComponent read_list(Tag& tag)
{
    ListComponent out;
    tag.read<ListComponent>(kListRules, out);
    tag.each_child([&](Tag& child) {
        if (child.name() == "datasetRun") {
            out.run = read_dataset_run(child);
            return true;
        }
        if (child.name() != "listContents" && child.name() != "contents") return false;
        child.read<ListComponent>(kContentRules, out);
        child.each_child([&](Tag& element) { return read_element_child(out.contents, element); });
        return true;
    });
    return out;
}

TableCell read_cell(Tag& tag)
{
    TableCell out;
    Properties properties;
    tag.read<TableCell>(kCellRules, out);
    tag.each_child([&](Tag& child) {
        if (child.name() == "box") {
            read_box(out.box, child);
            return true;
        }
        return read_property(properties, child) || read_element_child(out.contents, child);
    });
    return out;
}

template <auto cell>
void read_column_cell(TableColumn& column, Tag& child)
{
    column.*cell = read_cell(child);
}

TableColumn read_column(Tag& tag);

void read_inner_column(TableColumn& column, Tag& child)
{
    column.columns.push_back(read_column(child));
}

/// Headers and footers of a table's own groups.
void read_group_cell(TableColumn&, Tag& child)
{
    child.ignore_all();
    child.warn("the group headers and footers of tables are not drawn");
}

constexpr auto kColumnChildren = std::to_array<ChildRule<TableColumn>>({
    // clang-format off
    {"printWhenExpression", read_expression<&TableColumn::print_when>},
    {"tableHeader",         read_column_cell<&TableColumn::table_header>},
    {"tableFooter",         read_column_cell<&TableColumn::table_footer>},
    {"columnHeader",        read_column_cell<&TableColumn::column_header>},
    {"columnFooter",        read_column_cell<&TableColumn::column_footer>},
    {"detailCell",          read_column_cell<&TableColumn::detail>},
    {"groupHeader",         read_group_cell},
    {"groupFooter",         read_group_cell},
    {"column",              read_inner_column},
    {"columnGroup",         read_inner_column},
    // clang-format on
});

TableColumn read_column(Tag& tag)
{
    TableColumn out;
    Properties properties;
    tag.read<TableColumn>(kColumnRules, out);
    tag.each_child([&](Tag& child) {
        return read_child<TableColumn>(kColumnChildren, out, child) || read_property(properties, child);
    });
    return out;
}

TableComponent read_table(Tag& tag)
{
    TableComponent out;
    tag.read<TableComponent>(kTableRules, out);
    tag.each_child([&](Tag& child) {
        if (child.name() == "datasetRun") {
            out.run = read_dataset_run(child);
            return true;
        }
        if (child.name() != "column" && child.name() != "columnGroup") return false;
        out.columns.push_back(read_column(child));
        return true;
    });
    return out;
}

}  // namespace

ElementBody read_component(Tag& tag)
{
    std::string kind(tag.name());
    if (kind == "component") kind = tag.required("kind");
    if (const auto colon = kind.find(':'); colon != std::string::npos) kind.erase(0, colon + 1);
    if (kind == "list") return read_list(tag);
    if (kind == "table") return read_table(tag);
    if (kind == "barbecue") return read_barcode(tag, std::string(tag.value("type")), false);
    if (std::ranges::find(kBarcodes, kind) != kBarcodes.end()) return read_barcode(tag, kind, true);
    tag.ignore_all();
    tag.warn("components of the kind '" + kind + "' are not drawn; the place stays empty");
    return UnknownElement{kind};
}

}  // namespace velora::engine
