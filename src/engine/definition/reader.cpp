#include "engine/definition/reader.h"

#include <algorithm>
#include <stdexcept>

#include "engine/definition/checks.h"
#include "engine/definition/file_beside.h"
#include "engine/definition/parts.h"
#include "values/ordinary_file.h"

namespace velora::engine {

namespace {

using namespace model;

// clang-format off
constexpr auto kOrientations = std::to_array<Choice<Orientation>>({{"Portrait", Orientation::Portrait}, {"Landscape", Orientation::Landscape}});
constexpr auto kPrintOrders = std::to_array<Choice<PrintOrder>>({{"Vertical", PrintOrder::Vertical}, {"Horizontal", PrintOrder::Horizontal}});
constexpr auto kReadingDirections = std::to_array<Choice<bool>>({{"LTR", false}, {"RTL", true}});
constexpr auto kNoDataTypes = std::to_array<Choice<WhenNoData>>({
    {"NoPages", WhenNoData::NoPages}, {"BlankPage", WhenNoData::BlankPage},
    {"AllSectionsNoDetail", WhenNoData::AllSectionsNoDetail}, {"NoDataSection", WhenNoData::NoDataSection}});

constexpr auto kPageRules = std::to_array<AttributeRule<PageLayout>>({
    {"pageWidth",       set_whole<&PageLayout::width, 1>},
    {"pageHeight",      set_whole<&PageLayout::height, 1>},
    {"leftMargin",      set_length<&PageLayout::left>},
    {"rightMargin",     set_length<&PageLayout::right>},
    {"topMargin",       set_length<&PageLayout::top>},
    {"bottomMargin",    set_length<&PageLayout::bottom>},
    {"columnCount",     set_whole<&PageLayout::column_count, 1, 1000>},
    {"columnWidth",     set_length<&PageLayout::column_width>},
    {"columnSpacing",   set_length<&PageLayout::column_spacing>},
    {"orientation",     set_choice<&PageLayout::orientation, kOrientations>},
    {"printOrder",      set_choice<&PageLayout::order, kPrintOrders>},
    {"columnDirection", set_choice<&PageLayout::right_to_left, kReadingDirections>},
});

constexpr auto kReportRules = std::to_array<AttributeRule<Definition>>({
    {"name",                            set_text<&Definition::name>},
    {"whenNoDataType",                  set_choice<&Definition::when_no_data, kNoDataTypes>},
    {"titleNewPage",                    set_flag<&Definition::title_new_page>},
    {"summaryNewPage",                  set_flag<&Definition::summary_new_page>},
    {"summaryWithPageHeaderAndFooter",  set_flag<&Definition::summary_with_page_header_and_footer>},
    {"floatColumnFooter",               set_flag<&Definition::float_column_footer>},
    {"ignorePagination",                set_flag<&Definition::ignore_pagination>},
    {"language",                        set_nothing<Definition>},
    {"formatFactoryClass",              set_nothing<Definition>},
    {"sectionType",                     set_nothing<Definition>},
});

constexpr auto kDataRules = std::to_array<AttributeRule<Dataset>>({
    {"resourceBundle",          set_text<&Dataset::resource_bundle>},
    {"whenResourceMissingType", set_choice<&Dataset::when_resource_missing, kMissingResources>},
    {"scriptletClass",          [](Dataset&, const Attribute& a) { a.warn("scriptlets are not run"); }},
});

constexpr auto kFooterPositions = std::to_array<Choice<FooterPosition>>({
    {"Normal", FooterPosition::Normal}, {"StackAtBottom", FooterPosition::StackAtBottom},
    {"ForceAtBottom", FooterPosition::ForceAtBottom}, {"CollateAtBottom", FooterPosition::CollateAtBottom}});

constexpr auto kGroupRules = std::to_array<AttributeRule<Group>>({
    {"name",                       set_text<&Group::name>},
    {"startNewPage",               set_flag<&Group::start_new_page>},
    {"startNewColumn",             set_flag<&Group::start_new_column>},
    {"resetPageNumber",            set_flag<&Group::reset_page_number>},
    {"reprintHeaderOnEachPage",    set_flag<&Group::reprint_header_on_each_page>},
    {"reprintHeaderOnEachColumn",  set_flag<&Group::reprint_header_on_each_column>},
    {"keepTogether",               set_flag<&Group::keep_together>},
    {"preventOrphanFooter",        set_flag<&Group::prevent_orphan_footer>},
    {"minHeightToStartNewPage",    set_length<&Group::min_height_to_start_new_page>},
    {"minDetailsToStartFromTop",   set_length<&Group::min_details_to_start_from_top>},
    {"footerPosition",             set_choice<&Group::footer_position, kFooterPositions>},
});
// clang-format on

void read_bands(std::vector<Band>& bands, Tag& tag)
{
    Properties properties;
    tag.each_child([&](Tag& child) {
        if (child.name() != "band") return read_property(properties, child);
        bands.push_back(read_band(child));
        return true;
    });
}

/// A section of one band: the band itself, or the bands inside it of which the first counts.
Band read_single(Tag& tag)
{
    if (!tag.has_child("band")) return read_band(tag);
    std::vector<Band> bands;
    read_bands(bands, tag);
    if (bands.size() > 1) tag.warn("this section has one band; the others are passed over");
    return std::move(bands.front());
}

template <auto band>
void read_section(Definition& definition, Tag& child)
{
    definition.*band = read_single(child);
}

void read_group(Definition& definition, Tag& tag)
{
    Group group;
    group.place = tag.place();
    tag.require("name");
    tag.read<Group>(kGroupRules, group);
    Properties properties;
    tag.each_child([&](Tag& child) {
        const auto name = child.name();
        if (name == "expression" || name == "groupExpression") {
            group.expression = child.expression();
        } else if (name == "groupHeader") {
            read_bands(group.headers, child);
        } else if (name == "groupFooter") {
            read_bands(group.footers, child);
        } else {
            return read_property(properties, child);
        }
        return true;
    });
    definition.groups.push_back(std::move(group));
}

constexpr auto kReportChildren = std::to_array<ChildRule<Definition>>({
    // clang-format off
    {"style",          [](Definition& d, Tag& child) { d.styles.push_back(read_style(child)); }},
    {"reportFont",     [](Definition& d, Tag& child) { d.styles.push_back(read_style(child)); }},
    {"template",       [](Definition& d, Tag& child) { child.ignore("class"); d.templates.push_back(child.expression()); }},
    {"subDataset",     [](Definition& d, Tag& child) { d.datasets.push_back(read_dataset(child)); }},
    {"dataset",        [](Definition& d, Tag& child) { d.datasets.push_back(read_dataset(child)); }},
    {"group",          read_group},
    {"background",     read_section<&Definition::background>},
    {"title",          read_section<&Definition::title>},
    {"pageHeader",     read_section<&Definition::page_header>},
    {"columnHeader",   read_section<&Definition::column_header>},
    {"detail",         [](Definition& d, Tag& child) { read_bands(d.details, child); }},
    {"columnFooter",   read_section<&Definition::column_footer>},
    {"pageFooter",     read_section<&Definition::page_footer>},
    {"lastPageFooter", read_section<&Definition::last_page_footer>},
    {"summary",        read_section<&Definition::summary>},
    {"noData",         read_section<&Definition::no_data>},
    // clang-format on
});

Definition read_report(Tag& tag)
{
    Definition out;
    out.data.place = tag.place();
    tag.read<Definition>(kReportRules, out);
    tag.read<PageLayout>(kPageRules, out.page);
    tag.read<Dataset>(kDataRules, out.data);
    tag.each_child([&](Tag& child) {
        return read_child<Definition>(kReportChildren, out, child) || read_data_child(out.data, child);
    });
    return out;
}

constexpr uintmax_t kLargestDefinition = 64u << 20;

std::string contents_of(const std::filesystem::path& file)
{
    try {
        return read_ordinary_file(file, kLargestDefinition);
    } catch (const std::runtime_error& caught) {
        throw DefinitionError({}, "", "cannot read the file " + file.string() + ": " + caught.what());
    }
}

/// What a template file holds: its own styles, and the paths of those that it includes.
struct Template {
    std::vector<model::Style> styles;
    std::vector<std::string> includes;
};

Template read_template_parts(std::string_view xml, std::vector<Warning>& warnings)
{
    SourceText source(xml, warnings);
    Tag tag(source.root(), source);
    if (tag.name() != "jasperTemplate") tag.fail("this is no style template");
    Template out;
    tag.each_child([&](Tag& child) {
        if (child.name() == "style") {
            out.styles.push_back(read_style(child));
        } else if (child.name() == "template") {
            out.includes.push_back(child.expression().text);
        } else {
            return false;
        }
        return true;
    });
    tag.finish();
    return out;
}

/// Collects the styles of a template and of what it includes.
class TemplateStyles {
public:
    explicit TemplateStyles(std::vector<Warning>& warnings) : warnings_(warnings) {}

    void add(const std::filesystem::path& file)
    {
        constexpr int kMostFiles = 1000;  // a template may be included twice, and those in it again
        if (std::ranges::find(open_, file) != open_.end()) {
            throw DefinitionError({}, "template", "the template " + file.string() + " includes itself");
        }
        if (++files_ > kMostFiles) throw DefinitionError({}, "template", "too many templates include each other");
        open_.push_back(file);
        auto parts = read_template_parts(contents_of(file), warnings_);
        for (const auto& include : parts.includes) {
            const auto path = file_beside(file.parent_path(), include);
            if (!path) throw DefinitionError({}, "template", "the template '" + include + "' is outside the folder");
            add(*path);
        }
        open_.pop_back();
        std::ranges::move(parts.styles, std::back_inserter(styles));
    }

    std::vector<model::Style> styles;

private:
    std::vector<Warning>& warnings_;
    std::vector<std::filesystem::path> open_;
    int files_ = 0;
};

}  // namespace

Definition read_definition(std::string_view xml, std::vector<Warning>& warnings)
{
    SourceText source(xml, warnings);
    Tag tag(source.root(), source);
    if (tag.name() != "jasperReport") tag.fail("this is no report definition");
    Definition out = read_report(tag);
    tag.finish();
    check_definition(out, source);
    return out;
}

Definition read_definition_file(const std::filesystem::path& file, std::vector<Warning>& warnings)
{
    Definition out = read_definition(contents_of(file), warnings);
    out.path = file.string();
    out.folder = file.parent_path().string();
    return out;
}

std::vector<model::Style> read_template(std::string_view xml, std::vector<Warning>& warnings)
{
    return read_template_parts(xml, warnings).styles;
}

std::vector<model::Style> read_template_file(const std::filesystem::path& file, std::vector<Warning>& warnings)
{
    TemplateStyles all(warnings);
    all.add(file);
    return std::move(all.styles);
}

}  // namespace velora::engine
